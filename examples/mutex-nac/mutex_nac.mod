% The short transformation sequence of the mutual-exclusion benchmark with its negative
% conditions written as such: a process requests only while it has no request and does not hold
% the resource, and releases only without a request. The result is that of examples/mutex.
module mutex_nac
graph class : DirectedGraph
exports transformation unit sts
realized by
transformation unit sts
initial : (vertices.process >= 2 && vertices == vertices.process)
body :
    apply once mount;
    apply as long as possible request_nac;
    while (edges.request > 0) do
        apply once take_nac;
        apply once release_nac;
        apply once give
    end
terminal : (vertices.served == vertices - 1 && edges.token == 1 && edges.request == 0)
end
end.
