// bench_scene [--only light|exact|pick] [--near] [VERTICES...]: graphs as 3D scenes, for graphs of
// 10^3, 10^4 and 10^5 vertices (or the sizes given) with twice as many edges between random ends,
// every element labelled, the vertices on a 3D grid. For each size it prints, beside the targets:
// - the time to build the scene and the scene's memory per element (resident and heap);
// - the time of an incremental update after a step that changed ten elements;
// - offscreen frames per second at 1024x768 through the perspective camera fitted to the whole
//   graph: the exact picture, and a minimal vertex-buffer loop drawing the same spheres as
//   triangles and the edges as lines (the renderer's practical limit), ours as a ratio of it;
// - frames per second of the light picture drawn while the camera moves;
// - the time per pick, with the selection pass culled to the pick region and without.
// --only measures one kind of frame (after the builds), for a profiler to see it alone.
// --near joins each edge's ends as neighbours on the grid instead of at random: the random
// graph's long lines cross the whole picture and cost most of its pixels, a laid-out graph's
// lines are short.
#define GL_GLEXT_PROTOTYPES 1

#include <GL/gl.h>
#include <GL/glext.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/BenchGraph.h"
#include "graph/VectorAttribute.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneChanges.h"
#include "gui/view/TPXcamera.h"
#include "gui/view/TPXoffscreen.h"
#include "gui/view/TPXpicker.h"
#include "gui/view/TPXrenderer.h"
#include "tpx/TPXprimitives.h"

