#include "graph/interchange/ForeignGraph.h"

#include <cctype>
#include <charconv>

#include "base/Console.h"

namespace vellum {

ForeignGraph::ForeignGraph(DirectedGraph& graph, bool rename, const char* format)
    : graph_(graph), names_(rename), format_(format) {
    graph_.clear();
}

DirectedGraphVertex* ForeignGraph::addVertex(const std::string& id) {
    auto [at, added] = vertices_.emplace(id, nullptr);
    if (!added) {
        fail("the node id '" + id + "' is used twice");
        return nullptr;
    }
    at->second = graph_.createVertex();
    return at->second;
}

DirectedGraphEdge* ForeignGraph::addEdge(const std::string& element, const std::string& source,
                                         const std::string& target) {
    for (const std::string* end : {&source, &target})
        if (!vertices_.count(*end)) {
            fail(element + " ends at '" + *end + "', which is no node of the graph");
            return nullptr;
        }
    return graph_.createEdge(vertices_[source], vertices_[target]);
}

bool ForeignGraph::setLabel(GraphObject& object, const std::string& element,
                            std::string_view label) {
    const std::optional<std::string> spelled = names_.label(element, label);
    if (!spelled)
        return refusedName();
    object.setLabel(*spelled);
    return true;
}

bool ForeignGraph::addAttribute(GraphObject& object, const std::string& element,
                                std::unique_ptr<Attribute> attribute) {
    std::unique_ptr<Attribute> spelled = names_.attribute(element, std::move(attribute));
    if (!spelled)
        return refusedName();
    const std::string name = spelled->name();
    if (!object.addAttribute(std::move(spelled)))
        note(element + ": a second attribute '" + name + "' is left out");
    return true;
}

bool ForeignGraph::refusedName() {
    if (failure_.empty())
        renamable_ = names_.renamable();
    return fail(names_.refusal());
}

void ForeignGraph::note(const std::string& text) {
    if (noteCounts_[text]++ == 0)
        noteOrder_.push_back(text);
}

bool ForeignGraph::fail(const std::string& text) {
    if (failure_.empty())
        failure_ = text;
    return false;
}

bool ForeignGraph::finish(const std::string& fileName) {
    const std::string prefix = std::string(format_) + " file '" + fileName + "': ";
    if (failed()) {
        graph_.clear();
        console() << prefix << failure_ << "\n";
        return false;
    }
    for (const std::string& change : names_.changes())
        console() << prefix << change << "\n";
    for (const std::string& text : noteOrder_) {
        const std::size_t count = noteCounts_[text];
        console() << prefix << text;
        if (count > 1)
            console() << " (" << count << " times)";
        console() << "\n";
    }
    return true;
}

std::string foreignNode(const std::string& id) {
    return "node '" + id + "'";
}

std::string foreignEdge(const std::string& id, const std::string& source,
                        const std::string& target) {
    return (id.empty() ? std::string("edge") : "edge '" + id + "'") + " (" + source + " -> " +
           target + ")";
}

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

}  // namespace

std::optional<std::int64_t> integerFrom(std::string_view text) {
    text = trimmed(text);
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

std::optional<double> realFrom(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

std::optional<bool> truthFrom(std::string_view text) {
    text = trimmed(text);
    std::string lower;
    for (char c : text)
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == "true" || lower == "1")
        return true;
    if (lower == "false" || lower == "0")
        return false;
    return std::nullopt;
}

std::optional<std::vector<double>> numbersFrom(std::string_view text) {
    text = trimmed(text);
    if (text.size() >= 2 && text.front() == '(' && text.back() == ')')
        text = text.substr(1, text.size() - 2);
    std::vector<double> numbers;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t next = text.find_first_of(" \t\n\r,", at);
        const std::string_view piece =
            text.substr(at, next == std::string_view::npos ? std::string_view::npos : next - at);
        if (!piece.empty()) {
            const std::optional<double> number = realFrom(piece);
            if (!number)
                return std::nullopt;
            numbers.push_back(*number);
        }
        if (next == std::string_view::npos)
            break;
        at = next + 1;
    }
    if (numbers.empty())
        return std::nullopt;
    return numbers;
}

std::string exactRealText(double value) {
    char buffer[64];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    if (error != std::errc())
        return "nan";
    return std::string(buffer, end);
}

}  // namespace vellum
