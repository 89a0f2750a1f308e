#include "app/Startup.h"

#include "base/Console.h"

namespace vellum {

MainFrame* startUp() {
    auto* frame = new MainFrame(kVersionLine, wxPoint(5, 5), wxSize(400, 300));
    console() << kVersionLine << "\n";
    console() << kCopyrightLine << "\n";
    console() << "READY.\n";
    return frame;
}

}  // namespace vellum
