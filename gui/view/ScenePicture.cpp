#include "gui/view/ScenePicture.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>

#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "gui/view/ElementLook.h"
#include "gui/view/GraphScene.h"
#include "gui/view/PngWriter.h"
#include "gui/view/ScenePainter.h"

namespace vellum {

namespace {

std::string extensionOf(const std::string& fileName) {
    const auto dot = fileName.find_last_of('.');
    if (dot == std::string::npos || fileName.find('/', dot) != std::string::npos)
        return {};
    std::string extension = fileName.substr(dot);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

TPXimage grey(const TPXimage& colour) {
    TPXimage out(colour.width(), colour.height(), TPXimage::Type::Grey);
    const auto& in = colour.pixels();
    for (std::size_t i = 0; i < out.pixels().size(); ++i) {
        const double y = 0.299 * in[3 * i] + 0.587 * in[3 * i + 1] + 0.114 * in[3 * i + 2];
        out.pixels()[i] = static_cast<std::uint8_t>(std::lround(std::min(y, 255.0)));
    }
    return out;
}

// Distinct, light colours for interface pairs; other vertices stay grey.
TPXrgb pairColour(int number) {
    static const TPXrgb palette[] = {{0.2, 0.6, 1},   {0.3, 0.85, 0.3}, {1, 0.85, 0.2},
                                     {0.9, 0.4, 0.9}, {0.3, 0.9, 0.9},  {1, 0.55, 0.45}};
    return palette[(number - 1) % 6];
}

void setColour(DirectedGraphVertex& vertex, const TPXrgb& colour) {
    vertex.setAttribute(std::make_unique<VectorAttribute>(
        "color", std::vector<double>{colour.r, colour.g, colour.b}));
}

// Marks the rule's sides for its picture: pair numbers and colours, places on a circle.
void prepareSides(DirectedGraphRule& rule) {
    DirectedGraph& left = rule.editLeftSide();
    DirectedGraph& right = rule.editRightSide();
    std::map<const DirectedGraphVertex*, int> number;
    int pairs = 0;
    for (const VertexPair& pair : rule.interface().vertexPairs())
        if (pair.left && pair.right && !number.count(pair.left)) {
            number[pair.left] = ++pairs;
            number[pair.right] = pairs;
        }
    std::map<int, std::size_t> slot;  // a pair's place, the same on both sides
    std::size_t count = std::max(left.vertexCount(), right.vertexCount());
    std::size_t next = 0;
    for (DirectedGraphVertex& vertex : left.vertices()) {
        auto found = number.find(&vertex);
        const std::size_t index = next++;
        if (found != number.end())
            slot[found->second] = index;
        placeOnCircle(vertex, index, count);
    }
    std::size_t free = left.vertexCount();
    for (DirectedGraphVertex& vertex : right.vertices()) {
        auto found = number.find(&vertex);
        const std::size_t index =
            found != number.end() && slot.count(found->second) ? slot[found->second] : free++;
        count = std::max(count, free);
        placeOnCircle(vertex, index, std::max(count, index + 1));
    }
    for (DirectedGraph* side : {&left, &right})
        for (DirectedGraphVertex& vertex : side->vertices()) {
            auto found = number.find(&vertex);
            if (found == number.end()) {
                setColour(vertex, {0.7, 0.7, 0.7});
                continue;
            }
            setColour(vertex, pairColour(found->second));
            const std::string label = "(" + std::to_string(found->second) + ")" +
                                      (vertex.label().empty() ? "" : " " + vertex.label());
            vertex.setLabel(label);
        }
}

}  // namespace

std::optional<TPXimage> graphPicture(DirectedGraph& graph, const std::string& modelFolder,
                                     const PictureOptions& options, std::string& error) {
    // The file is not changed: the circle is the picture's only.
    setOutUnplaced(graph);
    GraphScene scene(modelFolder);
    scene.build(graph);
    std::unique_ptr<ScenePainter> painter = ScenePainter::create(options, error);
    if (!painter)
        return std::nullopt;
    return painter->draw(scene.root(), scene.bounds(), error);
}

std::optional<TPXimage> rulePicture(DirectedGraphRule& rule, int width, int height,
                                    std::string& error) {
    prepareSides(rule);
    PictureOptions options;
    options.width = std::max(1, width / 2);
    options.height = height;
    options.camera = "front";
    options.background = {0.96, 0.96, 0.96};
    GraphScene leftScene, rightScene;
    leftScene.build(rule.editLeftSide());
    rightScene.build(rule.editRightSide());
    std::unique_ptr<ScenePainter> painter = ScenePainter::create(options, error);
    if (!painter)
        return std::nullopt;
    std::optional<TPXimage> left = painter->draw(leftScene.root(), leftScene.bounds(), error);
    if (!left)
        return std::nullopt;
    std::optional<TPXimage> right = painter->draw(rightScene.root(), rightScene.bounds(), error);
    if (!right)
        return std::nullopt;
    TPXimage both(width, height, TPXimage::Type::Colour);
    std::fill(both.pixels().begin(), both.pixels().end(), 160);  // the line between the sides
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < options.width; ++x)
            for (int c = 0; c < 3; ++c) {
                const std::size_t from = (static_cast<std::size_t>(y) * options.width + x) * 3 + c;
                both.pixels()[(static_cast<std::size_t>(y) * width + x) * 3 + c] =
                    x == options.width - 1 ? 160 : left->pixels()[from];
                const int rightX = width - options.width + x;
                both.pixels()[(static_cast<std::size_t>(y) * width + rightX) * 3 + c] =
                    x == 0 ? 160 : right->pixels()[from];
            }
    return both;
}

bool isPictureFile(const std::string& fileName) {
    const std::string extension = extensionOf(fileName);
    return extension == ".png" || extension == ".ppm" || extension == ".pgm";
}

bool writePicture(const TPXimage& picture, const std::string& fileName, std::string& error) {
    const std::string extension = extensionOf(fileName);
    bool written = false;
    if (extension == ".png")
        written = writePng(picture, fileName);
    else if (extension == ".pgm")
        written = grey(picture).write(fileName);
    else if (extension == ".ppm")
        written = picture.write(fileName);
    if (!written)
        error = "cannot write the picture '" + fileName + "'";
    return written;
}

}  // namespace vellum