namespace {

using vellum::DirectedGraphEdge;
using vellum::DirectedGraphVertex;
using vellum::GraphScene;
using vellum::TPXp3;
using vellum::bench::Clock;
using vellum::bench::secondsSince;
using vellum::bench::TestGraph;

constexpr int kWidth = 1024;
constexpr int kHeight = 768;
constexpr double kSkipSeconds = 5.0;  // frames slower than this are not measured
constexpr double kFrameBudget = 4.0;  // seconds spent measuring one kind of frame
constexpr int kMaxFrames = 10;
constexpr int kUpdates = 2000;
constexpr int kPickRounds = 20;

double residentBytes() {
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    long resident = 0;
    statm >> pages >> resident;
    return static_cast<double>(resident) * 4096.0;
}

double heapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// 1. Builds `scene` from the graph and prints the time and the memory it took per element.
void measureBuild(GraphScene& scene, TestGraph& g, const char* what) {
    const double resident = residentBytes();
    const double heap = heapBytes();
    const Clock::time_point start = Clock::now();
    scene.build(g.graph);
    const double seconds = secondsSince(start);
    const double elements = double(g.vertices.size() + g.edges.size());
    std::printf(
        "  %-34s %8.3f s (target <= 0.5 s at 10^5)   %6.0f bytes/element resident, "
        "%6.0f heap\n",
        what, seconds, (residentBytes() - resident) / elements, (heapBytes() - heap) / elements);
}

// One step of ten changes: relabels 4 vertices, recolours 2, removes 2 edges and adds 2, and
// returns what the scene must catch up with.
vellum::SceneChanges makeStep(TestGraph& g, std::mt19937& random, int step) {
    vellum::SceneChanges changes;
    std::uniform_int_distribution<std::size_t> vertexPick(0, g.vertices.size() - 1);
    std::vector<DirectedGraphVertex*> touched;
    for (int i = 0; i < 4; ++i) {
        DirectedGraphVertex* v = g.vertices[vertexPick(random)];
        v->setLabel("r" + std::to_string(step));
        touched.push_back(v);
    }
    for (int i = 0; i < 2; ++i) {
        DirectedGraphVertex* v = g.vertices[vertexPick(random)];
        const double red = (step % 5) * 0.25;
        v->setAttribute(
            std::make_unique<vellum::VectorAttribute>("color", std::vector<double>{red, 1, 0}));
        touched.push_back(v);
    }
    for (int i = 0; i < 2; ++i) {
        std::uniform_int_distribution<std::size_t> edgePick(0, g.edges.size() - 1);
        const std::size_t at = edgePick(random);
        changes.removed.push_back(g.edges[at]->serial());
        g.graph.removeEdge(g.edges[at]);
        g.edges[at] = g.edges.back();
        g.edges.pop_back();
    }
    // Vertices first, each kind in graph order (the vertices were created in serial order).
    std::sort(touched.begin(), touched.end(),
              [](auto* a, auto* b) { return a->serial() < b->serial(); });
    touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
    changes.changed.assign(touched.begin(), touched.end());
    for (int i = 0; i < 2; ++i) {
        DirectedGraphEdge* e =
            g.graph.createEdge(g.vertices[vertexPick(random)], g.vertices[vertexPick(random)]);
        e->setLabel("n" + std::to_string(step));
        g.edges.push_back(e);
        changes.changed.push_back(e);
    }
    return changes;
}

// 2. The time per incremental update, the graph's own changes left out.
void measureUpdates(GraphScene& scene, TestGraph& g, std::mt19937& random) {
    double seconds = 0.0;
    for (int step = 0; step < kUpdates; ++step) {
        const vellum::SceneChanges changes = makeStep(g, random, step);
        const Clock::time_point start = Clock::now();
        scene.update(changes);
        seconds += secondsSince(start);
    }
    std::printf("  %-34s %8.4f ms (target <= 0.2 ms at 10^5), mean of %d\n",
                "update after 10 changes", 1000.0 * seconds / kUpdates, kUpdates);
}

// The frames per second of `draw`, after a warm-up frame; 0 when that frame took longer than
// kSkipSeconds (then `warmUp` holds its time).
double framesPerSecond(const std::function<void()>& draw, double& warmUp,
                       int maxFrames = kMaxFrames) {
    Clock::time_point start = Clock::now();
    draw();
    warmUp = secondsSince(start);
    if (warmUp > kSkipSeconds)
        return 0.0;
    start = Clock::now();
    int frames = 0;
    while (frames < 2 || (frames < maxFrames && secondsSince(start) < kFrameBudget)) {
        draw();
        ++frames;
    }
    return frames / secondsSince(start);
}

// A minimal vertex-buffer drawing of the graph: one shared buffer of the default sphere's
// triangles (positions and normals), drawn once per vertex after a glTranslated, and one
// buffer of the edges' ends drawn as GL_LINES. Lit by the camera's lights, one colour each.
class VertexBufferLoop {
  public:
    explicit VertexBufferLoop(const TestGraph& g) {
        for (const DirectedGraphVertex* v : g.vertices)
            m_centres.push_back(positionOf(*v));
        std::vector<float> lines;
        for (const DirectedGraphEdge* e : g.edges) {
            for (const TPXp3& p : {positionOf(*e->source()), positionOf(*e->target())})
                lines.insert(lines.end(), {float(p.x()), float(p.y()), float(p.z())});
        }
        m_lineVertices = static_cast<GLsizei>(lines.size() / 3);
        const std::vector<float> sphere = sphereTriangles();
        m_sphereVertices = static_cast<GLsizei>(sphere.size() / 6);
        glGenBuffers(2, m_buffers);
        upload(m_buffers[0], sphere);
        upload(m_buffers[1], lines);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    ~VertexBufferLoop() { glDeleteBuffers(2, m_buffers); }
    VertexBufferLoop(const VertexBufferLoop&) = delete;
    VertexBufferLoop& operator=(const VertexBufferLoop&) = delete;

    void drawFrame(const vellum::TPXcamera& camera, const vellum::TPXlook& look) const {
        glViewport(0, 0, kWidth, kHeight);
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        camera.apply(look.lights);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_BLEND);
        glEnableClientState(GL_VERTEX_ARRAY);
        drawSpheres();
        drawLines();
        glDisableClientState(GL_VERTEX_ARRAY);
        glFinish();
    }

  private:
    static TPXp3 positionOf(const DirectedGraphVertex& v) {
        const auto* p = dynamic_cast<const vellum::VectorAttribute*>(v.findAttribute("position"));
        return TPXp3(p->value()[0], p->value()[1], p->value()[2]);
    }

