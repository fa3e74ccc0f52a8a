// Balanced trees keep the two operands of every multiplication of one length, which is where
// multiply() is at its best. Factorials go by prime swings (Luschny's variant of Schoenhage's
// method): n! = (floor(n / 2)!)^2 x swing(n), where a prime p divides swing(n) as often as the
// floors of n / p, n / p^2, ... are odd; nearly all work is then in a few long squares.
#include "limbs/product.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "base/interrupt.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

// Limbs of a number of `bits` bits, rounded up: log(2) / log(10^8) < 78 / 2048.
constexpr std::size_t limbs_of_bits(std::size_t bits) { return bits * 78 / 2048 + 1; }

// With one limb to spare: multiply() writes the limbs of both operands.
std::size_t tree_room(std::size_t count, std::uint32_t largest) {
  return limbs_of_bits(count * static_cast<std::size_t>(std::bit_width(largest))) + 1;
}

// The product of factor(first), ..., factor(first + count - 1), none above `largest`, at the end
// of r.
template <typename Factor>
ConstLimbs tree(Limbs r, std::size_t first, std::size_t count, std::uint32_t largest,
                const Factor& factor, Workspace ws) {
  if (count > kProductLeaf) {
    poll();
    const std::size_t half = count / 2;
    const Limbs left = ws.take<Limb>(tree_room(half, largest));
    const Limbs right = ws.take<Limb>(tree_room(count - half, largest));
    const ConstLimbs x = tree(left, first, half, largest, factor, ws);
    const ConstLimbs y = tree(right, first + half, count - half, largest, factor, ws);
    const Limbs both = r.last(x.size() + y.size());
    multiply(both, y, x, ws);
    return strip(both);
  }
  std::size_t length = 1;
  r.back() = 1;
  std::uint64_t word = 1;
  const auto join = [&] {
    const Limb carry = multiply_limb(r.last(length), r.last(length), static_cast<Limb>(word));
    if (carry != 0) r[r.size() - ++length] = carry;
  };
  progress.done += static_cast<long long>(count);
  for (std::size_t i = first; i < first + count; ++i) {
    const std::uint64_t next = factor(i);
    if (word * next >= kBase) {
      join();
      word = 1;
    }
    word *= next;
  }
  join();
  return r.last(length);
}

std::size_t copy_to_end(Limbs r, ConstLimbs a) {
  assert(a.size() <= r.size());
  std::copy(a.begin(), a.end(), r.end() - static_cast<std::ptrdiff_t>(a.size()));
  return a.size();
}

template <typename Factor>
std::size_t tree_product(Limbs r, std::size_t count, std::uint32_t largest, const Factor& factor,
                         Workspace ws) {
  const Limbs whole = ws.take<Limb>(tree_room(count, largest));
  return copy_to_end(r, tree(whole, 0, count, largest, factor, ws));
}

// Bit i stands for 2 i + 1 <= n; set for the odd primes.
std::span<std::uint64_t> sieve(std::uint32_t n, Workspace& ws) {
  const std::span<std::uint64_t> odd = ws.take<std::uint64_t>(n / 128 + 1);
  std::fill(odd.begin(), odd.end(), ~std::uint64_t{0});
  odd[0] -= 1;
  const auto prime = [&](std::size_t p) { return (odd[p / 128] >> (p / 2 % 64) & 1) != 0; };
  for (std::size_t p = 3; p * p <= n; p += 2) {
    if (!prime(p)) continue;
    poll();
    for (std::size_t i = p * p; i <= n; i += 2 * p) {
      odd[i / 128] &= ~(std::uint64_t{1} << (i / 2 % 64));
    }
  }
  return odd;
}

// swing(n) < 2^n (n / 2 + 1), with n < 2^27.
std::size_t swing_room(std::uint32_t n) { return limbs_of_bits(std::size_t{n} + 27) + 1; }

// Any two neighbours among the factors of a product of so many limbs multiply to a limb or more.
std::size_t most_factors(std::size_t limbs) { return 2 * limbs + 2; }

std::size_t prime_powers_workspace(std::size_t limbs) {
  return Workspace::bytes<std::uint32_t>(most_factors(limbs)) +
         product_workspace(most_factors(limbs), kBase - 1);
}

