// The primes below 65536, for searches for small factors: of a number to be factorised, and of the
// two members of a fraction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tivelo {

inline constexpr std::size_t kPrimesBelow65536 = 6542;

// Those up to `bound`, which is below 65536, in increasing order; found by a sieve when first asked
// for.
std::span<const std::uint32_t> primes_up_to(std::uint32_t bound);

}  // namespace tivelo
