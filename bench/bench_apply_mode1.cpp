// bench_apply_mode1 [APPLICATIONS]: applies rules in mode 1 (as the interpreter does) over and
// over on host graphs of 10^4, 10^5 and 10^6 vertices (a ring plus as many random edges, so an
// average degree of 4) and prints the time per application for each rule and size (the best
// of five rounds, which keeps other work on the machine out of the figures). Each rule
// is anchored by the label of one token vertex: "move" carries the token along an edge with a
// condition and an attribute expression, "sprout" hangs a new leaf on it, "prune" deletes the
// leaf again. The time per application should not grow with the host.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/IntegerAttribute.h"
#include "graph/RuleApplication.h"
#include "graph/RuleReader.h"

namespace {

using Clock = std::chrono::steady_clock;

struct RuleText {
    const char* name;
    const char* text;
};

const RuleText kRules[] = {
    {"move",
     "directed graphrule move { left-hand side { vertex 1 = t { label t } vertex 2 { label * }"
     " edge 3 : 1 -> 2 { label * } } interface { vertex 1 <-> 4 vertex 2 <-> 5 edge 3 <-> 6 }"
     " right-hand side { vertex 4 { label v } vertex 5 { label t integer k = [t.k + 1] }"
     " edge 6 : 4 -> 5 { label * } } application condition = [t.k >= 0] }"},
    {"sprout",
     "directed graphrule sprout { left-hand side { vertex 1 { label t } }"
     " interface { vertex 1 <-> 2 } right-hand side { vertex 2 { label * }"
     " vertex 3 { label leaf integer age = 0 } edge 4 : 2 -> 3 } }"},
    {"prune",
     "directed graphrule prune { left-hand side { vertex 1 { label t } vertex 2 { label leaf }"
     " edge 3 : 1 -> 2 } interface { vertex 1 <-> 4 } right-hand side { vertex 4 { label * } } }"},
};
constexpr int kRuleCount = 3;
constexpr int kRounds = 5;

std::unique_ptr<vellum::DirectedGraphRule> readRule(const char* text) {
    char name[] = "/tmp/bench_apply_XXXXXX";
    const int fd = ::mkstemp(name);
    if (fd < 0)
        return nullptr;
    ::close(fd);
    std::ofstream(name) << text;
    auto rule = vellum::loadRule(name);
    std::remove(name);
    return rule;
}

// A ring of `count` vertices labelled v plus `count` random edges; the first vertex is the
// token t with k = 0.
void buildHost(vellum::DirectedGraph& host, long count, std::mt19937& random) {
    std::vector<vellum::DirectedGraphVertex*> vertices(static_cast<std::size_t>(count));
    for (auto& vertex : vertices) {
        vertex = host.createVertex();
        vertex->setLabel("v");
    }
    vertices[0]->setLabel("t");
    vertices[0]->addAttribute(std::make_unique<vellum::IntegerAttribute>("k", 0));
    for (long i = 0; i < count; ++i)
        host.createEdge(vertices[static_cast<std::size_t>(i)],
                        vertices[static_cast<std::size_t>((i + 1) % count)]);
    std::uniform_int_distribution<std::size_t> pick(0, vertices.size() - 1);
    for (long i = 0; i < count; ++i)
        host.createEdge(vertices[pick(random)], vertices[pick(random)]);
}

}  // namespace

int main(int argc, char** argv) {
    const long applications = argc > 1 ? std::atol(argv[1]) : 20000;
    if (applications < 1) {
        std::fprintf(stderr, "usage: bench_apply_mode1 [APPLICATIONS]\n");
        return 2;
    }
    std::vector<std::unique_ptr<vellum::DirectedGraphRule>> rules;
    for (const RuleText& rule : kRules) {
        rules.push_back(readRule(rule.text));
        if (!rules.back()) {
            std::fprintf(stderr, "bench_apply_mode1: rule '%s' does not read\n", rule.name);
            return 1;
        }
    }
    const long sizes[] = {10000, 100000, 1000000};
    std::vector<std::vector<double>> perApplication(kRuleCount);
    std::printf("%ld applications of each rule per host, mode 1; microseconds per application\n",
                applications);
    std::printf("%10s %10s %10s %10s\n", "vertices", kRules[0].name, kRules[1].name,
                kRules[2].name);
    std::mt19937 random(11);
    for (long size : sizes) {
        vellum::DirectedGraph host;
        buildHost(host, size, random);
        double best[kRuleCount] = {1e100, 1e100, 1e100};
        for (int round = 0; round < kRounds; ++round) {
            double seconds[kRuleCount] = {0, 0, 0};
            for (long i = 0; i < applications; ++i) {
                for (int r = 0; r < kRuleCount; ++r) {
                    const auto start = Clock::now();
                    const int result =
                        vellum::applyRule(&host, rules[r].get(), vellum::kModeRuleMatch);
                    seconds[r] += std::chrono::duration<double>(Clock::now() - start).count();
                    if (result != vellum::kApplyApplied) {
                        std::fprintf(stderr, "bench_apply_mode1: '%s' gave result %d\n",
                                     kRules[r].name, result);
                        return 1;
                    }
                }
            }
            for (int r = 0; r < kRuleCount; ++r)
                best[r] = std::min(best[r], seconds[r]);
        }
        std::printf("%10ld", size);
        for (int r = 0; r < kRuleCount; ++r) {
            auto& times = perApplication[static_cast<std::size_t>(r)];
            times.push_back(best[r] * 1e6 / static_cast<double>(applications));
            std::printf(" %10.2f", times.back());
        }
        std::printf("   (%zu vertices, %zu edges after)\n", host.vertexCount(), host.edgeCount());
    }
    bool flat = true;
    std::printf("%10s", "max/min");
    for (const auto& times : perApplication) {
        const auto [low, high] = std::minmax_element(times.begin(), times.end());
        std::printf(" %10.2f", *high / *low);
        flat = flat && *high / *low <= 2.0;
    }
    std::printf("\nflat within a factor of 2: %s\n", flat ? "yes" : "NO");
    return 0;
}
