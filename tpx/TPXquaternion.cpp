#include "tpx/TPXquaternion.h"

#include <algorithm>
#include <cmath>

#include "base/Console.h"

namespace vellum {

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kRadians = kPi / 180.0;

bool validComponent(int c) {
    if (c >= 0 && c <= 3)
        return true;
    reportAssertion("0 <= c <= 3", "Src/TPXquaternion", __LINE__);
    return false;
}
}  // namespace

TPXquaternion TPXquaternion::fromAxisAngle(const TPXp3& axis, double degrees) {
    const TPXp3 unit = axis.normalised();
    if (unit.length() == 0.0)
        return {};
    const double half = degrees * kRadians / 2.0;
    const TPXp3 v = unit * std::sin(half);
    return {v.x(), v.y(), v.z(), std::cos(half)};
}

TPXquaternion TPXquaternion::fromAngles(const TPXp3& degrees) {
    return fromAxisAngle({1, 0, 0}, degrees.x()) * fromAxisAngle({0, 1, 0}, degrees.y()) *
           fromAxisAngle({0, 0, 1}, degrees.z());
}

TPXquaternion TPXquaternion::fromRotation(const TPXrotation& r) {
    // Shepperd's choice: divide by the largest of the four candidates for accuracy.
    const double trace = r[0][0] + r[1][1] + r[2][2];
    if (trace > 0.0) {
        const double s = std::sqrt(trace + 1.0) * 2.0;
        return TPXquaternion((r[2][1] - r[1][2]) / s, (r[0][2] - r[2][0]) / s,
                             (r[1][0] - r[0][1]) / s, s / 4.0)
            .normalised();
    }
    if (r[0][0] > r[1][1] && r[0][0] > r[2][2]) {
        const double s = std::sqrt(1.0 + r[0][0] - r[1][1] - r[2][2]) * 2.0;
        return TPXquaternion(s / 4.0, (r[0][1] + r[1][0]) / s, (r[0][2] + r[2][0]) / s,
                             (r[2][1] - r[1][2]) / s)
            .normalised();
    }
    if (r[1][1] > r[2][2]) {
        const double s = std::sqrt(1.0 + r[1][1] - r[0][0] - r[2][2]) * 2.0;
        return TPXquaternion((r[0][1] + r[1][0]) / s, s / 4.0, (r[1][2] + r[2][1]) / s,
                             (r[0][2] - r[2][0]) / s)
            .normalised();
    }
    const double s = std::sqrt(1.0 + r[2][2] - r[0][0] - r[1][1]) * 2.0;
    return TPXquaternion((r[0][2] + r[2][0]) / s, (r[1][2] + r[2][1]) / s, s / 4.0,
                         (r[1][0] - r[0][1]) / s)
        .normalised();
}

double& TPXquaternion::operator[](int c) {
    if (validComponent(c))
        return m_q[c];
    m_spare = 0.0;
    return m_spare;
}

double TPXquaternion::operator[](int c) const {
    return validComponent(c) ? m_q[c] : 0.0;
}

TPXp3 TPXquaternion::toAngles() const {
    // From R = Rx(a) Ry(b) Rz(c): R[0][2] = sin b, R[1][2] = -sin a cos b, R[2][2] = cos a cos b,
    // R[0][1] = -cos b sin c, R[0][0] = cos b cos c.
    const TPXrotation r = toRotation();
    const double sinB = std::clamp(r[0][2], -1.0, 1.0);
    const double b = std::asin(sinB);
    if (std::abs(sinB) > 1.0 - 1e-12) {
        // Gimbal lock: only a + c (or a - c) is defined; give it all to a.
        return {std::atan2(r[2][1], r[1][1]) / kRadians, b / kRadians, 0.0};
    }
    return {std::atan2(-r[1][2], r[2][2]) / kRadians, b / kRadians,
            std::atan2(-r[0][1], r[0][0]) / kRadians};
}

TPXrotation TPXquaternion::toRotation() const {
    const TPXquaternion n = normalised();
    const double x = n.m_q[0], y = n.m_q[1], z = n.m_q[2], w = n.m_q[3];
    return {{{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
             {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
             {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}}};
}

TPXquaternion TPXquaternion::operator*(const TPXquaternion& b) const {
    const TPXp3 u(m_q[0], m_q[1], m_q[2]);
    const TPXp3 v(b.m_q[0], b.m_q[1], b.m_q[2]);
    const TPXp3 vec = v * m_q[3] + u * b.m_q[3] + u.cross(v);
    return {vec.x(), vec.y(), vec.z(), m_q[3] * b.m_q[3] - u.dot(v)};
}

TPXp3 TPXquaternion::rotate(const TPXp3& v) const {
    const TPXrotation r = toRotation();
    return {r[0][0] * v.x() + r[0][1] * v.y() + r[0][2] * v.z(),
            r[1][0] * v.x() + r[1][1] * v.y() + r[1][2] * v.z(),
            r[2][0] * v.x() + r[2][1] * v.y() + r[2][2] * v.z()};
}

TPXquaternion TPXquaternion::normalised() const {
    const double l =
        std::sqrt(m_q[0] * m_q[0] + m_q[1] * m_q[1] + m_q[2] * m_q[2] + m_q[3] * m_q[3]);
    if (l == 0.0)
        return {};
    return {m_q[0] / l, m_q[1] / l, m_q[2] / l, m_q[3] / l};
}

}  // namespace vellum
