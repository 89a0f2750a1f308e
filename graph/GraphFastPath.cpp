#include "graph/GraphFastPath.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "grammar/TokenDefinitions.h"
#include "graph/BooleanAttribute.h"
#include "graph/GraphFormat.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

// The codes the graph scanner gives (graph/GraphFormat.h), and two of the fast path's own.
enum Code : int {
    kUnhandled = -2,  // the engine might scan this differently from the fast path: give up
    kNoToken = -1,    // no definition matches here
    kGraphKeyword = 1,
    kVertexKeyword = kVertexToken,
    kBooleanKeyword = 3,
    kTrueKeyword = kTrueToken,
    kFalseKeyword = kFalseToken,
    kIntegerKeyword = 6,
    kRealKeyword = 7,
    kStringKeyword = 8,
    kVectorKeyword = 9,
    kEdgeKeyword = 12,
    kArrow = 13,
    kLabelKeyword = 14,
    kNumber = kNumberToken,
    kIdentifier = kIdentifierToken,
    kQuoted = kStringToken,
};

// The fixed tokens in the order the scanner tries them: the first one that is a prefix of the
// input wins, even inside a longer word ("vertexA" is the keyword, then "A").
struct Keyword {
    std::string_view text;
    int code;
};
constexpr Keyword kKeywords[] = {
    {"directed graph", kGraphKeyword},
    {"vertex", kVertexKeyword},
    {"boolean", kBooleanKeyword},
    {"true", kTrueKeyword},
    {"false", kFalseKeyword},
    {"integer", kIntegerKeyword},
    {"real", kRealKeyword},
    {"string", kStringKeyword},
    {"vector", kVectorKeyword},
    {"edge", kEdgeKeyword},
    {"->", kArrow},
    {"label", kLabelKeyword},
};

