// TPXquaternion: an orientation of the 3D scene library. Components 0..2 are the vector part
// (x, y, z) and component 3 the scalar part w; an index outside 0..3 is reported as a failed
// assertion naming "Src/TPXquaternion". Orientations convert to and from three angles in
// degrees about x, then y, then z: the order in which the camera calls its rotations, so the
// rotation matrix is Rx * Ry * Rz.
#pragma once

#include <array>

#include "tpx/TPXp3.h"

namespace vellum {

// A 3x3 rotation, row by row.
using TPXrotation = std::array<std::array<double, 3>, 3>;

class TPXquaternion {
  public:
    // The identity orientation.
    constexpr TPXquaternion() = default;
    constexpr TPXquaternion(double x, double y, double z, double w) : m_q{x, y, z, w} {}

    // The rotation by `degrees` about `axis` (which need not be of unit length; a zero axis
    // gives the identity).
    static TPXquaternion fromAxisAngle(const TPXp3& axis, double degrees);
    static TPXquaternion fromAngles(const TPXp3& degrees);
    // The orientation of a proper rotation matrix (orthonormal, determinant 1).
    static TPXquaternion fromRotation(const TPXrotation& r);

    double& operator[](int c);
    double operator[](int c) const;
    bool isIdentity() const {
        return m_q[0] == 0.0 && m_q[1] == 0.0 && m_q[2] == 0.0 && m_q[3] == 1.0;
    }

    // Angles in degrees about x, then y, then z; x and z in (-180, 180], y in [-90, 90]. At
    // y = +-90 the z angle is 0 and x carries the whole turn.
    TPXp3 toAngles() const;
    TPXrotation toRotation() const;

    // This orientation applied after `b`: (a * b).rotate(v) == a.rotate(b.rotate(v)).
    TPXquaternion operator*(const TPXquaternion& b) const;
    TPXp3 rotate(const TPXp3& v) const;
    // The same orientation with unit length; a zero quaternion becomes the identity.
    TPXquaternion normalised() const;

  private:
    double m_q[4] = {0.0, 0.0, 0.0, 1.0};
    mutable double m_spare = 0.0;  // what a bad index yields; reset before each use
};

}  // namespace vellum
