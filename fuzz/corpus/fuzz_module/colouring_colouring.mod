% Two-colouring: is the graph bipartite? Every component is coloured from its first vertex
% outwards, red and blue in turn, with edges taken in either direction. Then the colouring is
% checked: an edge between two vertices of one colour means a cycle of odd length.
module colouring
graph class : DirectedGraph
exports transformation unit colour
realized by
transformation unit colour
initial : (vertices.node > 0 && vertices.red == 0 && vertices.blue == 0)
body :
    while (vertices.node > 0) do
        apply once start;
        apply as long as possible paint_blue_out | paint_blue_in | paint_red_out | paint_red_in
    end;
    if (applicable.clash_red || applicable.clash_blue) then
        apply once mark_odd_cycle
    else
        apply once mark_bipartite
    end
terminal : (vertices.node == 0 && vertices.red > 0)
end
end.
