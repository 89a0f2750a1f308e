#include "gui/CanvasHelpers.h"

#include <GL/gl.h>

#include <algorithm>

#include "tpx/TPXdraw.h"
#include "tpx/TPXprimitives.h"
#include "tpx/TPXtransform.h"

namespace vellum {

namespace {

constexpr double kMarkRadius = 0.12;
const TPXrgb kMarkColour{1.0, 0.85, 0.0};

// The mark shows through whatever lies in front of its point: it is drawn without the depth
// test.
class MarkNode : public TPXnode {
  public:
    MarkNode() : TPXnode(TPXkind::Widget, CanvasHelpers::markName) {}
    void drawSelf(TPXdrawContext& context) const override {
        glDisable(GL_DEPTH_TEST);
        TPXnode::drawSelf(context);
        glEnable(GL_DEPTH_TEST);
    }
};

// A flat grid of cells x cells quads in the x-z plane, facing up, centred on the origin.
TPXref<TPXgeometry> groundGeometry(const TPXgroundSettings& settings, double opacity) {
    TPXref<TPXgeometry> grid = TPXref<TPXgeometry>::make(CanvasHelpers::groundName);
    const int n = settings.cells;
    const double cell = settings.size / n;
    const double start = -settings.size / 2;
    for (int i = 0; i <= n; ++i)
        for (int k = 0; k <= n; ++k)
            grid->vertices().push_back(
                {TPXp3(start + i * cell, 0, start + k * cell), TPXp3(0, 1, 0)});
    const TPXref<TPXmaterial> material = TPXmaterial::plain(settings.colour, opacity);
    const auto at = [n](int i, int k) { return i * (n + 1) + k; };
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < n; ++k) {
            TPXpolygon quad(4);
            // Counter-clockwise seen from above.
            quad.setCorner(0, at(i, k));
            quad.setCorner(1, at(i, k + 1));
            quad.setCorner(2, at(i + 1, k + 1));
            quad.setCorner(3, at(i + 1, k));
            quad.setNormal(TPXp3(0, 1, 0));
            quad.setMaterial(material);
            grid->polygons().push_back(std::move(quad));
        }
    }
    grid->finish();
    return grid;
}

const TPXnode* findIdentity(const TPXnode* first, std::uint32_t identity) {
    std::vector<const TPXnode*> pending;
    for (const TPXnode* top = first; top; top = top->nextSibling())
        pending.push_back(top);
    std::reverse(pending.begin(), pending.end());
    while (!pending.empty()) {
        const TPXnode* node = pending.back();
        pending.pop_back();
        if (node->identity() == identity)
            return node;
        for (const TPXnode* child = node->firstChild(); child; child = child->nextSibling())
            pending.push_back(child);
    }
    return nullptr;
}

}  // namespace

CanvasHelpers::CanvasHelpers()
    : m_ground(std::make_unique<TPXnode>(TPXkind::Widget, groundName)),
      m_mark(std::make_unique<MarkNode>()) {
    m_mark->setGeometry(TPXsphere(TPXdefaults::slices, TPXdefaults::stacks, kMarkRadius,
                                  TPXmaterial::plain(kMarkColour)));
    rebuildGround();
}

CanvasHelpers::~CanvasHelpers() = default;

void CanvasHelpers::setGroundSettings(const TPXgroundSettings& settings) {
    m_settings = settings;
    m_settings.size = std::max(m_settings.size, 1e-3);
    m_settings.cells = std::clamp(m_settings.cells, 1, 1000);
    rebuildGround();
}

void CanvasHelpers::rebuildGround() {
    m_opaqueGround = groundGeometry(m_settings, 1.0);
    m_transparentGround = groundGeometry(m_settings, TPXgroundSettings::transparentOpacity);
    m_ground->setPosition(TPXp3(0, m_settings.level, 0));
}

void CanvasHelpers::showMark(const TPXp3& point) {
    m_mark->setPosition(point);
    m_markShown = true;
}

std::optional<TPXp3> CanvasHelpers::markPoint() const {
    if (!m_markShown)
        return std::nullopt;
    return m_mark->placement().position;
}

void CanvasHelpers::draw(TPXrenderer& renderer, const TPXcamera& camera, int height) {
    TPXdrawContext context = renderer.context(camera, height);
    context.clip = camera.projectionMatrix();
    if (m_groundMode != TPXgroundMode::Hidden) {
        const bool transparent = m_groundMode == TPXgroundMode::Transparent;
        m_ground->setGeometry(transparent ? m_transparentGround : m_opaqueGround);
        context.style = m_groundMode == TPXgroundMode::Wireframe ? TPXdrawStyle::Wireframe
                                                                 : TPXdrawStyle::Solid;
        TPXdrawScene(m_ground.get(), context);
    }
    if (m_markShown) {
        context.style = TPXdrawStyle::Solid;
        TPXdrawScene(m_mark.get(), context);
    }
    glFinish();
}

std::optional<TPXp3> CanvasHelpers::markPointOn(const TPXnode* first, std::uint32_t identity,
                                                const TPXray& ray) {
    const TPXnode* object = findIdentity(first, identity);
    if (!object)
        return std::nullopt;
    const TPXp3 origin = object->worldPoint(TPXp3());
    const auto toLocal = TPXinverseAffine(object->worldMatrix());
    if (!object->geometry() || !toLocal)
        return origin;
    const TPXp3 from = TPXtransformPoint(*toLocal, ray.origin);
    const TPXp3 along = TPXtransformPoint(*toLocal, ray.origin + ray.direction) - from;
    const auto hit = object->geometry()->closestHit(from, along);
    if (!hit)
        return origin;
    return object->worldPoint(hit->point);
}

}  // namespace vellum
