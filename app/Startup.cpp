#include "app/Startup.h"

#include "base/Console.h"

namespace vellum {

namespace {

bool isGraphFile(const std::string& name) {
    return name.size() > 3 && name.compare(name.size() - 3, 3, ".dg") == 0;
}

}  // namespace

MainFrame* startUp(const std::vector<std::string>& files) {
    auto* frame = new MainFrame(kVersionLine, wxPoint(5, 5), wxSize(400, 300));
    console() << kVersionLine << "\n";
    console() << kCopyrightLine << "\n";
    console() << "READY.\n";
    for (const std::string& file : files) {
        if (isGraphFile(file))
            frame->openGraphEditor(file);
        else
            console() << "Not opened: '" << file << "' is no graph file (.dg).\n";
    }
    return frame;
}

}  // namespace vellum
