% A unit applies only units declared above it (or itself): inc5 comes before count.
module counter
graph class : DirectedGraph
exports transformation unit count
realized by
transformation unit inc5
initial :
body : apply 5 times tick
terminal :
end;
transformation unit count
initial :
body : apply once inc5; call graphstats.counts
terminal : (vertices.tick == 5)
end
end.
