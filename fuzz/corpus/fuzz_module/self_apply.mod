module loop
graph class : DirectedGraph
exports transformation unit again
realized by
transformation unit again
initial :
body :
    apply once again
terminal :
end
end.
