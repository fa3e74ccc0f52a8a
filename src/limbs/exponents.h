// How often small primes divide a number: for numbers that a prime divides very often, and for
// those that very many primes divide.
#pragma once

#include <cstdint>
#include <span>

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace for exponents() of na limbs and `count` primes. Monotone in both.
std::size_t exponents_workspace(std::size_t na, std::size_t count);

// out[i] = how often primes[i] divides a; out.size() == primes.size(). The primes are below 65536
// and different. a has no leading zero limb and is not zero.
void exponents(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> primes,
               Workspace ws);

}  // namespace tivelo::limbs
