// What is compiled once for each processor family, as a table of functions, and the choice among
// the tables. Every target computes the same results; the portable one is built everywhere and the
// tests hold the others to it.
//
// Nothing inline from a shared header may be compiled for a processor that is not everywhere: the
// linker keeps one copy of an inline function for the whole program, and if that copy came from
// the AVX-512 file, a processor without it would stop there. So the kernels take bare arrays (most
// significant limb first) instead of spans, and what a target includes has types, constants and
// declarations only; the bodies are *.inc files, which each target includes inside its own unnamed
// namespace. A test keeps the list of headers that a target may include.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kernels/target_thresholds.h"

namespace tivelo::kernels {

// Limb products are below 10^16 and 1844 x 10^16 < 2^64: the most rows whose columns fit 64 bits.
inline constexpr std::size_t kMaxColumn = 1844;

// Columns that one step of subtract_row() covers, and limbs that dot() covers: 32 products of a
// limb and a 32-bit number are below 32 x 10^8 x 2^32 < 2^64.
inline constexpr std::size_t kRowBlock = 8;
inline constexpr std::size_t kDotLimbs = 32;

// Odd moduli that remainders() covers, none above kLargestModulus, with what it needs of them.
inline constexpr std::size_t kModuli = 64;
inline constexpr std::uint64_t kLargestModulus = 2'100'000'000;
struct Moduli {
  alignas(64) std::uint64_t k[kModuli];
  alignas(64) std::uint64_t inverse[kModuli];  // -1 / k modulo 2^32
  alignas(64) std::uint64_t step[kModuli];     // 2^32 kBase^2 mod k
};

// Limbs that sum_limbs() takes at most: half as many pairs, and the sum of (pair x limb) stays
// below 10^8 x 2^37 < 2^64.
inline constexpr std::size_t kMostSummed = std::size_t{1} << 20;

// The shortest transform has 2^6 coefficients: one block of eight by eight on the widest target.
inline constexpr int kShortestTransform = 6;

// A transform of u 2^k coefficients of two limbs each; u is 1 up to 2^8 and 5 to 8 beyond.
struct Shape {
  int u;
  int k;
};

std::size_t transform_length(Shape s);

// Coefficients of a product of na by nb limbs.
std::size_t product_coefficients(std::size_t na, std::size_t nb);

// The shortest transform of at least n coefficients: at most 5/4 of n from 256 on.
Shape shape_for(std::size_t n);

// The shortest that is cyclic, which all are but those of u = 7: at most 4/3 of n.
Shape cyclic_shape_for(std::size_t n);

// The shape whose transform is the cheaper way to a product of na by nb limbs, though it wraps the
// product around: the longest cyclic one that is shorter than shape_for() the product, if what
// wraps around is at most a sixteenth of the shorter factor; else shape_for() the product.
Shape product_shape(std::size_t na, std::size_t nb);

// Limbs of a product of na by nb limbs as a transform of that shape leaves it: 2 n + 2 where it
// wraps around, n being the length.
std::size_t transform_limbs(std::size_t na, std::size_t nb, Shape s);

// Sums over a run of limbs, apart for [0] even and [1] odd places from the end, the last being 0.
struct Sums {
  std::uint64_t plain[2];
  std::uint64_t weighted[2];  // each limb times the pair it is in, the last being pair 0
  bool excess;                // some limb is kBase or more; then the sums may be anything
};

// A matrix a, b, c, d by one or two vectors x, y: a x + b y and c x + d y, or a x - b y and d y - c
// x where `minus` is set, modulo B^(entry_size + vector_size), B the base: a result below zero is
// its complement. Entries or vectors have at most 2^22 limbs, and no product more coefficients than
// the shape.
struct MatrixProduct {
  const std::uint32_t* entry[4];  // a, b, c, d
  std::size_t entry_size;
  int columns;                        // vectors
  const std::uint32_t* vector[2][2];  // x, y of each
  std::size_t vector_size;
  std::uint32_t* result[2][2];  // entry_size + vector_size limbs each, which overlap no operand
  bool minus;
  Shape shape;
};

// One target. `work` and `prepared` are aligned to 64 bytes and hold a number of lengths, that is
// transform_length(s) doubles each.
struct Target {
  const char* name;
  Thresholds thresholds;
  // r[0..na+nb) = a x b for na <= nb, na <= kMaxColumn. r overlaps neither.
  void (*multiply_columns)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                           const std::uint32_t* b, std::size_t nb);
  // r[0..last-first) = the limbs [first, last) of that product, limb 0 being the most significant.
  // What the columns behind them carry into the last is left out wholly or in part, which lowers r
  // by at most min(na, nb) (kBase + 2) units of that limb.
  void (*multiply_part)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                        const std::uint32_t* b, std::size_t nb, std::size_t first,
                        std::size_t last);
  // r[0..2na) = a x a for na <= kMaxColumn.
  void (*square_columns)(std::uint32_t* r, const std::uint32_t* a, std::size_t na);
  // r[0..na+nb) = a x b where the product has at most one length of coefficients. Where it has
  // more, its coefficients wrap around modulo x^n - 1, and r has 2 n + 2 limbs; s is cyclic then, n
  // is its length and neither factor has more coefficients, one at most 2^23. The first coefficient
  // ends at limb 3. Returns what is above the limbs, below 10^16. Work: 4 lengths.
  std::uint64_t (*multiply_transform)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                                      const std::uint32_t* b, std::size_t nb, Shape s,
                                      double* work);
  // The same of a x a. Work: 3 lengths.
  std::uint64_t (*square_transform)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                                    Shape s, double* work);
  // The transform of b for multiply_prepared(): 3 lengths.
  void (*prepare)(double* prepared, const std::uint32_t* b, std::size_t nb, Shape s);
  // As multiply_transform(), with b given by its transform of the same shape. Work: 3 lengths.
  std::uint64_t (*multiply_prepared)(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                                     const double* prepared, std::size_t nb, Shape s, double* work);
  // Fills the results of p. Work: 4 lengths, and 6 for each vector.
  void (*multiply_matrix)(const MatrixProduct& p, double* work);
  // u[i] -= q x v[i] modulo 2^64 for i < kRowBlock x blocks and |q| < 2^31; u is aligned to 64
  // bytes.
  void (*subtract_row)(std::uint64_t* u, const std::uint32_t* v, std::size_t blocks,
                       std::int32_t q);
  // The sum of a[i] x b[i] for i < kDotLimbs, limbs times 32-bit numbers.
  std::uint64_t (*dot)(const std::uint32_t* a, const std::uint32_t* b);
  // rests[i] = a number below 2^64 that leaves what a[0..n) leaves modulo the i-th of the moduli;
  // rests is aligned to 64 bytes.
  void (*remainders)(std::uint64_t* rests, const std::uint32_t* a, std::size_t n,
                     const Moduli& moduli);
  // r = a + b and r = a - b over n limbs each, returning the carry or borrow out. r may be a or b.
  std::uint32_t (*add_limbs)(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                             std::size_t n);
  std::uint32_t (*subtract_limbs)(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                                  std::size_t n);
  // The sums of a[0..n) for 1 <= n <= kMostSummed.
  void (*sum_limbs)(Sums* sums, const std::uint32_t* a, std::size_t n);
};

// The target in use: the first of avx512, avx2, neon, portable that this processor can run, unless
// force_target() has chosen another.
const Target& target();

// The target by which a product is done again that came out wrong: portable, unless force_targets()
// has chosen another.
const Target& second_target();

// The names of the targets that this processor can run, in order of preference; null-terminated.
const char* const* target_names();

// Makes `name` the target in use; false (and no change) where this processor cannot run it. For
// tests and benchmarks, while nothing multiplies.
bool force_target(const char* name);

// Makes these the targets in use; null stands for the one that would be chosen. They stay the
// caller's. For tests, which damage what a target has done.
void force_targets(const Target* first, const Target* second);

}  // namespace tivelo::kernels
