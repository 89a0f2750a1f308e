// A graph class handler for the interpreter tests ("TestGraph.gc"). Rules and graphs are read in
// Vellum's own formats; a rule whose file is named "alien.*" comes back as a rule of another
// class. A condition is "LABEL OP N": the number of vertices with that label ("*" for all)
// compared with N by one of < <= == != >= >; anything else is rejected.
#include <cstdlib>
#include <sstream>
#include <string>

#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/RuleReader.h"
#include "koral/PluginApi.h"

namespace {

class AlienRule : public vellum::DirectedGraphRule {
  public:
    const std::string& className() const override {
        static const std::string name = "AlienRule";
        return name;
    }
};

class VertexCount : public vellum::KoralCondition {
  public:
    VertexCount(std::string label, std::string op, long limit)
        : label_(std::move(label)), op_(std::move(op)), limit_(limit) {}

    int evaluate(vellum::DirectedGraph& graph, const std::atomic<int>& /*abortFlag*/) override {
        const long n =
            static_cast<long>(label_ == "*" ? graph.vertexCount() : graph.vertexCount(label_));
        if (op_ == "<")
            return n < limit_;
        if (op_ == "<=")
            return n <= limit_;
        if (op_ == "==")
            return n == limit_;
        if (op_ == "!=")
            return n != limit_;
        if (op_ == ">=")
            return n >= limit_;
        return n > limit_;
    }

  private:
    std::string label_;
    std::string op_;
    long limit_;
};

bool isOperator(const std::string& op) {
    return op == "<" || op == "<=" || op == "==" || op == "!=" || op == ">=" || op == ">";
}

}  // namespace

vellum::DirectedGraph* gcLoadGraph(const char* path) {
    return vellum::loadGraph(path).release();
}

int gcSaveGraph(vellum::DirectedGraph* graph, const char* path) {
    return vellum::saveGraph(*graph, path) ? 1 : 0;
}

vellum::DirectedGraphRule* gcLoadGraphRule(const char* path) {
    const std::string file = path;
    if (file.find("alien.") != std::string::npos)
        return new AlienRule;
    return vellum::loadRule(file).release();
}

vellum::KoralCondition* gcGraphClassExpression(void* /*compiler*/, const char* text) {
    std::istringstream in(text);
    std::string label, op, rest;
    long limit = 0;
    if (!(in >> label >> op >> limit) || !isOperator(op) || (in >> rest))
        return nullptr;
    return new VertexCount(label, op, limit);
}