// The power of p in swing(n); it divides a power of p not above n.
std::uint64_t swing_power(std::uint32_t n, std::uint32_t p) {
  std::uint64_t power = 1;
  for (std::uint32_t left = n / p; left > 0; left /= p) power *= left % 2 == 1 ? p : 1;
  return power;
}

// The power of p in n over k, by Kummer: p as often as the subtraction n - k borrows in base p.
std::uint64_t binomial_power(std::uint32_t n, std::uint32_t k, std::uint32_t p) {
  std::uint64_t power = 1;
  for (std::uint32_t borrow = 0; k > 0 || borrow > 0; n /= p, k /= p) {
    borrow = n % p < k % p + borrow ? 1 : 0;
    power *= borrow > 0 ? p : 1;
  }
  return power;
}

// The product of power(p), at most 10^8 - 1, for all primes up to n, at the end of r.
template <typename Power>
ConstLimbs prime_powers(Limbs r, std::uint32_t n, std::span<const std::uint64_t> odd,
                        const Power& power, Workspace ws) {
  const std::span<std::uint32_t> factors = ws.take<std::uint32_t>(most_factors(r.size()));
  std::size_t count = 0;
  std::uint64_t word = power(2);
  const auto put = [&](std::uint64_t next) {
    if (word * next >= kBase) {
      factors[count++] = static_cast<std::uint32_t>(word);
      word = 1;
    }
    word *= next;
  };
  for (std::uint32_t base = 0; base <= n; base += 128) {
    poll();
    for (std::uint64_t bits = odd[base / 128]; bits != 0; bits &= bits - 1) {
      const std::uint32_t p = base + 2 * static_cast<std::uint32_t>(std::countr_zero(bits)) + 1;
      if (p <= n) put(power(p));
    }
  }
  factors[count++] = static_cast<std::uint32_t>(word);
  return r.last(product_of_list(r, factors.first(count), ws));
}

}  // namespace

std::size_t product_workspace(std::size_t count, std::uint32_t largest) {
  std::size_t size = Workspace::bytes<Limb>(tree_room(count, largest));
  const std::size_t half = count - count / 2;
  size += multiply_workspace(tree_room(half, largest), tree_room(half, largest));
  for (std::size_t n = count; n > kProductLeaf;) {
    n -= n / 2;
    size += 2 * Workspace::bytes<Limb>(tree_room(n, largest));
  }
  return size;
}

std::size_t product_of_list(Limbs r, std::span<const std::uint32_t> factors, Workspace ws) {
  const std::uint32_t largest =
      factors.empty() ? 1 : *std::max_element(factors.begin(), factors.end());
  assert(largest < kBase);
  return tree_product(
      r, factors.size(), largest, [&](std::size_t i) { return factors[i]; }, ws);
}

std::size_t falling_product(Limbs r, std::uint32_t n, std::uint32_t k, Workspace ws) {
  assert(k <= n && n < kBase);
  const auto factor = [n](std::size_t i) { return n - static_cast<std::uint32_t>(i); };
  return tree_product(r, k, n, factor, ws);
}

std::size_t factorial_workspace(std::uint32_t n, std::size_t limbs) {
  if (n < kFactorialSwing) return product_workspace(n, n);
  return Workspace::bytes<std::uint64_t>(n / 128 + 1) + 2 * Workspace::bytes<Limb>(limbs + 1) +
         Workspace::bytes<Limb>(swing_room(n)) +
         std::max({product_workspace(kFactorialSwing, kFactorialSwing),
                   prime_powers_workspace(swing_room(n)),
                   multiply_workspace(limbs / 2 + 1, limbs / 2 + 1),
                   multiply_workspace(limbs + 1, swing_room(n))});
}

std::size_t factorial(Limbs r, std::uint32_t n, Workspace ws) {
  if (n < kFactorialSwing) return falling_product(r, n, n, ws);
  const std::span<const std::uint64_t> odd = sieve(n, ws);
  const Limbs one = ws.take<Limb>(r.size() + 1);
  const Limbs two = ws.take<Limb>(r.size() + 1);
  const Limbs factor = ws.take<Limb>(swing_room(n));
  int halvings = 0;
  while (n >> halvings >= kFactorialSwing) ++halvings;
  std::size_t length = falling_product(one, n >> halvings, n >> halvings, ws);
  while (halvings > 0) {
    poll();
    const std::uint32_t m = n >> --halvings;
    const auto power = [m](std::uint32_t p) { return swing_power(m, p); };
    const ConstLimbs part = prime_powers(factor, m, odd, power, ws);
    const Limbs squared = two.last(2 * length);
    square(squared, one.last(length), ws);
    const ConstLimbs s = strip(squared);
    const Limbs next = one.last(s.size() + part.size());
    multiply(next, s, part, ws);
    length = strip(next).size();
  }
  return copy_to_end(r, one.last(length));
}

