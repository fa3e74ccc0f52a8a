// Targets whose transforms do what a faulty machine might: what the real ones have written is
// changed before anybody sees it.
#pragma once

#include <algorithm>
#include <utility>

#include "support/oracle.h"

namespace tivelo {

enum class Fault {
  kNone,
  kLimb,      // another limb
  kBit,       // any of the 32
  kCarry,     // one to the next limb too many, or one not taken over
  kCarryDue,  // the same number, but a carry was left in a limb
  kEnds,      // 0 for 99999999 or the reverse
  kBlock,     // anything over a block
  kExchange,  // two limbs
  kMove,      // of a block, by up to four limbs
  kBalance,   // a limb more by what another is less, an even distance away
  kSums,      // not the product: the sums by which it is checked
  kPrepared,  // a transform that is kept
  kCount
};

// Changes r; a fault that the run has no place for becomes a bit.
inline void damage(Fault fault, Limbs r, Operands& some) {
  const auto n = static_cast<unsigned>(r.size());
  const auto start = some.below(n), other = some.below(n);
  const std::size_t length = 1 + some.below(std::min(n - start, 40u));
  const Number before(r.begin(), r.end());
  Limb& x = r[start];
  if (fault == Fault::kLimb) x = some.below(kBase);
  if (fault == Fault::kCarry && start > 0 && r[start - 1] + 1 < kBase && x > 0) --x, ++r[start - 1];
  if (fault == Fault::kCarryDue && start > 0 && r[start - 1] > 0) x += kBase, --r[start - 1];
  if (fault == Fault::kEnds) {
    const auto end = std::find_if(r.begin() + start, r.end(),
                                  [](Limb limb) { return limb == 0 || limb == kBase - 1; });
    if (end != r.end()) *end = kBase - 1 - *end;
  }
  if (fault == Fault::kBlock) std::ranges::copy(some.any(length), r.begin() + start);
  if (fault == Fault::kExchange) std::swap(x, r[other]);
  if (fault == Fault::kMove) {
    const auto by = static_cast<std::ptrdiff_t>(1 + some.below(4));
    const auto block = r.subspan(start, length);
    std::rotate(block.begin(), block.begin() + by % static_cast<std::ptrdiff_t>(length),
                block.end());
  }
  if (fault == Fault::kBalance && (start ^ other) % 2 == 0 && start != other) {
    const Limb most = std::min(x, kBase - 1 - r[other]);
    const Limb by = most == 0 ? 0 : 1 + some.below(most);
    x -= by, r[other] += by;
  }
  if (std::ranges::equal(before, r)) x ^= 1u << some.below(32);
}

// What the damaged targets do: one fault per call of theirs, in the first road, the second or both.
struct Faults {
  const kernels::Target* real[2] = {};
  Fault of_road[2] = {};
  int calls[2] = {};
  Operands some{61};
};
inline Faults faults;

template <int kRoad>
void damage_product(std::uint32_t* r, std::size_t n) {
  ++faults.calls[kRoad];
  const Fault fault = faults.of_road[kRoad];
  if (fault != Fault::kNone && fault < Fault::kSums) damage(fault, {r, n}, faults.some);
}

// `real`, with the faults of that road.
template <int kRoad>
kernels::Target damaged(const kernels::Target& real) {
  using kernels::Shape;
  faults.real[kRoad] = &real;
  kernels::Target t = real;
  t.multiply_transform = [](std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                            const std::uint32_t* b, std::size_t nb, Shape s, double* work) {
    const std::uint64_t above = faults.real[kRoad]->multiply_transform(r, a, na, b, nb, s, work);
    damage_product<kRoad>(r, transform_limbs(na, nb, s));
    return above;
  };
  t.square_transform = [](std::uint32_t* r, const std::uint32_t* a, std::size_t na, Shape s,
                          double* work) {
    const std::uint64_t above = faults.real[kRoad]->square_transform(r, a, na, s, work);
    damage_product<kRoad>(r, transform_limbs(na, na, s));
    return above;
  };
  t.multiply_prepared = [](std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                           const double* b, std::size_t nb, Shape s, double* work) {
    const std::uint64_t above = faults.real[kRoad]->multiply_prepared(r, a, na, b, nb, s, work);
    damage_product<kRoad>(r, transform_limbs(na, nb, s));
    return above;
  };
  t.multiply_matrix = [](const kernels::MatrixProduct& p, double* work) {
    faults.real[kRoad]->multiply_matrix(p, work);
    damage_product<kRoad>(
        p.result[faults.some.below(static_cast<std::uint32_t>(p.columns))][faults.some.below(2)],
        p.entry_size + p.vector_size);
  };
  t.prepare = [](double* x, const std::uint32_t* b, std::size_t nb, Shape s) {
    faults.real[kRoad]->prepare(x, b, nb, s);
    const auto doubles = static_cast<std::uint32_t>(3 * transform_length(s));
    if (faults.of_road[kRoad] == Fault::kPrepared) x[faults.some.below(doubles)] += 1;
  };
  t.sum_limbs = [](kernels::Sums* sums, const std::uint32_t* a, std::size_t n) {
    faults.real[kRoad]->sum_limbs(sums, a, n);
    if (faults.of_road[kRoad] == Fault::kSums) sums->plain[n % 2] ^= 1u << faults.some.below(26);
  };
  return t;
}

}  // namespace tivelo
