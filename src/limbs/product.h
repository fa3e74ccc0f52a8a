// Products of many factors: balanced trees over machine integers, factorials and powers. Every
// function writes its result at the end of r without leading zero limbs and returns its length;
// limbs of r before it are unspecified. The caller has made sure that r holds the result.
#pragma once

#include <cstdint>
#include <span>

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace for a product tree of `count` factors up to `largest`. Monotone in both.
std::size_t product_workspace(std::size_t count, std::uint32_t largest);

// r = the product of `factors`, each from 1 to 10^8 - 1; 1 for none.
std::size_t product_of_list(Limbs r, std::span<const std::uint32_t> factors, Workspace ws);

// Bytes of workspace for product_of_powers() of `count` primes into r of `limbs` limbs.
std::size_t powers_workspace(std::size_t limbs, std::size_t count);

// r = the product of all primes[i]^exponents[i], each prime below 65536; 1 for none.
std::size_t product_of_powers(Limbs r, std::span<const std::uint32_t> primes,
                              std::span<const std::uint32_t> exponents, Workspace ws);

// r = n (n - 1) ... (n - k + 1) for k <= n < 10^8; 1 for k = 0. Takes product_workspace(k, n).
std::size_t falling_product(Limbs r, std::uint32_t n, std::uint32_t k, Workspace ws);

// Bytes of workspace for factorial(n) into r of `limbs` limbs.
std::size_t factorial_workspace(std::uint32_t n, std::size_t limbs);

// r = n! for n < 10^8.
std::size_t factorial(Limbs r, std::uint32_t n, Workspace ws);

// Bytes of workspace for binomial() of n into r of `limbs` limbs. Monotone in both.
std::size_t binomial_workspace(std::uint32_t n, std::size_t limbs);

// r = n over k for k <= n < 10^8, by the primes up to n: for k that are no small part of n.
std::size_t binomial(Limbs r, std::uint32_t n, std::uint32_t k, Workspace ws);

// Bytes of workspace for power() into r of `limbs` limbs.
std::size_t power_workspace(std::size_t limbs);

// r = base^n for a base without leading zero limbs; base^0 = 1, 0^n = 0 (length 0) for n > 0. r
// does not overlap base.
std::size_t power(Limbs r, ConstLimbs base, std::uint64_t n, Workspace ws);

}  // namespace tivelo::limbs
