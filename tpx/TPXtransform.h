// The 4 x 4 transforms of scene nodes: builders for translation, rotation and scaling, the
// inverse of an affine transform, applying one to a point, and splitting one back into a
// node's position, orientation and scale.
#pragma once

#include <optional>

#include "tpx/TPXmatrix.h"
#include "tpx/TPXp3.h"
#include "tpx/TPXquaternion.h"

namespace vellum {

TPXmatrix TPXtranslation(const TPXp3& offset);
TPXmatrix TPXrotationMatrix(const TPXquaternion& orientation);
TPXmatrix TPXscaling(const TPXp3& factors);

// The point `p` moved by the 4 x 4 affine transform `m`.
TPXp3 TPXtransformPoint(const TPXmatrix& m, const TPXp3& p);

// The inverse of a 4 x 4 affine transform (last row 0 0 0 1); none when it is singular, for
// example after a scale of 0.
std::optional<TPXmatrix> TPXinverseAffine(const TPXmatrix& m);

// A node's placement: the transform T(position + pivot) * R(orientation) * S(scale) * T(-pivot),
// which turns and scales about the pivot.
struct TPXplacement {
    TPXp3 position;
    TPXquaternion orientation;
    TPXp3 scale{1, 1, 1};
    TPXp3 pivot;

    TPXmatrix matrix() const;
    // The point `p` taken through matrix(), without composing it.
    TPXp3 transform(const TPXp3& p) const;
    // Whether the placement only moves (no turn, no scale): its matrix is T(position).
    bool onlyMoves() const {
        return orientation.isIdentity() && scale.x() == 1.0 && scale.y() == 1.0 && scale.z() == 1.0;
    }
    // The placement with this pivot whose matrix is `m`. Exact for transforms without shear
    // (any mix of rotations, translations and uniform scales, or axis scales not combined with
    // turned parents); a transform that flattens an axis gives the identity orientation.
    static TPXplacement fromMatrix(const TPXmatrix& m, const TPXp3& pivot);
};

}  // namespace vellum
