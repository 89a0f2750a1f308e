#include "gui/view/ShapeLibrary.h"

#include "base/Console.h"
#include "tpx/TPXmodelReader.h"
#include "tpx/TPXprimitives.h"

namespace vellum {

namespace {

// A copy of `node` and its subtree sharing the geometries.
std::unique_ptr<TPXnode> copyTree(const TPXnode& node) {
    auto copy = std::make_unique<TPXnode>(node.kind(), node.name());
    copy->setPlacement(node.placement());
    if (node.geometry())
        copy->setGeometry(TPXref<TPXgeometry>(node.geometry()));
    TPXnode* last = nullptr;
    for (const TPXnode* child = node.firstChild(); child; child = child->nextSibling())
        last = last ? last->adoptSibling(copyTree(*child)) : copy->adopt(copyTree(*child));
    return copy;
}

void addCounts(const TPXnode& node, std::pair<std::size_t, std::size_t>& counts) {
    if (const TPXgeometry* geometry = node.geometry()) {
        counts.first += geometry->vertices().size();
        counts.second += geometry->polygons().size();
    }
    for (const TPXnode* child = node.firstChild(); child; child = child->nextSibling())
        if (child->kind() == TPXkind::ModelObject)
            addCounts(*child, counts);
}

bool isPrimitive(const std::string& representation) {
    return representation == "sphere" || representation == "cube" || representation == "cylinder" ||
           representation == "cone";
}

}  // namespace

ShapeLibrary::ShapeLibrary(std::string folder) : m_folder(std::move(folder)) {}

ShapeLibrary::~ShapeLibrary() = default;

std::unique_ptr<TPXnode> ShapeLibrary::make(const std::string& representation, const TPXrgb& colour,
                                            double opacity) {
    auto object = std::make_unique<TPXnode>(TPXkind::ModelObject, representation);
    if (!isPrimitive(representation)) {
        if (const TPXnode* model = this->model(representation)) {
            TPXnode* last = nullptr;
            for (const TPXnode* part = model->firstChild(); part; part = part->nextSibling())
                last = last ? last->adoptSibling(copyTree(*part)) : object->adopt(copyTree(*part));
            return object;
        }
    }
    object->setGeometry(
        primitive(isPrimitive(representation) ? representation : "sphere", colour, opacity));
    return object;
}

TPXref<TPXgeometry> ShapeLibrary::primitive(const std::string& representation, const TPXrgb& colour,
                                            double opacity) {
    TPXref<TPXgeometry>& shared =
        m_primitives[{representation, colour.r, colour.g, colour.b, opacity}];
    if (shared)
        return shared;
    using D = TPXdefaults;
    TPXref<TPXmaterial> material = TPXmaterial::plain(colour, opacity);
    if (representation == "cube")
        shared = TPXcube({D::cubeEdge, D::cubeEdge, D::cubeEdge}, material);
    else if (representation == "cylinder")
        shared = TPXcylinder(D::slices, D::radius, D::height, material);
    else if (representation == "cone")
        shared = TPXcone(D::slices, D::radius, D::height, material);
    else
        shared = TPXsphere(D::slices, D::stacks, D::radius, material);
    return shared;
}

const TPXnode* ShapeLibrary::model(const std::string& name) {
    auto found = m_models.find(name);
    if (found != m_models.end())
        return found->second.get();
    std::string error;
    std::unique_ptr<TPXnode> model;
    const bool relative = !name.empty() && name[0] != '/';
    if (relative && !m_folder.empty())
        model = TPXreadModel(m_folder + "/" + name, error);
    if (!model)
        model = TPXreadModel(name, error);
    if (!model)
        console() << "Could not load gometry '" << name << "' !!!\n";
    return (m_models[name] = std::move(model)).get();
}

std::pair<std::size_t, std::size_t> ShapeLibrary::counts(const TPXnode& vertexObject) {
    std::pair<std::size_t, std::size_t> counts{0, 0};
    addCounts(vertexObject, counts);
    return counts;
}

std::string ShapeLibrary::geometryName(const TPXnode& vertexObject) {
    if (const TPXgeometry* geometry = vertexObject.geometry())
        return geometry->name();
    return vertexObject.name();
}

}  // namespace vellum
