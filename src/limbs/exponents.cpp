// One prime is divided out as GMP's mpz_remove does it, by squares of squares of its power: first
// up, until a square is half as long as the number, then down. Many primes share their divisions:
// the number is reduced in a remainder tree modulo powers of all of them, which together are longer
// than it is. What a power leaves tells the exponent, unless it leaves nothing; fewer primes are
// then left, and get longer powers. Not all powers can divide the number, and of those of a
// factorial few do: each round leaves a tenth of the primes.
#include "limbs/exponents.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <utility>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"
#include "limbs/product.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

// The highest power of a prime that divide_limb() takes.
struct WordPower {
  std::uint32_t value;
  std::uint32_t exponent = 1;

  explicit WordPower(std::uint32_t p) : value(p) {
    for (; std::uint64_t{value} * p < std::uint64_t{1} << 31; ++exponent) value *= p;
  }
};

std::uint32_t exponent_in_word(std::uint32_t word, std::uint32_t p) {
  std::uint32_t times = 0;
  for (; word % p == 0; word /= p) ++times;
  return times;
}

std::size_t exponent_workspace(std::size_t n) {
  return 3 * Workspace::bytes<Limb>(n + 1) + Workspace::bytes<Limb>(2 * n + 32 * 16 + 4) +
         std::max(divide_workspace(n), multiply_workspace(n / 2 + 1, n / 2 + 1));
}

// The exponent of one prime in a > 0.
std::uint32_t exponent(ConstLimbs a, std::uint32_t p, Workspace ws) {
  const WordPower word(p);
  if (const std::uint32_t rest = remainder_limb(a, word.value); rest != 0)
    return exponent_in_word(rest, p);
  std::array<ConstLimbs, 32> powers;
  const Limbs first = ws.take<Limb>(2);
  first[0] = word.value / kBase;
  first[1] = word.value % kBase;
  std::size_t count = 0;
  for (powers[0] = strip(first); 2 * powers[count].size() <= a.size(); ++count) {
    const Limbs next = ws.take<Limb>(2 * powers[count].size());
    square(next, powers[count], ws);
    powers[count + 1] = strip(next);
  }
  // The last power is above the cube root of a; every other one, at its turn, above the root.
  std::array<Limbs, 3> runs;
  for (Limbs& run : runs) run = ws.take<Limb>(a.size() + 1);
  std::uint32_t times = 0;
  for (std::size_t i = count + 1; i-- > 0;) {
    for (const ConstLimbs power = powers[i]; a.size() >= power.size();) {
      const Limbs quotient = runs[0].first(a.size() - power.size() + 1);
      const Limbs rest = runs[1].first(power.size());
      divide(quotient, rest, a, power, ws);
      const ConstLimbs left = strip(rest);
      if (!left.empty()) {
        a = left;
        std::swap(runs[1], runs[2]);
        break;
      }
      a = strip(quotient);
      std::swap(runs[0], runs[2]);
      times += word.exponent << i;
    }
  }
  return times + exponent_in_word(remainder_limb(a, word.value), p);
}

// Primes that are still looked for, each with a power of at least `size` limbs and less than one
// more, and what is found of them.
struct Round {
  std::size_t size;
  std::span<std::uint32_t> primes;
  std::span<std::uint32_t> degrees;
  std::span<std::uint32_t> found;

  std::size_t count() const { return primes.size(); }
  std::size_t room() const { return (size + 1) * count() + 1; }
  Round part(std::size_t from, std::size_t n) const {
    return {size, primes.subspan(from, n), degrees.subspan(from, n), found.subspan(from, n)};
  }
};

// a modulo the product of the powers at the start of r, or a itself when it is shorter.
ConstLimbs remainder_by_powers(Limbs r, const Round& round, ConstLimbs a, Workspace ws) {
  const Limbs space = ws.take<Limb>(r.size());
  const ConstLimbs all = space.last(product_of_powers(space, round.primes, round.degrees, ws));
  if (a.size() < all.size()) return a;
  const Limbs quotient = ws.take<Limb>(a.size() - all.size() + 1);
  divide(quotient, r.first(all.size()), a, all, ws);
  return strip(r.first(all.size()));
}

// The exponents of the primes whose powers do not divide a, 0 for the others.
void find(const Round& round, ConstLimbs a, Workspace ws) {
  poll();
  if (a.empty()) {
    std::ranges::fill(round.found, 0);
    return;
  }
  if (round.count() == 1) {
    round.found[0] = exponent(a, round.primes[0], ws);
    return;
  }
  const std::size_t half = round.count() / 2;
  for (const Round& part : {round.part(0, half), round.part(half, round.count() - half)}) {
    Workspace rest = ws;
    const Limbs r = rest.take<Limb>(part.room());
    find(part, remainder_by_powers(r, part, a, rest), rest);
  }
}

}  // namespace

// A round has less than n + 2 count limbs in all; on the way down parts of it are kept, each about
// half as long as the one above.
std::size_t exponents_workspace(std::size_t na, std::size_t count) {
  const std::size_t all = na + 2 * count + 1;
  return 4 * Workspace::bytes<std::uint32_t>(count) + Workspace::bytes<Limb>(2 * all + 1024) +
         std::max(2 * Workspace::bytes<Limb>(all) +
                      std::max(powers_workspace(all, count), divide_workspace(na)),
                  exponent_workspace(na));
}

void exponents(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> primes,
               Workspace ws) {
  assert(out.size() == primes.size() && !a.empty());
  const auto index = ws.take<std::uint32_t>(primes.size());
  std::size_t left = 0;
  for (std::size_t i = 0; i < primes.size(); ++i) {
    poll();
    const std::uint32_t rest = remainder_limb(a, WordPower(primes[i]).value);
    if (rest != 0) {
      out[i] = exponent_in_word(rest, primes[i]);
    } else if (a.size() <= kExponentsApart) {
      out[i] = exponent(a, primes[i], ws);
    } else {
      index[left++] = static_cast<std::uint32_t>(i);
    }
  }
  const Round all = {0, ws.take<std::uint32_t>(left), ws.take<std::uint32_t>(left),
                     ws.take<std::uint32_t>(left)};
  while (left > 0) {
    Round round = all.part(0, left);
    round.size = a.size() / left + 1;
    const double bits = static_cast<double>(round.size) * std::log2(kBase);
    for (std::size_t i = 0; i < left; ++i) {
      round.primes[i] = primes[index[i]];
      round.degrees[i] = static_cast<std::uint32_t>(bits / std::log2(primes[index[i]])) + 1;
    }
    find(round, a, ws);
    left = 0;
    for (std::size_t i = 0; i < round.count(); ++i) {
      out[index[i]] = round.found[i];
      if (round.found[i] == 0) index[left++] = index[i];
    }
  }
}

}  // namespace tivelo::limbs