std::size_t binomial_workspace(std::uint32_t n, std::size_t limbs) {
  return Workspace::bytes<std::uint64_t>(n / 128 + 1) + prime_powers_workspace(limbs);
}

std::size_t binomial(Limbs r, std::uint32_t n, std::uint32_t k, Workspace ws) {
  assert(k <= n && n < kBase);
  const std::span<const std::uint64_t> odd = sieve(n, ws);
  const auto power = [n, k](std::uint32_t p) { return binomial_power(n, k, p); };
  return prime_powers(r, n, odd, power, ws).size();
}

std::size_t powers_workspace(std::size_t limbs, std::size_t count) {
  return 3 * Workspace::bytes<Limb>(limbs + 1) + Workspace::bytes<std::uint32_t>(count) +
         std::max(product_workspace(count, 65535),
                  multiply_workspace((limbs + 1) / 2 + 1, (limbs + 1) / 2 + 1));
}

// Bit by bit of all exponents at once, from the leading one down: squares do nearly all the work,
// and a square takes in the primes whose exponents have the bit.
std::size_t product_of_powers(Limbs r, std::span<const std::uint32_t> primes,
                              std::span<const std::uint32_t> exponents, Workspace ws) {
  assert(primes.size() == exponents.size());
  const Limbs one = ws.take<Limb>(r.size() + 1);
  const Limbs two = ws.take<Limb>(r.size() + 1);
  const Limbs factor = ws.take<Limb>(r.size() + 1);
  const std::span<std::uint32_t> chosen = ws.take<std::uint32_t>(primes.size());
  std::uint32_t all = 0;
  for (const std::uint32_t exponent : exponents) all |= exponent;
  one.back() = 1;
  ConstLimbs x = one.last(1);
  for (int bit = static_cast<int>(std::bit_width(all)); bit-- > 0;) {
    poll();
    const Limbs squared = two.last(2 * x.size());
    square(squared, x, ws);
    const ConstLimbs s = strip(squared);
    std::size_t count = 0;
    for (std::size_t i = 0; i < primes.size(); ++i)
      if ((exponents[i] >> bit & 1) != 0) chosen[count++] = primes[i];
    const std::size_t length = product_of_list(factor, chosen.first(count), ws);
    const Limbs next = one.last(s.size() + length);
    multiply(next, s, factor.last(length), ws);
    x = strip(next);
  }
  return copy_to_end(r, x);
}

std::size_t power_workspace(std::size_t limbs) {
  return 2 * Workspace::bytes<Limb>(limbs + 1) +
         multiply_workspace((limbs + 1) / 2 + 1, (limbs + 1) / 2 + 1) +
         multiply_workspace(limbs, limbs / 3 + 2);
}

// From the leading bit of n down, so that the second factor of every product is the base itself.
std::size_t power(Limbs r, ConstLimbs base, std::uint64_t n, Workspace ws) {
  if (n == 0) {
    r.back() = 1;
    return 1;
  }
  if (n == 1 || base.empty()) return copy_to_end(r, base);
  const Limbs one = ws.take<Limb>(r.size() + 1);
  const Limbs two = ws.take<Limb>(r.size() + 1);
  ConstLimbs x = base;
  for (int bit = static_cast<int>(std::bit_width(n)) - 1; bit-- > 0;) {
    poll();
    const Limbs squared = two.last(2 * x.size());
    square(squared, x, ws);
    const ConstLimbs s = strip(squared);
    const bool odd = (n >> bit & 1) != 0;
    const Limbs next = one.last(s.size() + (odd ? base.size() : 0));
    if (odd) {
      multiply(next, s, base, ws);
    } else {
      std::copy(s.begin(), s.end(), next.begin());
    }
    x = strip(next);
  }
  return copy_to_end(r, x);
}

}  // namespace tivelo::limbs
