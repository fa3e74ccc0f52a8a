// The vector kernels of one processor family and the choice among them. Every target
// computes the same results; the portable one is built everywhere and the tests hold the others
// to it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "limbs/thresholds.h"

namespace tivelo::limbs {

// Limb products are below 10^16 and 1844 x 10^16 < 2^64: the most rows whose columns fit 64 bits.
inline constexpr std::size_t kMaxColumn = 1844;

// kBase, for sources that must do without base/limb.h and what it includes.
inline constexpr std::uint32_t kLimbBase = 100000000;

// Columns that one step of subtract_row() covers, and limbs that dot() covers: 32 products of a
// limb and a 32-bit number are below 32 x 10^8 x 2^32 < 2^64.
inline constexpr std::size_t kRowBlock = 8;
inline constexpr std::size_t kDotLimbs = 32;

// A transform of u 2^k coefficients of two limbs each; u is 1 up to 2^8 and 5 to 8 beyond.
struct Shape {
  int u;
  int k;
};

std::size_t length(Shape s);

// The shortest transform of at least n coefficients: at most 5/4 of n from 64 on.
Shape shape_for(std::size_t n);

// The kernels take bare arrays (most significant limb first), because nothing inline from a shared
// header may be compiled for a processor that is not everywhere. `work` is aligned to 64 bytes.
struct Target {
  const char* name;
  Thresholds thresholds;
  // r[0..na+nb) = a x b for na <= nb, na <= kMaxColumn. r overlaps neither.
  void (*schoolbook)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                     const std::uint32_t* b, std::size_t nb);
  // r[0..2na) = a x a for na <= kMaxColumn.
  void (*schoolbook_square)(std::uint32_t* r, const std::uint32_t* a, std::size_t na);
  // r[0..na+nb) = a x b where the product has at most s.length() coefficients. Work: 4 x length.
  void (*product)(std::uint32_t* r, const std::uint32_t* a, std::size_t na, const std::uint32_t* b,
                  std::size_t nb, Shape s, double* work);
  // r[0..2na) = a x a. Work: 3 x length.
  void (*square)(std::uint32_t* r, const std::uint32_t* a, std::size_t na, Shape s, double* work);
  // The transform of b for prepared_product(): 3 x length.
  void (*prepare)(double* prepared, const std::uint32_t* b, std::size_t nb, Shape s);
  // As product(), with b given by its transform of the same shape. Work: 3 x length.
  void (*prepared_product)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                           const double* prepared, std::size_t nb, Shape s, double* work);
  // u[i] -= q x v[i] modulo 2^64 for i < kRowBlock x blocks and |q| < 2^31; u is aligned to 64
  // bytes.
  void (*subtract_row)(std::uint64_t* u, const std::uint32_t* v, std::size_t blocks,
                       std::int32_t q);
  // The sum of a[i] x b[i] for i < kDotLimbs, limbs times 32-bit numbers.
  std::uint64_t (*dot)(const std::uint32_t* a, const std::uint32_t* b);
  // r = a + b and r = a - b over n limbs each, returning the carry or borrow out. r may be a or b.
  std::uint32_t (*add)(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                       std::size_t n);
  std::uint32_t (*subtract)(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                            std::size_t n);
};

// The target in use: the first of avx512, avx2, portable that this processor can run, unless
// force_target() has chosen another.
const Target& target();

// The names of the targets that this processor can run, in order of preference; null-terminated.
const char* const* target_names();

// Makes `name` the target in use; false (and no change) where this processor cannot run it. For
// tests and benchmarks, while nothing multiplies.
bool force_target(const char* name);

}  // namespace tivelo::limbs
