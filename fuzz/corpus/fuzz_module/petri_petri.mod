% The token game of a Petri net: fire enabled transitions, chosen at random, until none is
% enabled any more. The net must have a place and end in a dead marking.
module petri
graph class : DirectedGraph
exports transformation unit play
realized by
transformation unit play
initial : (vertices.place > 0 && edges.arc > 0)
body :
    while (applicable.fire || applicable.fire_join) do
        apply once fire | fire_join
    end
terminal : (applicable.fire == false && applicable.fire_join == false)
end
end.
