% Used by fuzzed modules: one unit that grows, one that prunes.
module helper
graph class : DirectedGraph
exports transformation unit sprout; transformation unit trim
realized by
transformation unit sprout
initial : (vertices.node > 0)
body :
    apply 3 times grow
terminal :
end;
transformation unit trim
initial :
body :
    apply as long as possible prune
terminal : (vertices.leaf == 0)
end
end.
