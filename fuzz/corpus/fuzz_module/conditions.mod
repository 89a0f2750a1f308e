module cond
graph class : DirectedGraph
exports transformation unit c
realized by
transformation unit c
initial : (vertices.node == 1 + 2 * 3 - -1 && applicable.grow)
body :
    while (vertices / 2 != 1 && "a" < "b" && edges.child >= 0) do apply once grow end
terminal : (edges.child > vertices.leaf ? true : false)
end
end.
