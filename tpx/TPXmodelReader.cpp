#include "tpx/TPXmodelReader.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <filesystem>
#include <system_error>

#include "grammar/SyntaxGraph.h"
#include "tpx/TPXmodelFormat.h"
#include "tpx/TPXquaternion.h"

namespace vellum {
namespace {

// Arrays are reserved at most this far ahead of what a file lists; beyond it they grow with the
// file, so that an announced count costs nothing until its elements come.
constexpr long long kMaxReserved = 4096;
// How deep CHILD links may nest objects below the top level.
constexpr int kMaxDepth = 1000;
// The longest texture file name a model may give, quotes included.
constexpr std::size_t kMaxStringToken = 4096;

constexpr char kMaterialForms[] = "COLOR R G B, TEXTURE \"FILE\" or MATERIAL NAME";

std::size_t reserved(long long count) {
    return static_cast<std::size_t>(std::min(count, kMaxReserved));
}

template <typename Slot, typename Value>
bool store(Slot& slot, Value value) {
    slot = std::move(value);
    return true;
}

std::string inQuotes(std::string_view text) {
    return "'" + std::string(text) + "'";
}

std::string counted(long long count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

TPXmodelReader::TPXmodelReader() {
    loadGrammar(kModelGrammar, kModelTokens);
    scanner().setLengthBound(kModelStringToken, kMaxStringToken);
}

std::optional<TPXmodel> TPXmodelReader::read(const std::string& fileName, std::string& error) {
    error.clear();
    // Asked before opening: opening a named pipe would wait for a writer.
    std::error_code failed;
    const auto status = std::filesystem::status(fileName, failed);
    if (!std::filesystem::is_regular_file(status)) {
        error = fileName + (std::filesystem::exists(status) ? ": not a regular file"
                                                            : ": cannot open the file");
        return std::nullopt;
    }
    begin(std::filesystem::path(fileName).parent_path().string(), fileName);
    text_ = nullptr;
    return end(parseFile(fileName), error);
}

std::optional<TPXmodel> TPXmodelReader::readText(const std::string& text, const std::string& folder,
                                                 std::string& error) {
    error.clear();
    begin(folder, {});
    text_ = text.c_str();
    return end(parseString(text), error);
}

void TPXmodelReader::begin(const std::string& folder, const std::string& rootName) {
    folder_ = folder;
    error_.clear();
    errorOffset_ = 0;
    root_ = std::make_unique<TPXnode>(TPXkind::ModelObject, rootName);
    totals_ = TPXmodelTotals();
    objectsEnd_ = 0;
    materialOpen_ = false;
}

std::optional<TPXmodel> TPXmodelReader::end(bool parsed, std::string& error) {
    if (parsed && error_.empty())
        checkRest();
    std::optional<TPXmodel> model;
    if (parsed && error_.empty())
        model = TPXmodel{std::move(root_), std::move(materials_), totals_};
    else
        error = failure();
    root_.reset();
    object_.reset();
    geometry_ = {};
    objects_.clear();
    lastChild_.clear();
    textures_.clear();
    materials_.clear();
    material_ = {};
    text_ = nullptr;
    return model;
}

void TPXmodelReader::checkRest() {
    // The walk ends successfully after the last complete object, whatever follows. An object
    // that broke off after its name is left unfinished, and anything but blanks and comments
    // after the last object is a mistake too (a material defined late, a stray brace): either
    // would drop the rest of the file without a word.
    if (object_) {
        const long last = tokenSpan(0).second;
        const long at = nextText(last, false);
        failAt(at < 0 ? last : at,
               (at < 0 ? "the text ends inside the object " : "syntax error in the object ") +
                   inQuotes(object_->name()));
        return;
    }
    const long rest = nextText(objectsEnd_, true);
    if (rest >= 0)
        failAt(rest, "only objects may follow the first object; materials are defined before it");
}

std::string TPXmodelReader::failure() {
    const std::string name = text_ != nullptr ? "line " : fileName() + ":";
    if (!error_.empty())
        return name + std::to_string(lineAt(errorOffset_)) + ": " + error_;
    if (!syntaxError().empty())
        return name + std::to_string(lineAt(errorPosition())) + ": " + syntaxError();
    return text_ != nullptr ? "the text cannot be read" : fileName() + ": cannot open the file";
}

bool TPXmodelReader::reopen(Cache& cache) const {
    return text_ != nullptr ? cache.attach(text_) : cache.open(fileName());
}

int TPXmodelReader::lineAt(long offset) {
    Cache cache;
    if (!reopen(cache))
        return 1;
    cache.seek(std::clamp(offset, 0L, cache.length()));
    return cache.lineNumber();
}

long TPXmodelReader::nextText(long offset, bool comments) {
    Cache cache;
    if (!reopen(cache))
        return -1;
    cache.seek(offset);
    while (!cache.atEnd()) {
        const char c = cache.peek();
        if (comments && c == '*') {
            while (!cache.atEnd() && cache.peek() != '\n')
                cache.read();
        } else if (syntax::isBlank(c)) {
            cache.read();
        } else {
            return cache.tell();
        }
    }
    return -1;
}

bool TPXmodelReader::failAt(long offset, const std::string& message) {
    if (error_.empty()) {
        error_ = message;
        errorOffset_ = offset;
    }
    if (text_ == nullptr)
        diagnose(Severity::Error, fileName(), offset, message);
    return false;
}

void TPXmodelReader::warnAt(long offset, const std::string& message) const {
    if (text_ == nullptr)
        diagnose(Severity::Warning, fileName(), offset, message);
}

int TPXmodelReader::onAction(int number) {
    using A = TPXmodelAction;
    switch (static_cast<A>(number)) {
        case A::ObjectStart:
            return startObject();
        case A::Link:
            return setLink();
        case A::Position:
            return store(position_, point());
        case A::Orientation:
            return store(orientation_, point());
        case A::Scale:
            return store(scale_, point());
        case A::Pivot:
            return store(pivot_, point());
        case A::VertexCount:
            return startVertices();
        case A::VertexPosition:
            return startVertex();
        case A::VertexNormal:
            return setVertexNormal();
        case A::VertexDone:
            return addVertex();
        case A::FaceCount:
            return startFaces();
        case A::FaceStart:
            return startFace();
        case A::Corner:
            return addCorner();
        case A::Clockwise:
            return reverseFace();
        case A::FaceColour:
            return finishFace(TPXmaterial::plain(rgb()), 3);
        case A::FaceTexture:
            return faceTexture();
        case A::NamedMaterial:
            return faceNamedMaterial();
        case A::ObjectEnd:
            return finishObject();
        case A::MaterialStart:
            return startMaterial();
        case A::MaterialColour:
            return setMaterial(TPXmaterial::plain(rgb()));
        case A::Ambient:
            return store(ambient_, rgb());
        case A::Diffuse:
            return store(diffuse_, rgb());
        case A::Specular:
            return store(specular_, rgb());
        case A::Emission:
            return store(emission_, rgb());
        case A::Shininess:
            return store(shininess_, real(0));
        case A::FullMaterial:
            return setMaterial(
                TPXmaterial::full(ambient_, diffuse_, specular_, emission_, shininess_));
        case A::TextureMaterial:
            return makeTextureMaterial();
        case A::MaterialEnd:
            return finishMaterial();
    }
    return 1;  // numbers the grammar does not use are accepted and do nothing
}

double TPXmodelReader::real(std::size_t k) const {
    const std::string_view text = tokenText(k);
    double value = 0.0;
    // A $NUMBER has at most 127 characters, so it always fits a double.
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

TPXp3 TPXmodelReader::point() const {
    return {real(2), real(1), real(0)};
}

TPXrgb TPXmodelReader::rgb() const {
    return {real(2), real(1), real(0)};
}

bool TPXmodelReader::wholeNumber(std::size_t k, long long& value) {
    const std::string_view text = tokenText(k);
    if (text.find('.') != std::string_view::npos)
        return failAt(tokenStart(k), inQuotes(text) + " is not a whole number");
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || value > INT_MAX || value < INT_MIN)
        return failAt(tokenStart(k), inQuotes(text) + " is out of range");
    return true;
}

bool TPXmodelReader::startObject() {
    if (materialOpen_)
        return failAt(tokenStart(0),
                      "syntax error in the definition of the material " + inQuotes(materialName_));
    const std::string name(tokenText(0));
    if (objects_.count(name) > 0)
        warnAt(tokenStart(0), "the object name " + inQuotes(name) +
                                  " is used before; CHILD and SIBLING reach the first object");
    object_ = std::make_unique<TPXnode>(TPXkind::ModelObject, name);
    geometry_ = TPXref<TPXgeometry>::make(name);
    object_->setGeometry(geometry_);
    linkCode_ = 0;
    linkTarget_ = nullptr;
    position_ = orientation_ = scale_ = pivot_ = std::nullopt;
    computeNormals_ = true;
    vertexCount_ = faceCount_ = 0;
    vertexOpen_ = faceOpen_ = false;
    return true;
}

bool TPXmodelReader::setLink() {
    // Only objects read before can be named: their ends have passed, so links point backwards.
    const auto found = objects_.find(std::string(tokenText(0)));
    if (found == objects_.end())
        return failAt(tokenStart(0), "no object " + inQuotes(tokenText(0)) + " is read before " +
                                         inQuotes(object_->name()) +
                                         "; CHILD and SIBLING name an object above them");
    linkCode_ = tokenCode(1);
    linkTarget_ = found->second;
    // Whatever walks the tree later may recurse; a child's parent is at most this deep.
    int depth = linkCode_ == kModelChildToken ? 1 : 0;
    for (const TPXnode* up = linkTarget_->parent(); up != root_.get(); up = up->parent()) {
        if (++depth > kMaxDepth)
            return failAt(tokenStart(0),
                          "the objects nest more than " + std::to_string(kMaxDepth) + " deep");
    }
    return true;
}

bool TPXmodelReader::startVertices() {
    if (!wholeNumber(0, vertexCount_))
        return false;
    if (vertexCount_ < 0)
        return failAt(tokenStart(0), "a vertex count cannot be negative");
    geometry_->vertices().reserve(reserved(vertexCount_));
    return true;
}

bool TPXmodelReader::startVertex() {
    if (static_cast<long long>(geometry_->vertices().size()) >= vertexCount_)
        return failAt(tokenStart(2), "the object " + inQuotes(object_->name()) + " announces " +
                                         counted(vertexCount_, "vertex", "vertices") +
                                         " but lists more");
    vertex_ = TPXvertex{point(), TPXp3()};
    vertexOpen_ = true;
    return true;
}

bool TPXmodelReader::setVertexNormal() {
    vertex_.normal = point();
    // One explicit normal is enough: the faces of this object keep the normals they are given.
    computeNormals_ = false;
    return true;
}

bool TPXmodelReader::addVertex() {
    geometry_->vertices().push_back(vertex_);
    vertexOpen_ = false;
    return true;
}

bool TPXmodelReader::startFaces() {
    // Tokens 1 and 0 are FACES and its count.
    if (vertexOpen_)
        return failAt(tokenStart(1), "a NORMAL needs three numbers");
    const auto listed = static_cast<long long>(geometry_->vertices().size());
    if (listed < vertexCount_)
        return failAt(tokenStart(1), "the object " + inQuotes(object_->name()) + " announces " +
                                         counted(vertexCount_, "vertex", "vertices") +
                                         " but lists " + std::to_string(listed));
    if (!wholeNumber(0, faceCount_))
        return false;
    if (faceCount_ < 0)
        return failAt(tokenStart(0), "a face count cannot be negative");
    geometry_->polygons().reserve(reserved(faceCount_));
    return true;
}

bool TPXmodelReader::startFace() {
    if (static_cast<long long>(geometry_->polygons().size()) >= faceCount_)
        return failAt(tokenStart(0), "the object " + inQuotes(object_->name()) + " announces " +
                                         counted(faceCount_, "face", "faces") + " but lists more");
    if (!wholeNumber(0, cornerCount_))
        return false;
    if (cornerCount_ <= 0)
        return failAt(tokenStart(0),
                      "a face needs at least one corner, not " + std::to_string(cornerCount_));
    corners_.clear();
    corners_.reserve(reserved(cornerCount_));
    faceOpen_ = true;
    return true;
}

bool TPXmodelReader::addCorner() {
    long long index = 0;
    if (!wholeNumber(0, index))
        return false;
    if (static_cast<long long>(corners_.size()) >= cornerCount_)
        return failAt(
            tokenStart(0),
            "the face announces " + counted(cornerCount_, "corner", "corners") + " but lists more");
    if (index < 0 || index >= vertexCount_) {
        const std::string has = vertexCount_ == 0 ? "which has no vertices"
                                                  : "whose vertices are numbered 0 to " +
                                                        std::to_string(vertexCount_ - 1);
        return failAt(tokenStart(0), "the vertex index " + std::to_string(index) +
                                         " is outside the object " + inQuotes(object_->name()) +
                                         ", " + has);
    }
    corners_.push_back(static_cast<int>(index));
    return true;
}

bool TPXmodelReader::cornersComplete(std::size_t k) {
    if (static_cast<long long>(corners_.size()) == cornerCount_)
        return true;
    return failAt(tokenStart(k), "the face announces " +
                                     counted(cornerCount_, "corner", "corners") + " but lists " +
                                     std::to_string(corners_.size()));
}

bool TPXmodelReader::reverseFace() {
    if (!cornersComplete(0))
        return false;
    // Faces are kept counter-clockwise; CW marks one written the other way round.
    std::reverse(corners_.begin(), corners_.end());
    return true;
}

bool TPXmodelReader::finishFace(TPXref<TPXmaterial> material, std::size_t k) {
    if (!cornersComplete(k))
        return false;
    TPXpolygon polygon(static_cast<int>(corners_.size()));
    for (std::size_t i = 0; i < corners_.size(); ++i)
        polygon.setCorner(static_cast<int>(i), corners_[i]);
    polygon.setMaterial(std::move(material));
    // Fewer than three corners span no plane: such a face keeps the zero normal.
    if (computeNormals_ && corners_.size() >= 3) {
        const auto& vertices = geometry_->vertices();
        const TPXp3& c0 = vertices[static_cast<std::size_t>(corners_[0])].position;
        const TPXp3& c1 = vertices[static_cast<std::size_t>(corners_[1])].position;
        const TPXp3& c2 = vertices[static_cast<std::size_t>(corners_[2])].position;
        polygon.setNormal((c1 - c0).cross(c2 - c0).normalised());
    }
    geometry_->polygons().push_back(std::move(polygon));
    faceOpen_ = false;
    return true;
}

bool TPXmodelReader::faceTexture() {
    if (!cornersComplete(1))
        return false;
    TPXref<TPXtexture> image = texture(0);
    return image && finishFace(TPXmaterial::textured(std::move(image)), 1);
}

bool TPXmodelReader::faceNamedMaterial() {
    const std::string_view name = tokenText(0);
    const auto found = std::find_if(materials_.begin(), materials_.end(),
                                    [&](const TPXnamedMaterial& m) { return m.name == name; });
    if (found == materials_.end())
        return failAt(tokenStart(0), "the material " + inQuotes(name) +
                                         " is not defined; materials are defined before the "
                                         "first object");
    ++found->uses;
    return finishFace(found->material, 1);
}

bool TPXmodelReader::finishObject() {
    // The walk passes here once the faces end, also when a face broke off or the closing brace
    // is missing: then a later object would be dropped without a word.
    const std::string& name = object_->name();
    if (faceOpen_)
        return failAt(source().tell(),
                      std::string("a face must end with its material: ") + kMaterialForms);
    const auto listed = static_cast<long long>(geometry_->polygons().size());
    if (listed < faceCount_)
        return failAt(source().tell(), "the object " + inQuotes(name) + " announces " +
                                           counted(faceCount_, "face", "faces") + " but lists " +
                                           std::to_string(listed));
    if (source().peek() != '}')
        return failAt(source().tell(), "expected '}' to end the object " + inQuotes(name));
    objectsEnd_ = source().tell() + 1;
    geometry_->finish();
    if (position_)
        object_->setPosition(*position_);
    if (orientation_)
        object_->setOrientation(TPXquaternion::fromAngles(*orientation_));
    if (scale_)
        object_->setScale(*scale_);
    if (pivot_)
        object_->setPivot(*pivot_);
    ++totals_.objects;
    totals_.vertices += geometry_->vertices().size();
    totals_.faces += geometry_->polygons().size();
    geometry_ = {};
    attach(std::move(object_));
    return true;
}

void TPXmodelReader::attach(std::unique_ptr<TPXnode> object) {
    TPXnode* node = object.get();
    objects_.try_emplace(node->name(), node);
    if (linkCode_ == kModelChildToken)
        return appendChild(*linkTarget_, std::move(object));
    if (linkCode_ != kModelSiblingToken)
        return appendChild(*root_, std::move(object));
    // A top-level object's parent is the root, so a sibling of it is top-level too.
    TPXnode*& last = lastChild_[linkTarget_->parent()];
    linkTarget_->adoptSibling(std::move(object));
    if (last == linkTarget_)
        last = node;
}

void TPXmodelReader::appendChild(TPXnode& parent, std::unique_ptr<TPXnode> child) {
    TPXnode*& last = lastChild_[&parent];
    TPXnode* node = child.get();
    if (last != nullptr)
        last->adoptSibling(std::move(child));
    else
        parent.adopt(std::move(child));
    last = node;
}

bool TPXmodelReader::startMaterial() {
    materialName_ = std::string(tokenText(0));
    const bool known =
        std::any_of(materials_.begin(), materials_.end(),
                    [&](const TPXnamedMaterial& m) { return m.name == materialName_; });
    if (known)
        warnAt(tokenStart(0), "the material " + inQuotes(materialName_) +
                                  " is defined before; faces use the first definition");
    material_ = {};
    ambient_ = diffuse_ = specular_ = emission_ = TPXrgb();
    shininess_ = 0.0;
    materialOpen_ = true;
    return true;
}

bool TPXmodelReader::setMaterial(TPXref<TPXmaterial> material) {
    material_ = std::move(material);
    return true;
}

bool TPXmodelReader::makeTextureMaterial() {
    TPXref<TPXtexture> image = texture(0);
    return image && setMaterial(TPXmaterial::textured(std::move(image)));
}

bool TPXmodelReader::finishMaterial() {
    material_->setName(materialName_);
    materials_.push_back({materialName_, std::move(material_), 0});
    materialOpen_ = false;
    return true;
}

TPXref<TPXtexture> TPXmodelReader::texture(std::size_t k) {
    const std::string_view token = tokenText(k);
    const std::string name(token.substr(1, token.size() - 2));  // the quotes removed
    std::filesystem::path path(name);
    if (path.is_relative() && !folder_.empty())
        path = std::filesystem::path(folder_) / path;
    const std::string file = path.string();
    TPXref<TPXtexture>& loaded = textures_[file];
    if (loaded)
        return loaded;
    std::error_code failed;
    const auto status = std::filesystem::status(file, failed);
    if (!std::filesystem::is_regular_file(status)) {
        failAt(tokenStart(k), "the texture file " + inQuotes(file) +
                                  (std::filesystem::exists(status) ? " is not a regular file"
                                                                   : " does not exist"));
        return {};
    }
    std::string problem;
    loaded = TPXtexture::load(file, problem);
    if (!loaded)
        failAt(tokenStart(k), problem);
    return loaded;
}

std::unique_ptr<TPXnode> TPXreadModel(const std::string& fileName, std::string& error) {
    TPXmodelReader reader;
    std::optional<TPXmodel> model = reader.read(fileName, error);
    if (!model)
        return nullptr;
    return std::move(model->root);
}

}  // namespace vellum
