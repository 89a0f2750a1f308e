// ShapeLibrary: turns a vertex's representation and colour into the object that shows it. The
// built-in names give primitives of the system's default sizes; any other text names a model
// file, read once and copied for every vertex that uses it. Vertices of one representation and
// colour share one geometry (and so its display lists and collision model): the picture is the
// same. A file that cannot be loaded is reported once per library and shown as a sphere.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "tpx/TPXgeometry.h"
#include "tpx/TPXnode.h"

namespace vellum {

class ShapeLibrary {
  public:
    // Relative model names are looked up in `folder` first (the graph file's folder), then as
    // given (relative to the working folder).
    explicit ShapeLibrary(std::string folder = {});
    ~ShapeLibrary();
    ShapeLibrary(const ShapeLibrary&) = delete;
    ShapeLibrary& operator=(const ShapeLibrary&) = delete;

    // A new vertex object (kind 4) for `representation` in `colour`, unplaced.
    std::unique_ptr<TPXnode> make(const std::string& representation, const TPXrgb& colour,
                                  double opacity);

    // The vertex and face counts of a vertex object's shape (totals over a model's objects).
    static std::pair<std::size_t, std::size_t> counts(const TPXnode& vertexObject);
    // The geometry name shown for a vertex object: the primitive's, or the representation text
    // for a model.
    static std::string geometryName(const TPXnode& vertexObject);

  private:
    TPXref<TPXgeometry> primitive(const std::string& representation, const TPXrgb& colour,
                                  double opacity);
    // The model read from the file `name` names, or null (reported) when it cannot be loaded.
    const TPXnode* model(const std::string& name);

    std::string m_folder;
    std::map<std::tuple<std::string, double, double, double, double>, TPXref<TPXgeometry>>
        m_primitives;
    std::map<std::string, std::unique_ptr<TPXnode>> m_models;  // null: could not be loaded
};

}  // namespace vellum
