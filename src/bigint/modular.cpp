// Signs and copies; the limbs are the engine's work. Results are formed in workspace, so that they
// may be operands and an interruption finds everything as it was.
#include "bigint/modular.h"

#include <algorithm>

#include "base/primes.h"
#include "bigint/engine.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/modular.h"
#include "limbs/probable_prime.h"
#include "limbs/remainders.h"

namespace tivelo {

namespace {

constexpr Limb kOne[] = {1};

// r = sign x the limbs, as a new integer; zero is positive.
void set_integer(num* r, ConstLimbs limbs, std::int32_t sign) {
  clear(r);
  const ConstLimbs digits = limbs::strip(limbs);
  set_limbs(r, digits);
  r->sign = digits.empty() ? 1 : sign;
}

}  // namespace

void powm(num* r, const num* x, const num* y, const num* z) {
  const ConstLimbs modulus = magnitude(z);
  const ConstLimbs exponent = magnitude(y);
  Workspace ws = engine;
  const Limbs power = ws.take<Limb>(modulus.size());
  limbs::power_modulo(power, magnitude(x), exponent, modulus, ws);
  const bool odd = !exponent.empty() && exponent.back() % 2 != 0;
  if (x->sign < 0 && odd && !limbs::strip(power).empty()) limbs::subtract(power, modulus, power);
  set_integer(r, power, 1);
}

void quotient_and_remainder(num* q, num* r, const num* x, const num* y) {
  const ConstLimbs a = magnitude(x);
  const ConstLimbs b = magnitude(y);
  Workspace ws = engine;
  const std::size_t n = std::max(a.size(), b.size());
  // One limb more for the quotient away from zero, which fits the record all the same: only a
  // divisor above 1 leaves a rest.
  const Limbs quotient = ws.take<Limb>(n - b.size() + 2);
  const Limbs rest = ws.take<Limb>(b.size());
  Limbs dividend = ws.take<Limb>(n);
  std::fill(dividend.begin(), dividend.end() - static_cast<std::ptrdiff_t>(a.size()), 0);
  std::ranges::copy(a, dividend.end() - static_cast<std::ptrdiff_t>(a.size()));
  quotient[0] = 0;
  limbs::divide(quotient.subspan(1), rest, dividend, b, ws);
  if (x->sign < 0 && !limbs::strip(rest).empty()) {
    limbs::add(quotient, quotient, kOne);
    limbs::subtract(rest, b, rest);
  }
  const std::int32_t sign = x->sign == y->sign ? 1 : -1;
  set_integer(q, quotient, sign);
  set_integer(r, rest, 1);
}

bool strong_probable_prime(const num* n) { return limbs::passes_strong_test(magnitude(n), engine); }

bool strong_lucas_probable_prime(const num* n) {
  return limbs::passes_strong_lucas_test(magnitude(n), engine);
}

void small_remainders(std::span<std::uint32_t> out, const num* a,
                      std::span<const std::uint32_t> moduli) {
  limbs::remainders(out, magnitude(a), moduli, engine);
}

std::size_t modular_workspace(std::size_t n) {
  const std::size_t dividing = 3 * Workspace::bytes<Limb>(n + 2) + limbs::divide_workspace(n);
  return std::max({dividing, Workspace::bytes<Limb>(n) + limbs::power_modulo_workspace(n),
                   limbs::probable_prime_workspace(n),
                   limbs::remainders_workspace(n, kPrimesBelow65536)});
}

}  // namespace tivelo
