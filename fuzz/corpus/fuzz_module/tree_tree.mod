% Grows a full binary tree of depth 4 from a seed with the unit generation of the module
% tools, then reports on it with the method library graphstats.
module tree
graph class : DirectedGraph
uses tools;
exports transformation unit grow
realized by
transformation unit grow
initial : (vertices == 1 && vertices.bud == 1)
body :
    apply 4 times tools.generation;
    call graphstats.counts;
    call graphstats.check
terminal : (vertices.bud == 16 && vertices.node == 15)
end
end.
