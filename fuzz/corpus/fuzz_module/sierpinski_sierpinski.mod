% Generations of the Sierpinski triangle. Unit genK turns generation 0 (triangle.dg) into
% generation K: each generation splits every triangle into three, alternating between the
% rules split_t (t edges become n edges) and split_n (n edges become t edges).
module sierpinski
graph class : DirectedGraph
exports
    transformation unit gen1;
    transformation unit gen2;
    transformation unit gen3;
    transformation unit gen4;
    transformation unit gen5;
    transformation unit gen6;
    transformation unit gen7;
    transformation unit gen8;
    transformation unit gen9;
    transformation unit gen10;
    transformation unit gen11;
    transformation unit gen12
realized by
% One generation from the t edges, one from the n edges.
transformation unit step_t
initial :
body : apply as long as possible split_t
terminal : (edges.t == 0)
end;
transformation unit step_n
initial :
body : apply as long as possible split_n
terminal : (edges.n == 0)
end;
transformation unit twice
initial :
body : apply once step_t; apply once step_n
terminal :
end;
transformation unit gen1
initial : (vertices == 3 && edges.t == 3)
body : apply once step_t
terminal : (vertices == 6 && edges.n == 9)
end;
transformation unit gen2
initial : (vertices == 3 && edges.t == 3)
body : apply once twice
terminal : (vertices == 15 && edges.t == 27)
end;
transformation unit gen3
initial : (vertices == 3 && edges.t == 3)
body : apply once twice; apply once step_t
terminal : (vertices == 42 && edges.n == 81)
end;
transformation unit gen4
initial : (vertices == 3 && edges.t == 3)
body : apply 2 times twice
terminal : (vertices == 123 && edges.t == 243)
end;
transformation unit gen5
initial : (vertices == 3 && edges.t == 3)
body : apply 2 times twice; apply once step_t
terminal : (vertices == 366 && edges.n == 729)
end;
transformation unit gen6
initial : (vertices == 3 && edges.t == 3)
body : apply 3 times twice
terminal : (vertices == 1095 && edges.t == 2187)
end;
transformation unit gen7
initial : (vertices == 3 && edges.t == 3)
body : apply 3 times twice; apply once step_t
terminal : (vertices == 3282 && edges.n == 6561)
end;
transformation unit gen8
initial : (vertices == 3 && edges.t == 3)
body : apply 4 times twice
terminal : (vertices == 9843 && edges.t == 19683)
end;
transformation unit gen9
initial : (vertices == 3 && edges.t == 3)
body : apply 4 times twice; apply once step_t
terminal : (vertices == 29526 && edges.n == 59049)
end;
transformation unit gen10
initial : (vertices == 3 && edges.t == 3)
body : apply 5 times twice
terminal : (vertices == 88575 && edges.t == 177147)
end;
transformation unit gen11
initial : (vertices == 3 && edges.t == 3)
body : apply 5 times twice; apply once step_t
terminal : (vertices == 265722 && edges.n == 531441)
end;
transformation unit gen12
initial : (vertices == 3 && edges.t == 3)
body : apply 6 times twice
terminal : (vertices == 797163 && edges.t == 1594323)
end
end.
