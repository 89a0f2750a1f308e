% Building blocks for trees, used by the module tree. A generation lets every bud branch
% once: the young buds made meanwhile wait (with their own label) until all are done.
module tools
graph class : DirectedGraph
exports transformation unit generation
realized by
transformation unit generation
initial : (vertices.bud > 0)
body :
    apply as long as possible branch;
    apply as long as possible ripen
terminal : (vertices.young == 0)
end
end.