// Longest number or quoted string the fast path takes; longer ones go to the engine, which has
// its own bounds for them. Identifiers keep the engine's bound.
constexpr std::size_t kMaxValueText = 4096;
// Characters kept readable ahead of every token: more than the longest token taken.
constexpr std::size_t kLookahead = 2 * kMaxValueText + 64;
constexpr std::size_t kBufferSize = 1 << 20;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The file through a window that moves forward: characters before the current one are
// forgotten, and at least kLookahead characters after it are held unless the file ends first.
// A zero byte follows the last character held, which every rule below treats as the end of the
// input does (it starts no token and matches no literal).
class FileWindow {
  public:
    bool open(const std::string& fileName) {
        // What the engine's source refuses to open (a pipe would block), the engine reports.
        struct stat info {};
        if (::stat(fileName.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
            return false;
        file_.reset(std::fopen(fileName.c_str(), "rb"));
        if (!file_)
            return false;
        buffer_.resize(kBufferSize + 1);
        return fill();
    }

    char current() const { return buffer_[at_]; }
    char ahead(std::size_t k) const { return at_ + k < end_ ? buffer_[at_ + k] : '\0'; }
    const char* here() const { return buffer_.data() + at_; }
    void advance(std::size_t k) { at_ += k; }
    bool failed() const { return failed_; }

    // Makes kLookahead characters readable from the current one, or all that are left.
    void keepAhead() {
        if (end_ - at_ < kLookahead && !ended_)
            fill();
    }
    void skipBlanks() {
        for (;;) {
            while (at_ < end_ && isBlank(buffer_[at_]))
                ++at_;
            if (at_ < end_ || ended_ || !fill())
                return;
        }
    }

  private:
    struct Closer {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };

    bool fill() {
        std::memmove(buffer_.data(), buffer_.data() + at_, end_ - at_);
        end_ -= at_;
        at_ = 0;
        const std::size_t got =
            std::fread(buffer_.data() + end_, 1, kBufferSize - end_, file_.get());
        if (got == 0) {
            ended_ = true;
            failed_ = std::ferror(file_.get()) != 0;
        }
        end_ += got;
        buffer_[end_] = '\0';
        return got > 0;
    }

    std::unique_ptr<std::FILE, Closer> file_;
    std::vector<char> buffer_;
    std::size_t at_ = 0;   // the current character
    std::size_t end_ = 0;  // one past the last character held
    bool ended_ = false;
    bool failed_ = false;
};

// The vertex each number names. Files number their vertices 1, 2, 3, ... (the writer does), so
// numbers not far above the count go to a table indexed by the number; others to a hash table
// (open addressing, linear probing, never more than half full).
class VertexNumbers {
  public:
    // False when the number already names a vertex.
    bool insert(std::int32_t number, DirectedGraphVertex* vertex) {
        if (at(number) != nullptr)
            return false;
        if (number >= 0 && static_cast<std::size_t>(number) < 2 * count_ + 1024) {
            const auto index = static_cast<std::size_t>(number);
            if (index >= direct_.size())
                direct_.resize(std::max(2 * direct_.size(), index + 1));
            direct_[index] = vertex;
        } else {
            if (2 * (hashed_ + 1) > slots_.size())
                grow();
            slots_[find(number)] = {number, vertex};
            ++hashed_;
        }
        ++count_;
        return true;
    }
    DirectedGraphVertex* at(std::int32_t number) const {
        if (number >= 0 && static_cast<std::size_t>(number) < direct_.size() &&
            direct_[static_cast<std::size_t>(number)] != nullptr)
            return direct_[static_cast<std::size_t>(number)];
        return hashed_ == 0 ? nullptr : slots_[find(number)].vertex;
    }
    // Asks for the memory at(number) will read.
    void prefetch(std::int32_t number) const {
        if (number >= 0 && static_cast<std::size_t>(number) < direct_.size())
            __builtin_prefetch(&direct_[static_cast<std::size_t>(number)]);
        else if (hashed_ != 0)
            __builtin_prefetch(&slots_[home(number)]);
    }

  private:
    struct Slot {
        std::int32_t number = 0;
        DirectedGraphVertex* vertex = nullptr;
    };

    std::size_t home(std::int32_t number) const {
        return (static_cast<std::uint32_t>(number) * 0x9E3779B1u) & (slots_.size() - 1);
    }
    std::size_t find(std::int32_t number) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t i = home(number);
        while (slots_[i].vertex != nullptr && slots_[i].number != number)
            i = (i + 1) & mask;
        return i;
    }
    void grow() {
        std::vector<Slot> old(slots_.empty() ? 1024 : 2 * slots_.size());
        old.swap(slots_);
        for (const Slot& slot : old) {
            if (slot.vertex != nullptr)
                slots_[find(slot.number)] = slot;
        }
    }

    std::vector<DirectedGraphVertex*> direct_;  // null where no vertex has the number
    std::vector<Slot> slots_;
    std::size_t count_ = 0;
    std::size_t hashed_ = 0;
};

// Asks for both cache lines an element may span: its lists sit at its end.
template <typename T>
void prefetchObject(const T* object) {
    __builtin_prefetch(object);
    __builtin_prefetch(reinterpret_cast<const char*>(object) + sizeof(T) - 1);
}

// A token as scanned: its text points into the window and lasts until the next scan.
struct Token {
    int code = kNoToken;
    std::string_view text;
};

// The walk of the GRAPH grammar. Every function returns false to give up.
class FastWalk {
  public:
    FastWalk(FileWindow& in, DirectedGraph& graph) : in_(in), graph_(graph) {}

    bool graph() {
        Token token;
        if (!next(token) || token.code != kGraphKeyword)
            return false;
        take(token);
        graph_.clear();
        if (!next(token))
            return false;
        if (token.code == kIdentifier)
            take(token);  // the graph's name is not kept
        if (!literal('{'))
            return false;
        for (;;) {
            if (!next(token))
                return false;
            if (token.code != kVertexKeyword)
                break;
            take(token);
            if (!vertex())
                return false;
        }
        for (;;) {
            if (!next(token))
                return false;
            if (token.code != kEdgeKeyword)
                break;
            take(token);
            if (!edge())
                return false;
        }
        return createEdges() && literal('}') && !in_.failed();
    }

  private:
    bool vertex() {
        Token number;
        if (!expect(kNumber, number))
            return false;
        const std::int32_t value = integerValue(number.text);
        DirectedGraphVertex* vertex = graph_.createVertex();
        // The engine warns about a second vertex with the number: leave that to it.
        if (!numbers_.insert(value, vertex))
            return false;
        return block(*vertex);
    }

