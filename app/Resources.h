// The program's built-in pictures, found by their resource names: the frame icon "mondrian" and
// the start-up logo "IDB_LOGO". They are drawn in code, since a Linux program has no resource
// script to carry them.
#pragma once

#include <wx/bitmap.h>
#include <wx/icon.h>

#include <string_view>

namespace vellum {

class Resources {
  public:
    static constexpr int kIconSize = 32;
    static constexpr int kLogoWidth = 384;
    static constexpr int kLogoHeight = 256;

    // The icon of that name; an invalid icon (IsOk() false) for an unknown name.
    static wxIcon icon(std::string_view name);
    // The bitmap of that name; an invalid bitmap (IsOk() false) for an unknown name.
    static wxBitmap bitmap(std::string_view name);

  private:
    static wxBitmap drawMondrian();
    static wxBitmap drawLogo();
};

}  // namespace vellum
