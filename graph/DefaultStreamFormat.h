// Writes reals in the stream's default format (six significant digits, decimal) whatever the
// caller's stream was set to, and restores the caller's settings afterwards: a file must not
// depend on what was done to the stream before.
#pragma once

#include <ios>
#include <ostream>

namespace vellum {

class DefaultStreamFormat {
  public:
    explicit DefaultStreamFormat(std::ostream& out)
        : out_(out), flags_(out.flags()), precision_(out.precision()) {
        out.flags(std::ios_base::dec | std::ios_base::skipws);
        out.precision(6);
    }
    ~DefaultStreamFormat() {
        out_.flags(flags_);
        out_.precision(precision_);
    }
    DefaultStreamFormat(const DefaultStreamFormat&) = delete;
    DefaultStreamFormat& operator=(const DefaultStreamFormat&) = delete;

  private:
    std::ostream& out_;
    std::ios_base::fmtflags flags_;
    std::streamsize precision_;
};

}  // namespace vellum
