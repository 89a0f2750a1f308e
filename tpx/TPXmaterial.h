// TPXmaterial: how a polygon looks. A plain colour, a full material (ambient, diffuse, specular
// and emission colours with a shininess) or a texture, each with an opacity; several polygons
// share one material through TPXref. Applying it sets the OpenGL material state; only an opacity
// below 1.0 switches blending on.
#pragma once

#include <string>

#include "tpx/TPXshared.h"

namespace vellum {

class TPXtexture;
struct TPXdrawContext;

// A colour of the scene: red, green and blue, each 0..1.
struct TPXrgb {
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;

    bool operator==(const TPXrgb& o) const { return r == o.r && g == o.g && b == o.b; }
    bool operator!=(const TPXrgb& o) const { return !(*this == o); }
};

class TPXmaterial : public TPXshared {
  public:
    enum class Kind { Plain, Full, Textured };

    // A plain colour: it serves as ambient and diffuse colour, with no specular or emission.
    static TPXref<TPXmaterial> plain(const TPXrgb& colour, double opacity = 1.0);
    static TPXref<TPXmaterial> full(const TPXrgb& ambient, const TPXrgb& diffuse,
                                    const TPXrgb& specular, const TPXrgb& emission,
                                    double shininess, double opacity = 1.0);
    // A texture on a white base; `texture` must not be empty.
    static TPXref<TPXmaterial> textured(TPXref<TPXtexture> texture);

    Kind kind() const { return m_kind; }
    const std::string& name() const { return m_name; }
    void setName(std::string name) { m_name = std::move(name); }
    const TPXrgb& ambient() const { return m_ambient; }
    const TPXrgb& diffuse() const { return m_diffuse; }
    const TPXrgb& specular() const { return m_specular; }
    const TPXrgb& emission() const { return m_emission; }
    double shininess() const { return m_shininess; }
    double opacity() const { return m_opacity; }
    TPXtexture* texture() const { return m_texture.get(); }

    // Only an opacity below 1.0 blends: exactly 1.0 is opaque.
    bool blends() const { return m_opacity < 1.0; }

    // Sets this material as OpenGL's current one in the context of `context` (which must be
    // current); apply and unapply come in pairs around the polygons that use it.
    void apply(TPXdrawContext& context) const;
    void unapply(TPXdrawContext& context) const;

  private:
    TPXmaterial() = default;
    ~TPXmaterial() override;

    Kind m_kind = Kind::Plain;
    std::string m_name;
    TPXrgb m_ambient;
    TPXrgb m_diffuse;
    TPXrgb m_specular;
    TPXrgb m_emission;
    double m_shininess = 0.0;
    double m_opacity = 1.0;
    TPXref<TPXtexture> m_texture;  // set exactly when the kind is Textured
};

}  // namespace vellum
