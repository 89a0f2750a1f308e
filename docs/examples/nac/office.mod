% The worked examples of the structural conditions of rules in docs/conditions.md.
module office
graph class : DirectedGraph
exports transformation unit ask; transformation unit polite; transformation unit pass
realized by
transformation unit ask
initial :
body : apply as long as possible ask
terminal :
end;
transformation unit polite
initial :
body : apply as long as possible polite
terminal :
end;
transformation unit pass
initial :
body : apply once pass
terminal :
end
end.
