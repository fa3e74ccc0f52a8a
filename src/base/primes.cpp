// Eratosthenes' sieve, run once.
#include "base/primes.h"

#include <bitset>

namespace tivelo {

namespace {

constexpr std::uint32_t kBound = 65536;

std::uint32_t primes[kPrimesBelow65536];

// Eratosthenes' sieve.
bool find_primes() {
  static std::bitset<kBound> composite;
  std::size_t count = 0;
  for (std::uint32_t p = 2; p < kBound; ++p) {
    if (composite[p]) continue;
    primes[count++] = p;
    for (std::size_t multiple = std::size_t{p} * p; multiple < kBound; multiple += p)
      composite[multiple] = true;
  }
  return count == kPrimesBelow65536;
}

}  // namespace

std::span<const std::uint32_t> primes_below_65536() {
  static const bool found = find_primes();
  return {primes, found ? kPrimesBelow65536 : 0};
}

}  // namespace tivelo
