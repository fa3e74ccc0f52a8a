// Chooses the method by length: columns for short operands (in scalar registers while both are very
// short), the exact transform for long ones, and slices of the longer operand against one transform
// of the shorter where they are far apart. What a transform has made is checked by its residue, and
// made again in another way where that is wrong.
#include "limbs/multiply.h"

#include <algorithm>
#include <cassert>
#include <iterator>

#include "kernels/target.h"
#include "kernels/transform_tables.h"
#include "limbs/checked.h"
#include "limbs/linear.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

using kernels::Target;

// r = a x b column by column in scalar registers, for a shorter operand of N limbs.
template <std::size_t N>
void multiply_narrow(Limbs r, ConstLimbs a, ConstLimbs b) {
  std::uint64_t window[N] = {};  // window[i] is the limb of a that meets b[i] in the column
  std::uint64_t carry = 0;
  const auto column = [&](std::size_t c, std::uint64_t entering) {
    for (std::size_t i = N - 1; i > 0; --i) window[i] = window[i - 1];
    window[0] = entering;
    std::uint64_t sum = carry;
    for (std::size_t i = 0; i < N; ++i) sum += window[i] * b[N - 1 - i];
    carry = sum / kBase;
    r[c] = static_cast<Limb>(sum - carry * kBase);
  };
  for (std::size_t i = a.size(); i-- > 0;) column(i + N, a[i]);
  for (std::size_t c = N; c-- > 1;) column(c, 0);
  r[0] = static_cast<Limb>(carry);
}

// One for each length of the shorter operand, from 1.
constexpr void (*kNarrow[])(Limbs r, ConstLimbs a, ConstLimbs b) = {
    multiply_narrow<1>, multiply_narrow<2>, multiply_narrow<3>, multiply_narrow<4>,
    multiply_narrow<5>, multiply_narrow<6>, multiply_narrow<7>, multiply_narrow<8>};

constexpr std::size_t kMaxLimbs = std::size_t{2}
                                  << kernels::kMaxTransform;  // of a transform's product
static_assert(kMaxLimbs == std::size_t{1} << 25, "operands of up to 268 million digits");

// From this ratio of lengths on the longer operand is cut into slices of at most kSlice times the
// shorter: with that the slices' transforms are 8 times the shorter operand, a power of two more.
constexpr std::size_t kSliceRatio = 12;
constexpr std::size_t kSlice = 7;

// a in slices, least significant first, each times b, added to what is there already.
void multiply_slices(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t nb = b.size();
  assert(nb < kMaxLimbs);
  const std::size_t most = std::min(kSlice * nb, kMaxLimbs - nb);
  const std::size_t slices = (a.size() + most - 1) / most;
  const std::size_t na = (a.size() + slices - 1) / slices;
  const Limbs part = ws.take<Limb>(na + nb);
  Kept kept(b, kernels::shape_for(kernels::product_coefficients(na, nb)), ws);
  std::fill_n(r.end() - static_cast<std::ptrdiff_t>(nb), nb, 0);
  for (std::size_t end = a.size(); end > 0;) {
    const std::size_t n = std::min(na, end);
    kept.multiply(part.first(n + nb), a.subspan(end - n, n), ws);
    // The upper nb limbs of what came before are r[end, end + nb).
    std::copy_n(part.data(), n, r.data() + end - n);
    const Limb carry = add(r.subspan(end, nb), r.subspan(end, nb), part.subspan(n, nb));
    if (carry != 0) {
      const Limb one = 1;
      add(r.subspan(end - n, n), r.subspan(end - n, n), ConstLimbs(&one, 1));
    }
    end -= n;
  }
}

}  // namespace

// Sliced: six arrays of transforms and a product, 34 bytes for each limb of a slice and the shorter
// operand, or as many arrays as the transform has that makes a slice again. Slices by ratio are at
// most 7/12 of the longer operand, so that this is less than 20 for each limb of the product;
// slices because a transform ends there may be all of it.
std::size_t multiply_workspace(std::size_t na, std::size_t nb) {
  if (na + nb <= kMaxLimbs) return transform_workspace(na, nb);
  return 34 * (na + nb) + 8192;
}

void multiply(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  assert(r.size() == a.size() + b.size() && !a.empty() && !b.empty());
  if (a.size() < b.size()) std::swap(a, b);
  if (a.size() <= kNarrowProduct && b.size() <= std::size(kNarrow))
    return kNarrow[b.size() - 1](r, a, b);
  if (a.data() == b.data() && a.size() == b.size()) return square(r, a, ws);
  const Target& t = kernels::target();
  const bool even = a.size() < 2 * b.size();
  if (b.size() < (even ? t.thresholds.even : t.thresholds.uneven)) {
    return t.multiply_columns(r.data(), b.data(), b.size(), a.data(), a.size());
  }
  if (a.size() / b.size() >= kSliceRatio || a.size() + b.size() > kMaxLimbs) {
    return multiply_slices(r, a, b, ws);
  }
  multiply_long(r, a, b, ws);
}

void square(Limbs r, ConstLimbs a, Workspace ws) {
  assert(r.size() == 2 * a.size() && !a.empty());
  if (a.size() <= std::size(kNarrow)) return kNarrow[a.size() - 1](r, a, a);
  const Target& t = kernels::target();
  if (a.size() < t.thresholds.square) {
    return t.square_columns(r.data(), a.data(), a.size());
  }
  if (2 * a.size() > kMaxLimbs) return multiply_slices(r, a, a, ws);
  multiply_long(r, a, a, ws);
}

}  // namespace tivelo::limbs
