// TPXtexture: an image read from a file and shown on polygons, a shared resource. The image is
// uploaded once per GL context into a texture object, before the first display list that binds
// it is compiled (an upload inside a list would be recorded, not done).
#pragma once

#include <string>

#include "tpx/TPXdrawContext.h"
#include "tpx/TPXimage.h"
#include "tpx/TPXlists.h"
#include "tpx/TPXshared.h"

namespace vellum {

class TPXtexture : public TPXshared {
  public:
    // The texture of the image file `fileName` (".ppm" or ".pgm", by its lower-cased name);
    // empty when the file cannot be read, with the reason in `error`.
    static TPXref<TPXtexture> load(const std::string& fileName, std::string& error);
    explicit TPXtexture(TPXimage image, std::string fileName);

    const TPXimage& image() const { return m_image; }
    const std::string& fileName() const { return m_fileName; }

    // Uploads the image into the context of `context` unless it is there already. A context
    // must be current and no display list may be being compiled.
    void upload(TPXdrawContext& context) const;
    // Binds the texture in the context of `context` (uploading it there first if needed, which
    // a display list being compiled must not do: upload before it) and enables texturing;
    // unbind disables it again. A context must be current.
    void bind(TPXdrawContext& context) const;
    void unbind() const;

  private:
    ~TPXtexture() override;

    TPXimage m_image;
    std::string m_fileName;
    mutable TPXlists<1, true> m_lists;  // the texture object in each context
};

}  // namespace vellum
