#include "tpx/TPXp3.h"

#include <cmath>

#include "base/Console.h"

namespace vellum {

namespace {
bool validComponent(int c) {
    if (c >= TPXp3::X && c <= TPXp3::Z)
        return true;
    reportAssertion("X <= c <= Z", "Src/TPXp3", __LINE__);
    return false;
}
}  // namespace

double& TPXp3::operator[](int c) {
    if (validComponent(c))
        return m_c[c];
    m_spare = 0.0;
    return m_spare;
}

double TPXp3::operator[](int c) const {
    return validComponent(c) ? m_c[c] : 0.0;
}

TPXp3 TPXp3::cross(const TPXp3& b) const {
    return {y() * b.z() - z() * b.y(), z() * b.x() - x() * b.z(), x() * b.y() - y() * b.x()};
}

double TPXp3::length() const {
    return std::sqrt(dot(*this));
}

TPXp3 TPXp3::normalised() const {
    const double l = length();
    return l > 0.0 ? *this * (1.0 / l) : *this;
}

}  // namespace vellum
