% Used by fuzzed modules under a dotted name.
module util
graph class : DirectedGraph
uses helper;
exports transformation unit tidy
realized by
transformation unit tidy
initial :
body :
    apply once helper.trim;
    apply once noop | count
terminal :
end
end.
