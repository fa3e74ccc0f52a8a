// The kernels of one target, assembled from the shared algorithm. The including file has opened
// its unnamed namespace and included its vector_*.h.
#pragma once

#include "limbs/crt_core.h"
#include "limbs/row_core.h"
#include "limbs/schoolbook_core.h"

template <int U, Mode kMode>
void convolve_shape(double* x, double* y, Shape s, const Prime& f) {
  const std::size_t h = std::size_t{1} << s.k;
  for (std::size_t c = 0; c < static_cast<std::size_t>(U); ++c) {
    convolve<kMode>(x + c * h, y + c * h, s.k, f.t->chain[c], f);
  }
}

// x = the product of a and b modulo one prime, with a factor 2^halvings(s). Mode kForward: the
// transform of a. `y` is scratch, or the transform of b in mode kPrepared.
template <int U, Mode kMode>
void convolve_operands(double* x, double* y, const Operand& a, const Operand& b, Shape s,
                       const Prime& f) {
  const std::size_t h = std::size_t{1} << s.k;
  split_top<U>(x, a, h, f);
  if constexpr (kMode == Mode::kProduct) split_top<U>(y, b, h, f);
  convolve_shape<U, kMode>(x, y, s, f);
  if constexpr (U > 1 && kMode != Mode::kForward) join_top<U>(x, h, f);
}

template <Mode kMode>
void convolve_prime(double* x, double* y, const Operand& a, const Operand& b, Shape s, int prime) {
  const Prime f = make_prime(transform_tables().prime[prime]);
  if (s.u == 1) return convolve_operands<1, kMode>(x, y, a, b, s, f);
  if (s.u == 5) return convolve_operands<5, kMode>(x, y, a, b, s, f);
  if (s.u == 6) return convolve_operands<6, kMode>(x, y, a, b, s, f);
  if (s.u == 7) return convolve_operands<7, kMode>(x, y, a, b, s, f);
  return convolve_operands<8, kMode>(x, y, a, b, s, f);
}

// The pieces leave a factor 2^(k-1), the top one of 8.
inline int halvings(Shape s) { return s.u == 1 ? s.k - 1 : s.k + 2; }

void finish(std::uint32_t* r, const double* x, std::size_t na, std::size_t nb, Shape s) {
  const std::size_t n = length(s);
  const double* residues[kPrimes] = {x, x + n, x + 2 * n};
  store_product(r, na + nb, residues, (na + 1) / 2 + (nb + 1) / 2 - 1,
                crt_constants(transform_tables(), halvings(s)));
}

void product(std::uint32_t* r, const std::uint32_t* a, std::size_t na, const std::uint32_t* b,
             std::size_t nb, Shape s, double* work) {
  const std::size_t n = length(s);
  for (int i = 0; i < kPrimes; ++i) {
    convolve_prime<Mode::kProduct>(work + static_cast<std::size_t>(i) * n, work + 3 * n, {a, na},
                                   {b, nb}, s, i);
  }
  finish(r, work, na, nb, s);
}

void square(std::uint32_t* r, const std::uint32_t* a, std::size_t na, Shape s, double* work) {
  const std::size_t n = length(s);
  for (int i = 0; i < kPrimes; ++i) {
    convolve_prime<Mode::kSquare>(work + static_cast<std::size_t>(i) * n, work, {a, na}, {a, na}, s,
                                  i);
  }
  finish(r, work, na, na, s);
}

void prepare(double* prepared, const std::uint32_t* b, std::size_t nb, Shape s) {
  const std::size_t n = length(s);
  for (int i = 0; i < kPrimes; ++i) {
    double* x = prepared + static_cast<std::size_t>(i) * n;
    convolve_prime<Mode::kForward>(x, x, {b, nb}, {b, nb}, s, i);
  }
}

// Mode kPrepared only reads its second array.
void prepared_product(std::uint32_t* r, const std::uint32_t* a, std::size_t na,
                      const double* prepared, std::size_t nb, Shape s, double* work) {
  const std::size_t n = length(s);
  for (int i = 0; i < kPrimes; ++i) {
    const std::size_t at = static_cast<std::size_t>(i) * n;
    convolve_prime<Mode::kPrepared>(work + at, const_cast<double*>(prepared) + at, {a, na}, {a, na},
                                    s, i);
  }
  finish(r, work, na, nb, s);
}
