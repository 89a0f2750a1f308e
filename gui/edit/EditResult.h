// What an editor command says back: done, or not done with a message for a box of the given
// title ("Warning", "Alert", ...); the frame shows the box.
#pragma once

#include <string>

namespace vellum {

struct EditResult {
    bool done = true;
    std::string title;
    std::string message;

    static EditResult success() { return {}; }
    static EditResult failure(std::string title, std::string message) {
        return {false, std::move(title), std::move(message)};
    }
    explicit operator bool() const { return done; }
};

namespace editMessages {
inline constexpr const char* noVertexSelected = "No vertex selected";
inline constexpr const char* vertexNotFound = "Could not find the vertex in the graph!!!";
}  // namespace editMessages

}  // namespace vellum
