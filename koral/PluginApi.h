// The entry points of Vellum's extension libraries, for whoever writes one: method libraries
// (called from modules as `call LIB.METHOD`), layout algorithms (`NAME.layout`) and graph class
// handlers (`CLASS.gc`). A plug-in includes this header, defines the entries it offers, and links
// the shared core libraries (vellum-graph, vellum-koral) so that the graphs it is handed and the
// objects it returns are the program's own types. docs/plugins.md is the guide.
#pragma once

#include "graph/DirectedGraph.h"
#include "koral/KoralCondition.h"
#include "koral/KoralFrame.h"

namespace vellum {

class DirectedGraphRule;
class koralUnit;

// The types of the entries as the program looks them up. Every entry has C linkage and must not
// let an exception escape. Objects that an entry returns are allocated by the plug-in and owned
// by the program afterwards, which deletes them through their virtual destructors: this is safe
// because both sides use the same shared core libraries.
extern "C" {
// Method library: METHOD(graph, frame) works on the graph (the frame may be null); non-zero for
// success. Error(unit) gives the message for a method that returned 0: a text owned by the
// library (static or thread-local storage) and valid until the next call into it.
typedef int (*KoralMethodEntry)(DirectedGraph* graph, KoralFrame* frame);
typedef const char* (*KoralErrorEntry)(const koralUnit* unit);

// Layout algorithm: a one-line description; a chance to set it up (called by the desktop
// program's "Configure layout algorithm...", never by the command line); the layout itself,
// which writes every vertex's "position" (a vector of 3 reals) and returns non-zero on success.
// The notifier (may be null) is the frame showing the graph, for redraw requests.
typedef const char* (*LayoutDescriptionEntry)();
typedef void (*LayoutConfigureEntry)();
typedef int (*LayoutCompleteEntry)(DirectedGraph* graph, KoralFrame* notifier);

// Graph class handler: load a graph (a new graph or null); save one (non-zero on success); load
// a rule (a new rule or null); compile a module condition's text (a new condition or null;
// `compiler` is the module compiler asking, opaque to the handler).
typedef DirectedGraph* (*GraphLoadEntry)(const char* path);
typedef int (*GraphSaveEntry)(DirectedGraph* graph, const char* path);
typedef DirectedGraphRule* (*RuleLoadEntry)(const char* path);
typedef KoralCondition* (*ConditionCompileEntry)(void* compiler, const char* text);
}

}  // namespace vellum

// Marks a definition as an exported C entry point (also under -fvisibility=hidden).
#define VELLUM_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

// The entries with fixed names, declared here so that a plug-in's definitions are checked
// against the types above. A plug-in defines only those of its own kind.
VELLUM_PLUGIN_EXPORT const char* Error(const vellum::koralUnit* unit);
VELLUM_PLUGIN_EXPORT const char* lyDescription();
VELLUM_PLUGIN_EXPORT void lyConfigure();
VELLUM_PLUGIN_EXPORT int lyCompleteLayout(vellum::DirectedGraph* graph,
                                          vellum::KoralFrame* notifier);
VELLUM_PLUGIN_EXPORT vellum::DirectedGraph* gcLoadGraph(const char* path);
VELLUM_PLUGIN_EXPORT int gcSaveGraph(vellum::DirectedGraph* graph, const char* path);
VELLUM_PLUGIN_EXPORT vellum::DirectedGraphRule* gcLoadGraphRule(const char* path);
VELLUM_PLUGIN_EXPORT vellum::KoralCondition* gcGraphClassExpression(void* compiler,
                                                                    const char* text);

// Defines the method called as `call LIB.name`; the body sees `graph` and `frame` and returns
// non-zero for success.
#define VELLUM_KORAL_METHOD(name)                                                \
    VELLUM_PLUGIN_EXPORT int name([[maybe_unused]] vellum::DirectedGraph* graph, \
                                  [[maybe_unused]] vellum::KoralFrame* frame)
