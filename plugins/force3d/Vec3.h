// A point or direction in space with the arithmetic the force layout needs; internal to force3d.
#pragma once

#include <cmath>

namespace vellum::force3d {

struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Vec3& operator+=(const Vec3& v) {
        x += v.x;
        y += v.y;
        z += v.z;
        return *this;
    }
    Vec3& operator-=(const Vec3& v) {
        x -= v.x;
        y -= v.y;
        z -= v.z;
        return *this;
    }
    Vec3& operator*=(double s) {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
    double lengthSquared() const { return x * x + y * y + z * z; }
    double length() const { return std::sqrt(lengthSquared()); }
};

inline Vec3 operator+(Vec3 a, const Vec3& b) {
    return a += b;
}
inline Vec3 operator-(Vec3 a, const Vec3& b) {
    return a -= b;
}
inline Vec3 operator*(Vec3 a, double s) {
    return a *= s;
}

}  // namespace vellum::force3d
