// TPXp3: a point or vector of the 3D scene library, three doubles x, y and z. An index outside
// 0..2 is reported as a failed assertion naming "Src/TPXp3" and yields a harmless spare value.
#pragma once

namespace vellum {

class TPXp3 {
  public:
    static constexpr int X = 0;
    static constexpr int Y = 1;
    static constexpr int Z = 2;

    constexpr TPXp3() = default;
    constexpr TPXp3(double x, double y, double z) : m_c{x, y, z} {}

    double x() const { return m_c[X]; }
    double y() const { return m_c[Y]; }
    double z() const { return m_c[Z]; }
    double& operator[](int c);
    double operator[](int c) const;

    TPXp3 operator+(const TPXp3& b) const { return {x() + b.x(), y() + b.y(), z() + b.z()}; }
    TPXp3 operator-(const TPXp3& b) const { return {x() - b.x(), y() - b.y(), z() - b.z()}; }
    TPXp3 operator-() const { return {-x(), -y(), -z()}; }
    TPXp3 operator*(double s) const { return {x() * s, y() * s, z() * s}; }
    TPXp3& operator+=(const TPXp3& b) { return *this = *this + b; }
    TPXp3& operator-=(const TPXp3& b) { return *this = *this - b; }

    double dot(const TPXp3& b) const { return x() * b.x() + y() * b.y() + z() * b.z(); }
    TPXp3 cross(const TPXp3& b) const;
    double length() const;
    // The unit vector in the same direction; the zero vector stays zero.
    TPXp3 normalised() const;

  private:
    double m_c[3] = {0.0, 0.0, 0.0};
    mutable double m_spare = 0.0;  // what a bad index yields; reset before each use
};

inline TPXp3 operator*(double s, const TPXp3& p) {
    return p * s;
}

}  // namespace vellum
