#include "grammar/ParseReport.h"

#include "base/Console.h"

namespace vellum {

std::string escapeExcerpt(std::string_view excerpt) {
    std::string out;
    out.reserve(excerpt.size());
    for (char c : excerpt) {
        switch (c) {
            case '\n':
                out += "\\n";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\r':
                out += "\\r";
                break;
            default:
                out.push_back(c);
        }
    }
    return out;
}

void reportSyntaxError(std::string_view kind, std::string_view name, long position, int line,
                       std::string_view excerpt) {
    console() << kind << " '" << name << "' contains errors near position " << position
              << " in line " << line << "\n"
              << "Dump '" << escapeExcerpt(excerpt) << "' !!!\n";
}

}  // namespace vellum