    // The default sphere's polygons as a triangle fan each: position and normal per corner.
    static std::vector<float> sphereTriangles() {
        using vellum::TPXdefaults;
        const auto sphere =
            vellum::TPXsphere(TPXdefaults::slices, TPXdefaults::stacks, TPXdefaults::radius,
                              vellum::TPXref<vellum::TPXmaterial>());
        std::vector<float> data;
        auto corner = [&](int index) {
            const vellum::TPXvertex& v = sphere->vertices()[index];
            data.insert(data.end(),
                        {float(v.position.x()), float(v.position.y()), float(v.position.z()),
                         float(v.normal.x()), float(v.normal.y()), float(v.normal.z())});
        };
        for (const vellum::TPXpolygon& polygon : sphere->polygons()) {
            const std::vector<int>& c = polygon.corners();
            for (std::size_t i = 1; i + 1 < c.size(); ++i) {
                corner(c[0]);
                corner(c[i]);
                corner(c[i + 1]);
            }
        }
        return data;
    }

    static void upload(GLuint buffer, const std::vector<float>& data) {
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(data.size() * sizeof(float)),
                     data.data(), GL_STATIC_DRAW);
    }

    void drawSpheres() const {
        glEnable(GL_LIGHTING);
        glEnable(GL_COLOR_MATERIAL);
        glColor3f(0.0f, 0.5f, 1.0f);
        glEnableClientState(GL_NORMAL_ARRAY);
        glBindBuffer(GL_ARRAY_BUFFER, m_buffers[0]);
        glVertexPointer(3, GL_FLOAT, 6 * sizeof(float), nullptr);
        glNormalPointer(GL_FLOAT, 6 * sizeof(float),
                        reinterpret_cast<const void*>(3 * sizeof(float)));
        for (const TPXp3& c : m_centres) {
            glPushMatrix();
            glTranslated(c.x(), c.y(), c.z());
            glDrawArrays(GL_TRIANGLES, 0, m_sphereVertices);
            glPopMatrix();
        }
        glDisableClientState(GL_NORMAL_ARRAY);
    }

    void drawLines() const {
        glDisable(GL_LIGHTING);
        glColor3f(1.0f, 0.0f, 0.0f);
        glBindBuffer(GL_ARRAY_BUFFER, m_buffers[1]);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
        glDrawArrays(GL_LINES, 0, m_lineVertices);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }

    std::vector<TPXp3> m_centres;
    GLuint m_buffers[2] = {0, 0};
    GLsizei m_sphereVertices = 0;
    GLsizei m_lineVertices = 0;
};

void printFrames(const char* what, double fps, double warmUp, const char* target) {
    if (fps == 0.0) {
        std::printf("  %-34s skipped: the warm-up frame took %.1f s\n", what, warmUp);
        return;
    }
    std::printf("  %-34s %8.2f frames/s (warm-up frame %.2f s)%s\n", what, fps, warmUp, target);
}

// 3 and 4. The exact picture against the vertex-buffer loop, then the light picture.
void measureFrames(const GraphScene& scene, const TestGraph& g, vellum::TPXrenderer& renderer,
                   const vellum::TPXcamera& camera, const std::string& only) {
    double warmUp = 0.0;
    if (only == "light" || only == "exact") {
        const double fps = framesPerSecond(
            [&] { renderer.drawFrame(scene.root(), camera, kWidth, kHeight, only == "light"); },
            warmUp, 1000);
        printFrames(only == "light" ? "light picture" : "exact picture", fps, warmUp, "");
        return;
    }
    const double exact = framesPerSecond(
        [&] { renderer.drawFrame(scene.root(), camera, kWidth, kHeight, false); }, warmUp);
    printFrames("exact picture", exact, warmUp, "");

    VertexBufferLoop loop(g);
    const double minimal =
        framesPerSecond([&] { loop.drawFrame(camera, renderer.look()); }, warmUp);
    printFrames("vertex-buffer loop (no labels)", minimal, warmUp, "");
    if (exact > 0.0 && minimal > 0.0)
        std::printf("  %-34s %8.2f (aim >= 0.5 at 10^4)\n", "exact / loop", exact / minimal);

    const double light = framesPerSecond(
        [&] { renderer.drawFrame(scene.root(), camera, kWidth, kHeight, true); }, warmUp);
    printFrames("light picture", light, warmUp, " (target >= 20 at 10^4)");
}

