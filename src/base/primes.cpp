#include "base/primes.h"

#include <bitset>

namespace tivelo {

namespace {

constexpr std::uint32_t kBound = 65536;
constexpr std::size_t kCount = 6542;

std::uint32_t primes[kCount];

// Eratosthenes' sieve.
bool find_primes() {
  static std::bitset<kBound> composite;
  std::size_t count = 0;
  for (std::uint32_t p = 2; p < kBound; ++p) {
    if (composite[p]) continue;
    primes[count++] = p;
    for (std::uint64_t multiple = std::uint64_t{p} * p; multiple < kBound; multiple += p)
      composite[multiple] = true;
  }
  return count == kCount;
}

}  // namespace

std::span<const std::uint32_t> primes_below_65536() {
  static const bool found = find_primes();
  return {primes, found ? kCount : 0};
}

}  // namespace tivelo