    // Edges are created in batches: their endpoints are scattered over memory, and a batch
    // fetches them all at once instead of waiting for each in turn. An edge with a block is
    // created at once after those before it, so that the block has its edge.
    bool edge() {
        // A token's text lasts until the next token is scanned (the window may move).
        Token token;
        if (!expect(kNumber, token))
            return false;
        const std::int32_t source = integerValue(token.text);
        if (!expect(kArrow, token) || !expect(kNumber, token))
            return false;
        PendingEdge& pending = pending_[pendingCount_++];
        pending.source = source;
        pending.target = integerValue(token.text);
        numbers_.prefetch(pending.source);
        numbers_.prefetch(pending.target);
        in_.skipBlanks();
        const bool hasBlock = in_.current() == '{';
        if (!hasBlock && pendingCount_ < kBatch)
            return true;
        if (!createEdges())
            return false;
        return !hasBlock || block(*graph_.edges().back());
    }

    // Creates the pending edges in file order; false when an endpoint names no vertex (the
    // engine reports it).
    bool createEdges() {
        DirectedGraphVertex* ends[2 * kBatch];
        for (std::size_t i = 0; i < pendingCount_; ++i) {
            ends[2 * i] = numbers_.at(pending_[i].source);
            ends[2 * i + 1] = numbers_.at(pending_[i].target);
            if (ends[2 * i] == nullptr || ends[2 * i + 1] == nullptr)
                return false;
            prefetchObject(ends[2 * i]);
            prefetchObject(ends[2 * i + 1]);
        }
        for (std::size_t i = 0; i < pendingCount_; ++i) {
            __builtin_prefetch(ends[2 * i]->outgoing().back());
            __builtin_prefetch(ends[2 * i + 1]->incoming().back());
        }
        for (std::size_t i = 0; i < pendingCount_; ++i) {
            if (graph_.createEdge(ends[2 * i], ends[2 * i + 1]) == nullptr)
                return false;
        }
        pendingCount_ = 0;
        return true;
    }

    // ["{" [LABEL] {ATTRIBUTE} "}"] after a vertex or an edge.
    bool block(GraphObject& object) {
        in_.skipBlanks();
        if (in_.current() != '{')
            return true;
        in_.advance(1);
        Token token;
        if (!next(token))
            return false;
        if (token.code == kLabelKeyword) {
            take(token);
            Token label;
            if (!expect(kIdentifier, label))
                return false;
            object.setLabel(label.text);
            if (!next(token))
                return false;
        }
        while (token.code >= kBooleanKeyword && token.code <= kVectorKeyword &&
               token.code != kTrueKeyword && token.code != kFalseKeyword) {
            take(token);
            if (!attribute(object, token.code) || !next(token))
                return false;
        }
        return literal('}');
    }

    bool attribute(GraphObject& object, int keyword) {
        Token name;
        if (!expect(kIdentifier, name))
            return false;
        std::string text(name.text);
        if (keyword == kVectorKeyword)
            return vector(object, std::move(text));
        if (!literal('='))
            return false;
        Token value;
        if (!next(value))
            return false;
        std::unique_ptr<Attribute> attribute;
        if (keyword == kBooleanKeyword &&
            (value.code == kTrueKeyword || value.code == kFalseKeyword))
            attribute =
                std::make_unique<BooleanAttribute>(std::move(text), value.code == kTrueKeyword);
        else if (keyword == kIntegerKeyword && value.code == kNumber)
            attribute =
                std::make_unique<IntegerAttribute>(std::move(text), integerValue(value.text));
        else if (keyword == kRealKeyword && value.code == kNumber)
            attribute = std::make_unique<RealAttribute>(std::move(text), realValue(value.text));
        else if (keyword == kStringKeyword && value.code == kQuoted)
            attribute = std::make_unique<StringAttribute>(
                std::move(text), std::string(value.text.substr(1, value.text.size() - 2)));
        else
            return false;
        take(value);
        object.addAttribute(std::move(attribute));
        return true;
    }

