// Common divisors by the engine's half gcds, prime divisors by its remainder tree.
#include "bigint/divisors.h"

#include <algorithm>

#include "base/interrupt.h"
#include "base/primes.h"
#include "bigint/engine.h"
#include "bigint/muldiv.h"
#include "limbs/gcd.h"
#include "limbs/linear.h"
#include "limbs/remainders.h"

namespace tivelo {

int ngcm(num* r, const num* a, const num* b) {
  const ConstLimbs x = magnitude(a);
  const ConstLimbs y = magnitude(b);
  Workspace ws = engine;
  const Limbs divisor = ws.take<Limb>(std::max(x.size(), y.size()));
  const std::size_t n = limbs::gcd(divisor, x, y, ws);
  r->sign = 1;
  if (n > 0) {
    set_limbs(r, divisor.last(n));
  } else {
    iton(r, 0);
  }
  return 1;
}

std::size_t prime_divisors(std::span<std::uint32_t> found, const num* a, std::uint32_t bound) {
  const auto primes = primes_up_to(bound);
  Workspace ws = engine;
  const auto rest = ws.take<std::uint32_t>(primes.size());
  limbs::remainders(rest, magnitude(a), primes, ws);
  std::size_t count = 0;
  for (std::size_t i = 0; i < primes.size(); ++i)
    if (rest[i] == 0) found[count++] = primes[i];
  return count;
}

int divide_out(num* a, int p, int most) {
  int times = 0;
  while (times < most && limbs::remainder_limb(in_use(a), static_cast<std::uint32_t>(p)) == 0) {
    poll();
    div(a, p);
    ++times;
  }
  return times;
}

std::size_t divisors_workspace(std::size_t n) {
  return std::max(Workspace::bytes<Limb>(n) + limbs::gcd_workspace(n),
                  Workspace::bytes<std::uint32_t>(kPrimesBelow65536) +
                      limbs::remainders_workspace(n, kPrimesBelow65536));
}

}  // namespace tivelo
