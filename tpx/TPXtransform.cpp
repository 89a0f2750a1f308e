#include "tpx/TPXtransform.h"

#include <cmath>

namespace vellum {

TPXmatrix TPXtranslation(const TPXp3& offset) {
    TPXmatrix m = TPXmatrix::identity(4);
    for (int r = 0; r < 3; ++r)
        m(r, 3) = offset[r];
    return m;
}

TPXmatrix TPXrotationMatrix(const TPXquaternion& orientation) {
    const TPXrotation rotation = orientation.toRotation();
    TPXmatrix m = TPXmatrix::identity(4);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            m(r, c) = rotation[r][c];
    return m;
}

TPXmatrix TPXscaling(const TPXp3& factors) {
    TPXmatrix m = TPXmatrix::identity(4);
    for (int i = 0; i < 3; ++i)
        m(i, i) = factors[i];
    return m;
}

TPXp3 TPXtransformPoint(const TPXmatrix& m, const TPXp3& p) {
    TPXp3 result;
    for (int r = 0; r < 3; ++r)
        result[r] = m(r, 0) * p.x() + m(r, 1) * p.y() + m(r, 2) * p.z() + m(r, 3);
    return result;
}

std::optional<TPXmatrix> TPXinverseAffine(const TPXmatrix& m) {
    // The linear part by its adjugate, then the translation moved back through it.
    auto a = [&m](int r, int c) { return m(r % 3, c % 3); };
    double cofactor[3][3];
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            cofactor[r][c] = a(r + 1, c + 1) * a(r + 2, c + 2) - a(r + 1, c + 2) * a(r + 2, c + 1);
    const double det =
        m(0, 0) * cofactor[0][0] + m(0, 1) * cofactor[0][1] + m(0, 2) * cofactor[0][2];
    if (std::abs(det) < 1e-300)
        return std::nullopt;
    TPXmatrix inverse = TPXmatrix::identity(4);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            inverse(r, c) = cofactor[c][r] / det;
    for (int r = 0; r < 3; ++r)
        inverse(r, 3) =
            -(inverse(r, 0) * m(0, 3) + inverse(r, 1) * m(1, 3) + inverse(r, 2) * m(2, 3));
    return inverse;
}

// Composed in closed form: scenes of many nodes ask for their matrices often, and four
// products of 4 x 4 matrices would cost more than the rest of the work.
TPXmatrix TPXplacement::matrix() const {
    TPXmatrix m = TPXmatrix::identity(4);
    const TPXrotation r = orientation.toRotation();
    for (int row = 0; row < 3; ++row) {
        double moved = 0.0;
        for (int c = 0; c < 3; ++c) {
            const double rs = r[row][c] * scale[c];
            m(row, c) = rs;
            moved += rs * pivot[c];
        }
        m(row, 3) = position[row] + pivot[row] - moved;
    }
    return m;
}

TPXp3 TPXplacement::transform(const TPXp3& p) const {
    if (onlyMoves())
        return p + position;
    const TPXp3 local = p - pivot;
    const TPXp3 scaled(local.x() * scale.x(), local.y() * scale.y(), local.z() * scale.z());
    return position + pivot + orientation.rotate(scaled);
}

TPXplacement TPXplacement::fromMatrix(const TPXmatrix& m, const TPXp3& pivot) {
    TPXplacement placement;
    placement.pivot = pivot;
    TPXrotation rotation{};
    bool flat = false;
    for (int c = 0; c < 3; ++c) {
        const double length = TPXp3(m(0, c), m(1, c), m(2, c)).length();
        placement.scale[c] = length;
        flat = flat || length == 0.0;
        for (int r = 0; r < 3; ++r)
            rotation[r][c] = length > 0.0 ? m(r, c) / length : 0.0;
    }
    // A mirrored linear part: carry the reflection in the x scale so the rotation is proper.
    const double det =
        rotation[0][0] * (rotation[1][1] * rotation[2][2] - rotation[1][2] * rotation[2][1]) -
        rotation[0][1] * (rotation[1][0] * rotation[2][2] - rotation[1][2] * rotation[2][0]) +
        rotation[0][2] * (rotation[1][0] * rotation[2][1] - rotation[1][1] * rotation[2][0]);
    if (det < 0.0) {
        placement.scale[0] = -placement.scale[0];
        for (int r = 0; r < 3; ++r)
            rotation[r][0] = -rotation[r][0];
    }
    placement.orientation = flat ? TPXquaternion() : TPXquaternion::fromRotation(rotation);
    // m maps the pivot to position + pivot.
    placement.position = TPXtransformPoint(m, pivot) - pivot;
    return placement;
}

}  // namespace vellum