    // vector NAME "=" "(" NUMBER {NUMBER} ")".
    bool vector(GraphObject& object, std::string name) {
        std::vector<double> elements;
        if (!literal('=') || !literal('('))
            return false;
        Token number;
        if (!expect(kNumber, number))
            return false;
        elements.push_back(realValue(number.text));
        for (;;) {
            if (!next(number))
                return false;
            if (number.code != kNumber)
                break;
            take(number);
            elements.push_back(realValue(number.text));
        }
        if (!literal(')'))
            return false;
        object.addAttribute(
            std::make_unique<VectorAttribute>(std::move(name), std::move(elements)));
        return true;
    }

    // The token the scanner finds at the next non-blank character, not yet taken. False when the
    // fast path cannot be sure what the engine would scan there.
    bool next(Token& token) {
        in_.skipBlanks();
        in_.keepAhead();
        token = scan();
        return token.code != kUnhandled;
    }
    void take(const Token& token) { in_.advance(token.text.size()); }
    bool expect(int code, Token& token) {
        if (!next(token) || token.code != code)
            return false;
        take(token);
        return true;
    }
    // A literal terminal of the grammar: compared with the input as it stands, comments not
    // skipped.
    bool literal(char c) {
        in_.skipBlanks();
        if (in_.current() != c)
            return false;
        in_.advance(1);
        return true;
    }

    Token scan() const {
        const char c = in_.current();
        const char* at = in_.here();
        if (isLetter(c) || c == '-') {
            for (const Keyword& keyword : kKeywords) {
                if (keyword.text[0] == c && startsWith(keyword.text))
                    return {keyword.code, {at, keyword.text.size()}};
            }
        }
        if (c == '-' || isDigit(c))
            return number();
        if (isLetter(c)) {
            std::size_t n = 1;
            while (isLetter(in_.ahead(n)) || isDigit(in_.ahead(n)) || in_.ahead(n) == '_')
                ++n;
            if (n > kMaxTokenText)
                return {kUnhandled, {}};
            return {kIdentifier, {at, n}};
        }
        if (c == '"')
            return quoted();
        // A comment or an escape: the engine's; nothing else starts a token.
        if (c == '%' || c == '\\')
            return {kUnhandled, {}};
        return {kNoToken, {}};
    }

    bool startsWith(std::string_view text) const {
        for (std::size_t k = 0; k < text.size(); ++k) {
            if (in_.ahead(k) != text[k])
                return false;
        }
        return true;
    }

    // ["-"] digits ["." digits]; a fraction that is begun and not finished is the engine's.
    Token number() const {
        std::size_t n = in_.current() == '-' ? 1 : 0;
        if (!isDigit(in_.ahead(n)))
            return {kUnhandled, {}};
        while (isDigit(in_.ahead(n)))
            ++n;
        if (in_.ahead(n) == '.') {
            if (!isDigit(in_.ahead(n + 1)))
                return {kUnhandled, {}};
            n += 1;
            while (isDigit(in_.ahead(n)))
                ++n;
        }
        if (n > kMaxValueText)
            return {kUnhandled, {}};
        return {kNumber, {in_.here(), n}};
    }

    // A quoted string of printable characters without escapes (bytes of 128 and above included).
    Token quoted() const {
        std::size_t n = 1;
        for (;;) {
            const auto c = static_cast<unsigned char>(in_.ahead(n));
            if (c == '"')
                break;
            if (c < 32 || c == '\\' || n > kMaxValueText)
                return {kUnhandled, {}};
            ++n;
        }
        return {kQuoted, {in_.here(), n + 1}};
    }

    struct PendingEdge {
        std::int32_t source = 0;
        std::int32_t target = 0;
    };
    static constexpr std::size_t kBatch = 32;

    FileWindow& in_;
    DirectedGraph& graph_;
    VertexNumbers numbers_;
    PendingEdge pending_[kBatch];
    std::size_t pendingCount_ = 0;
};

}  // namespace

GraphFastPath::Outcome GraphFastPath::read(const std::string& fileName, DirectedGraph& graph) {
    FileWindow in;
    if (!in.open(fileName))
        return Outcome::GaveUp;
    FastWalk walk(in, graph);
    return walk.graph() ? Outcome::Read : Outcome::GaveUp;
}

}  // namespace vellum
