// A matrix of four long numbers by vectors of two. By transforms that takes one forward for each
// number and one back for each result, where products one by one would take three each.
#pragma once

#include <span>

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// The entries, which have one length.
struct Matrix {
  ConstLimbs a, b, c, d;
};

// The entries of a vector, which have one length, and where what the matrix makes of them goes:
// runs of the sum of both lengths, which overlap nothing.
struct MatrixVector {
  ConstLimbs x, y;
  Limbs u, v;
};

// Bytes of workspace that multiply_matrix() takes at most, for entries and vectors of these
// lengths.
std::size_t multiply_matrix_workspace(std::size_t entries, std::size_t vectors, std::size_t count);

// u = a x + b y and v = c x + d y, or a x - b y and d y - c x where `minus` is set, for one vector
// or two of one length. A result that is below zero or does not fit is right modulo B^u.size().
void multiply_matrix(const Matrix& m, std::span<const MatrixVector> vectors, bool minus,
                     Workspace ws);

}  // namespace tivelo::limbs
