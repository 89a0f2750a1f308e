// The reader of 3D model files (.3rd): the grammar engine runs the TRD grammar and tokens
// (tpx/TPXmodelFormat.h) and the semantic actions build a forest of model objects, each a scene
// node of kind 4 owning one geometry named after the object. Every count and index of the file
// is checked against what it announces, so that no array is read or written past its end, and
// storage grows with what the file lists rather than with what it announces.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "grammar/GrammarParser.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXnode.h"
#include "tpx/TPXtexture.h"

namespace vellum {

// A material defined by name at the top of a model file.
struct TPXnamedMaterial {
    std::string name;
    TPXref<TPXmaterial> material;
    int uses = 0;  // the faces that name it
};

// Totals over all objects of a model.
struct TPXmodelTotals {
    std::size_t objects = 0;
    std::size_t vertices = 0;
    std::size_t faces = 0;
};

// What a model file holds.
struct TPXmodel {
    // A node of kind ModelObject without geometry, named by the file, whose children are the
    // file's top-level objects in file order; CHILD and SIBLING objects hang below them.
    std::unique_ptr<TPXnode> root;
    std::vector<TPXnamedMaterial> materials;  // in file order
    TPXmodelTotals totals;
};

class TPXmodelReader : private GrammarParser {
  public:
    TPXmodelReader();

    // Reads the model file. On failure: none, nothing of the file kept, and `error` says why as
    // "FILE:LINE: WHAT" (just "FILE: WHAT" when the file cannot be opened). With a diagnostics
    // collector in scope the errors are recorded there too, at their place, and so are the
    // warnings (a name defined twice). Relative TEXTURE names are taken from the file's folder.
    std::optional<TPXmodel> read(const std::string& fileName, std::string& error);
    // The same for a text in memory ("line LINE: WHAT" in `error`); relative TEXTURE names are
    // taken from `folder` (the working folder when empty).
    std::optional<TPXmodel> readText(const std::string& text, const std::string& folder,
                                     std::string& error);

  private:
    int onAction(int number) override;

    void begin(const std::string& folder, const std::string& rootName);
    // Hands over the model when the parse succeeded and no action failed; clears the state.
    std::optional<TPXmodel> end(bool parsed, std::string& error);
    // After a successful walk: fails when it left an object unfinished or text after the
    // objects.
    void checkRest();

    // Records the first error, at `offset` of the input, and returns false, which aborts the
    // parse.
    bool failAt(long offset, const std::string& message);
    void warnAt(long offset, const std::string& message) const;
    long tokenStart(std::size_t k) const { return tokenSpan(k).first; }
    // After the parse: the line of `offset`, and the offset of the first character from there
    // on that is not blank (nor, with `comments`, in a comment); -1 when there is none.
    int lineAt(long offset);
    long nextText(long offset, bool comments);
    bool reopen(Cache& cache) const;
    std::string failure();

    // Numbers of the latest tokens: token k as a real; tokens 2, 1, 0 as x, y, z or red, green,
    // blue; token k as a whole number (false, reported, when it has a fraction or exceeds an
    // int).
    double real(std::size_t k) const;
    TPXp3 point() const;
    TPXrgb rgb() const;
    bool wholeNumber(std::size_t k, long long& value);

    bool startObject();
    bool setLink();
    bool startVertices();
    bool startVertex();
    bool setVertexNormal();
    bool addVertex();
    bool startFaces();
    bool startFace();
    bool addCorner();
    bool reverseFace();
    // Ends the face whose material token stands at k with `material`.
    bool finishFace(TPXref<TPXmaterial> material, std::size_t k);
    bool faceTexture();
    bool faceNamedMaterial();
    bool finishObject();
    void attach(std::unique_ptr<TPXnode> object);
    void appendChild(TPXnode& parent, std::unique_ptr<TPXnode> child);
    bool startMaterial();
    bool setMaterial(TPXref<TPXmaterial> material);
    bool makeTextureMaterial();
    bool finishMaterial();

    // Whether the face lists all the corners it announced (reported at token k when not).
    bool cornersComplete(std::size_t k);
    // The texture that the string token k names (loaded once per read); empty, reported, when
    // it cannot be read.
    TPXref<TPXtexture> texture(std::size_t k);

    std::string folder_;          // where relative texture names are taken from
    const char* text_ = nullptr;  // the text being read by readText()
    std::string error_;           // the first error, without its place
    long errorOffset_ = 0;
    long objectsEnd_ = 0;  // just after the closing brace of the latest object
    std::unique_ptr<TPXnode> root_;
    TPXmodelTotals totals_;
    // Every object read so far by its name (the first of a name), and the last child of each
    // node that has children, so that a new child goes to the end in constant time.
    std::unordered_map<std::string, TPXnode*> objects_;
    std::unordered_map<const TPXnode*, TPXnode*> lastChild_;
    std::map<std::string, TPXref<TPXtexture>> textures_;  // loaded once per read, by path

    // The object under construction: linked into the model only at its end, so that a failure
    // drops it with the rest.
    std::unique_ptr<TPXnode> object_;
    TPXref<TPXgeometry> geometry_;
    int linkCode_ = 0;               // 0, kModelChildToken or kModelSiblingToken
    TPXnode* linkTarget_ = nullptr;  // an object read before, when linkCode_ is not 0
    std::optional<TPXp3> position_, orientation_, scale_, pivot_;
    bool computeNormals_ = true;
    long long vertexCount_ = 0;  // announced; the listed vertices are in geometry_
    TPXvertex vertex_;
    bool vertexOpen_ = false;  // position read, vertex not yet added
    long long faceCount_ = 0;
    bool faceOpen_ = false;      // corner count read, material not yet
    long long cornerCount_ = 0;  // announced by the open face
    std::vector<int> corners_;   // listed by the open face so far

    // The material definition being read.
    bool materialOpen_ = false;
    std::string materialName_;
    TPXrgb ambient_, diffuse_, specular_, emission_;
    double shininess_ = 0.0;
    TPXref<TPXmaterial> material_;
    std::vector<TPXnamedMaterial> materials_;
};

// Reads a model file: its root node (see TPXmodel::root), or null with the reason in `error`.
std::unique_ptr<TPXnode> TPXreadModel(const std::string& fileName, std::string& error);

}  // namespace vellum
