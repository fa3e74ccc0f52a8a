// Where the transforms are taken, sums are taken before the way back, so that only they return. A
// result below zero comes out as its complement, which its first limb tells, as results are far
// from B^u.size() / 2; the check takes that for what it is.
#include "limbs/matrix.h"

#include <algorithm>
#include <cassert>

#include "kernels/target.h"
#include "kernels/transform_tables.h"
#include "limbs/casting.h"
#include "limbs/checked.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

using kernels::Target;

// r = s x + t y or s x - t y, modulo B^r.size(), each product by `product`.
void combine(Limbs r, ConstLimbs s, ConstLimbs x, ConstLimbs t, ConstLimbs y, bool minus,
             void (*product)(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws), Workspace ws) {
  const Limbs second = ws.take<Limb>(r.size());
  product(second, t, y, ws);
  product(r, s, x, ws);
  (minus ? subtract : add)(r, r, second);
}

// What r must be, a sum or a difference of two products, given their residues.
Residue expected_of(ConstLimbs r, const Residue& p, const Residue& q, bool minus) {
  if (!minus) return sum_of(p, q);
  const Residue difference = sum_of(p, negative_of(q));
  return r[0] < kBase / 2 ? difference : sum_of(difference, residue_of_power(r.size()));
}

kernels::Shape shape_of(std::size_t entries, std::size_t vectors) {
  return kernels::shape_for(kernels::product_coefficients(entries, vectors));
}

// Doubles that the transforms take.
std::size_t work_of(std::size_t entries, std::size_t vectors, std::size_t count) {
  return (4 + 6 * count) * kernels::transform_length(shape_of(entries, vectors));
}

// Limbs of the shorter of both.
constexpr std::size_t kMostEntries = std::size_t{1} << 22;

// The bounds of a transform, and of the sums of two products in it (docs/transform.md).
bool transforms(std::size_t entries, std::size_t vectors) {
  return std::min(entries, vectors) >= kMatrixTransform &&
         std::min(entries, vectors) <= kMostEntries &&
         entries + vectors <= std::size_t{2} << kernels::kMaxTransform;
}

void transform(const Matrix& m, std::span<const MatrixVector> vectors, bool minus, Workspace ws) {
  const Target& t = kernels::target();
  const MatrixVector& first = vectors[0];
  const MatrixVector& last = vectors.back();
  const std::size_t entries = m.a.size();
  const std::size_t length = first.x.size();
  const Residue a = residue_of(m.a, t), b = residue_of(m.b, t), c = residue_of(m.c, t),
                d = residue_of(m.d, t);
  const kernels::MatrixProduct p = {
      .entry = {m.a.data(), m.b.data(), m.c.data(), m.d.data()},
      .entry_size = entries,
      .columns = static_cast<int>(vectors.size()),
      .vector = {{first.x.data(), first.y.data()}, {last.x.data(), last.y.data()}},
      .vector_size = length,
      .result = {{first.u.data(), first.v.data()}, {last.u.data(), last.v.data()}},
      .minus = minus,
      .shape = shape_of(entries, length)};
  Residue of[2][2];
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    of[i][0] = residue_of(vectors[i].x, t);
    of[i][1] = residue_of(vectors[i].y, t);
  }
  Workspace working = ws;
  t.multiply_matrix(p, working.take<double>(work_of(entries, length, vectors.size())).data());
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    const auto& [x, y, u, v] = vectors[i];
    const Residue& rx = of[i][0];
    const Residue& ry = of[i][1];
    if (!casts_out(u, expected_of(u, product_of(a, rx), product_of(b, ry), minus), t))
      combine(u, m.a, x, m.b, y, minus, multiply_again, ws);
    if (!casts_out(v, expected_of(v, product_of(d, ry), product_of(c, rx), minus), t))
      combine(v, m.d, y, m.c, x, minus, multiply_again, ws);
  }
}

}  // namespace

std::size_t multiply_matrix_workspace(std::size_t entries, std::size_t vectors, std::size_t count) {
  const std::size_t size = entries + vectors;
  const std::size_t products = Workspace::bytes<Limb>(size) + multiply_workspace(entries, vectors);
  if (!transforms(entries, vectors)) return products;
  return std::max(products, Workspace::bytes<double>(work_of(entries, vectors, count)));
}

void multiply_matrix(const Matrix& m, std::span<const MatrixVector> vectors, bool minus,
                     Workspace ws) {
  if (transforms(m.a.size(), vectors[0].x.size())) return transform(m, vectors, minus, ws);
  for (const auto& [x, y, u, v] : vectors) {
    combine(u, m.a, x, m.b, y, minus, multiply, ws);
    combine(v, m.d, y, m.c, x, minus, multiply, ws);
  }
}

}  // namespace tivelo::limbs
