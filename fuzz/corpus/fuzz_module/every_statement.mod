module every
graph class : DirectedGraph
uses helper, lib.util;
exports transformation unit main; transformation unit side
realized by
transformation unit side
initial :
body :
    apply once noop
terminal :
end;
transformation unit main
initial : (vertices.node > 0 && edges == 0)
body :
    apply once grow;
    apply 2 times grow | noop;
    apply as long as possible count < noop;
    apply once helper.sprout;
    apply once lib.util.tidy;
    call graphstats.counts;
    if (applicable.prune) then
        apply once prune
    else
        apply once side
    end;
    while (vertices.leaf < 3) do
        if (vertices > 2 || edges.child != 0) then apply once grow end
    end
terminal : (vertices.leaf >= 3)
end
end.
