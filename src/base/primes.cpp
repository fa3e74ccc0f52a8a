// Eratosthenes' sieve, run for the few primes that nearly all searches want, and again for all.
#include "base/primes.h"

#include <algorithm>
#include <array>

namespace tivelo {

namespace {

constexpr std::uint32_t kFew = 10000;
constexpr std::uint32_t kAll = 65536;

std::array<std::uint32_t, kPrimesBelow65536> primes;
std::size_t count = 0;
std::uint32_t sieved = 0;  // the table has the primes below this

void find_primes_below(std::uint32_t bound) {
  static std::array<bool, kAll / 2> composite;  // the odd number 2 i + 1
  sieved = bound;
  primes[0] = 2;
  count = 1;
  for (std::uint32_t i = 1; i < bound / 2; ++i) {
    if (composite[i]) continue;
    const std::uint32_t p = 2 * i + 1;
    primes[count++] = p;
    for (std::size_t k = std::size_t{p} * p / 2; k < bound / 2; k += p) composite[k] = true;
  }
}

}  // namespace

std::span<const std::uint32_t> primes_up_to(std::uint32_t bound) {
  if (bound >= sieved) find_primes_below(bound < kFew ? kFew : kAll);
  const auto end = primes.begin() + static_cast<std::ptrdiff_t>(count);
  return {primes.begin(), std::upper_bound(primes.begin(), end, bound)};
}

}  // namespace tivelo
