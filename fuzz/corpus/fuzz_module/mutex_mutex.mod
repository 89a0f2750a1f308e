% The short transformation sequence of the mutual-exclusion benchmark: a ring of processes
% and one resource. Every process requests the resource, then the token goes round the ring
% once: the process holding it takes the resource, releases it and gives the token on.
% Process labels stand for the negative conditions of the usual formulation: "process" has not
% requested yet, "waiting" has, "served" has had the resource.
module mutex
graph class : DirectedGraph
exports transformation unit sts
realized by
transformation unit sts
initial : (vertices.process >= 2 && vertices == vertices.process)
body :
    apply once mount;
    apply as long as possible request;
    while (edges.request > 0) do
        apply once take;
        apply once release;
        apply once give
    end
terminal : (vertices.served == vertices - 1 && edges.token == 1 && edges.request == 0)
end
end.