// 5. The time per pick at a few window points, the selection pass culled to the pick region
// and not (as many rounds as fit in kFrameBudget); both should name the same objects.
void measurePicking(const GraphScene& scene, vellum::TPXrenderer& renderer,
                    const vellum::TPXcamera& camera) {
    constexpr int points[][2] = {{kWidth / 2, kHeight / 2},
                                 {kWidth / 3, kHeight / 3},
                                 {2 * kWidth / 3, kHeight / 2},
                                 {kWidth / 2, 2 * kHeight / 3},
                                 {kWidth / 4, 3 * kHeight / 4}};
    renderer.drawFrame(scene.root(), camera, kWidth, kHeight);  // sets the viewport
    vellum::TPXpicker picker;
    for (const bool cull : {true, false}) {
        int hits = 0;
        int rounds = 0;
        std::vector<std::uint32_t> found;
        const Clock::time_point start = Clock::now();
        for (int round = 0; round < kPickRounds && secondsSince(start) < kFrameBudget; ++round) {
            ++rounds;
            for (const auto& p : points) {
                const auto identity = picker.pick(renderer, scene.root(), camera, p[0], p[1], cull);
                hits += identity ? 1 : 0;
                if (round == 0)
                    found.push_back(identity.value_or(0));
            }
        }
        const int picks = rounds * static_cast<int>(std::size(points));
        std::printf("  %-34s %8.3f ms per pick, %d of %d picks hit, objects:",
                    cull ? "pick (culled to the region)" : "pick (whole scene)",
                    1000.0 * secondsSince(start) / picks, hits, picks);
        for (std::uint32_t identity : found)
            std::printf(" %u", identity);
        std::printf("\n");
    }
}

void runSize(std::size_t vertexCount, vellum::TPXrenderer& renderer, const std::string& only,
             bool near) {
    std::mt19937 random(20240613);
    auto g = std::make_unique<TestGraph>();
    vellum::bench::makeGraph(*g, vertexCount, random, near);
    std::printf("\n%zu vertices, %zu edges %s, every element labelled\n", g->vertices.size(),
                g->edges.size(), near ? "between grid neighbours" : "between random vertices");

    // The first build also adds the attributes a shown vertex carries to the graph; a second
    // scene of the same graph costs the scene alone.
    auto first = std::make_unique<GraphScene>();
    measureBuild(*first, *g, "build (adds vertex attributes)");
    GraphScene scene;
    measureBuild(scene, *g, "build again (scene alone)");
    first.reset();
    const vellum::TPXnode* someObject = scene.objectOf(*g->vertices.front());
    const bool labelled = someObject && someObject->firstChild() &&
                          someObject->firstChild()->name() == GraphScene::labelName;
    std::printf("  labels %s\n", labelled ? "shown" : "NOT shown (no font found)");

    if (only.empty())
        measureUpdates(scene, *g, random);

    vellum::TPXcamera camera = *vellum::TPXcamera::standard("perspective");
    camera.setViewport(kWidth, kHeight);
    camera.fit(scene.bounds());
    if (only != "pick")
        measureFrames(scene, *g, renderer, camera, only);
    if (only.empty() || only == "pick")
        measurePicking(scene, renderer, camera);
}

}  // namespace

int main(int argc, char** argv) {
    // Line by line: a run takes minutes and is often watched through a pipe.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::vector<std::size_t> sizes;
    std::string only;
    bool near = false;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--near") {
            near = true;
            continue;
        }
        if (argument == "--only" && i + 1 < argc) {
            only = argv[++i];
            if (only == "light" || only == "exact" || only == "pick")
                continue;
        }
        const long n = std::atol(argv[i]);
        if (n < 1 || (!only.empty() && only != "light" && only != "exact" && only != "pick")) {
            std::fprintf(stderr,
                         "usage: bench_scene [--only light|exact|pick] [--near] [VERTICES...]\n");
            return 2;
        }
        sizes.push_back(static_cast<std::size_t>(n));
    }
    if (sizes.empty())
        sizes = {1000, 10000, 100000};
    std::string error;
    const auto context = vellum::TPXoffscreen::create(kWidth, kHeight, error);
    if (!context) {
        std::fprintf(stderr, "bench_scene: no OpenGL: %s\n", error.c_str());
        return 1;
    }
    vellum::bench::printLoadAverage();
    std::printf("OpenGL: %s, %dx%d offscreen, perspective camera fitted to the graph\n",
                reinterpret_cast<const char*>(glGetString(GL_RENDERER)), kWidth, kHeight);
    vellum::TPXrenderer renderer;
    for (std::size_t n : sizes)
        runSize(n, renderer, only, near);
    return 0;
}
