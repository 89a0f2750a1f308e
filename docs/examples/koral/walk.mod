% Moves the token along a path of places for as long as it can.
module walk
graph class : DirectedGraph
exports transformation unit run
realized by
transformation unit step
initial :
body : apply once move
terminal :
end;
transformation unit run
initial : (vertices.token >= 1)
body :
    while (applicable.move) do
        apply once step
    end;
    call graphstats.counts
terminal : (applicable.move == false)
end
end.
