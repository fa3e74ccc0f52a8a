// Reduction by a kept reciprocal (Barrett, 1986). A product x < m^2 of 2 n limbs is cut to its
// leading n + 1, their product with B^(2n) / m is cut again, and that is the quotient q by m:
//   - the limbs cut from x lower it by less than B^(n-1) / m <= 1, an error of 4 in the reciprocal
//     changes it by at most 4 x / B^(2n) < 4;
//   - where short moduli leave out the columns below B^(n-1), that takes less than
//     (n + 1) B^n / B^(n+1) < 1;
//   - the cut itself takes less than 1.
// So x - q m lies between -4 m and 8 m, and n + 1 limbs of it tell which it is.
//
// Powers go by windows that slide over the bits of the exponent (Knuth, The Art of Computer
// Programming, section 4.6.3), from a table of odd powers.
#include "limbs/modular.h"

#include <algorithm>
#include <cassert>

#include "base/interrupt.h"
#include "base/wide.h"
#include "kernels/target.h"
#include "limbs/binary.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"
#include "limbs/reciprocal.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

static_assert(kModularTransform < kernels::kMaxColumn);

bool below(ConstLimbs a, ConstLimbs b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
}

kernels::Shape shape_of_reciprocal(std::size_t n) {
  return kernels::shape_for(kernels::product_coefficients(n + 1, n + 1));
}

// A product with the modulus is next to the number that is reduced, by less than B^(n+1).
kernels::Shape shape_of_modulus(std::size_t n) { return kernels::cyclic_shape_for(n / 2 + 2); }

}  // namespace

// In whole units of the workspace, so that it can be taken from another.
std::size_t modulus_workspace(std::size_t n) {
  const std::size_t own = Workspace::bytes<Limb>(n + 1) + Workspace::bytes<Limb>(2 * n) +
                          2 * Workspace::bytes<Limb>(2 * n + 2);
  std::size_t working = multiply_workspace(n, n);
  if (n >= kModularTransform) {
    const kernels::Shape first = shape_of_reciprocal(n), second = shape_of_modulus(n);
    working = Kept::bytes(first) + Kept::bytes(second) +
              std::max({working, Kept::workspace(first, n + 1, n + 1),
                        Kept::workspace(second, n + 1, n)});
  }
  return Workspace::bytes<std::byte>(own + std::max(reciprocal_workspace(n), working));
}

Modulus::Modulus(ConstLimbs m, Workspace ws) : m_(m) {
  const std::size_t n = m.size();
  reciprocal_ = ws.take<Limb>(n + 1);
  product_ = ws.take<Limb>(2 * n);
  quotient_ = ws.take<Limb>(2 * n + 2);
  multiple_ = ws.take<Limb>(2 * n + 2);
  reciprocal(reciprocal_, m, ws);
  if (n >= kModularTransform) {
    kept_reciprocal_ = Kept(reciprocal_, shape_of_reciprocal(n), ws);
    kept_modulus_ = Kept(m, shape_of_modulus(n), ws);
  }
  ws_ = ws;
}

// r = product_ mod m.
void Modulus::reduce(Limbs r) {
  const std::size_t n = m_.size();
  const ConstLimbs head = product_.first(n + 1);
  const ConstLimbs q = quotient_.first(n + 1);
  if (n >= kModularTransform) {
    kept_reciprocal_.multiply(quotient_, head, ws_);
    const Limbs multiple = multiple_.last(2 * n + 1);
    multiple[0] = 0;
    std::ranges::copy(product_, multiple.begin() + 1);
    kept_modulus_.multiply_near(multiple, q, ws_);
  } else {
    const auto multiply_part = kernels::target().multiply_part;
    multiply_part(quotient_.data(), head.data(), n + 1, reciprocal_.data(), n + 1, 0, n + 3);
    multiply_part(multiple_.last(n + 1).data(), m_.data(), n, q.data(), n + 1, n, 2 * n + 1);
  }
  const Limbs rest = product_.last(n + 1);
  limbs::subtract(rest, rest, multiple_.last(n + 1));
  while (rest[0] >= kBase / 2) limbs::add(rest, rest, m_);
  while (rest[0] != 0 || !below(rest.subspan(1), m_)) limbs::subtract(rest, rest, m_);
  std::ranges::copy(rest.subspan(1), r.begin());
}

void Modulus::multiply(Limbs r, ConstLimbs a, ConstLimbs b) {
  limbs::multiply(product_, a, b, ws_);
  reduce(r);
}

void Modulus::square(Limbs r, ConstLimbs a) {
  limbs::square(product_, a, ws_);
  reduce(r);
}

void Modulus::add(Limbs r, ConstLimbs a, ConstLimbs b) const {
  if (limbs::add(r, a, b) != 0 || !below(r, m_)) limbs::subtract(r, r, m_);
}

void Modulus::subtract(Limbs r, ConstLimbs a, ConstLimbs b) const {
  if (limbs::subtract(r, a, b) != 0) limbs::add(r, r, m_);
}

Modulus make_modulus(ConstLimbs m, Workspace& ws) {
  const auto own = ws.take<std::byte>(modulus_workspace(m.size()));
  return {m, Workspace(own.data(), own.size())};
}

namespace {

// The table of odd powers has at most this many, and few for a long modulus.
constexpr std::size_t kMostPowers = 128;
constexpr std::size_t kPowersOfLong = 16;
constexpr std::size_t kLongModulus = 2048;

std::size_t table_limbs(std::size_t n) {
  return std::max(kMostPowers * std::min(n, kLongModulus), kPowersOfLong * n);
}

// Bits of a window: with one bit more the table's products double, and those of b bits by windows
// of w, b / (w + 1) in all, become fewer.
std::size_t window_bits(std::size_t bits, std::size_t n) {
  std::size_t w = 1;
  const std::size_t most = n > kLongModulus ? kPowersOfLong : kMostPowers;
  const auto saved = [bits](std::size_t k) { return bits / ((k + 1) * (k + 2)); };
  while (std::size_t{1} << w <= most && saved(w) > std::size_t{1} << (w - 1)) ++w;
  return w;
}

// A number of at most two limbs.
std::uint64_t short_value(ConstLimbs a) {
  std::uint64_t value = 0;
  for (const Limb limb : a) value = value * kBase + limb;
  return value;
}

void write_short(Limbs r, std::uint64_t value) {
  for (std::size_t i = r.size(); i-- > 0; value /= kBase) r[i] = static_cast<Limb>(value % kBase);
}

std::uint64_t short_power(std::uint64_t base, const Bits& bits, std::uint64_t m) {
  assert(m > 0);
  std::uint64_t x = 1 % m;
  for (std::size_t i = bits.size(); i-- > 0;) {
    poll();
    x = static_cast<std::uint64_t>(static_cast<Wide>(x) * x % m);
    if (bits[i]) x = static_cast<std::uint64_t>(static_cast<Wide>(x) * base % m);
  }
  return x;
}

// r = a mod m, with leading zeros.
void residue(Limbs r, ConstLimbs a, ConstLimbs m, Workspace ws) {
  if (a.size() >= m.size()) {
    divide(ws.take<Limb>(a.size() - m.size() + 1), r, a, m, ws);
    return;
  }
  std::fill(r.begin(), r.end() - static_cast<std::ptrdiff_t>(a.size()), 0);
  std::ranges::copy(a, r.end() - static_cast<std::ptrdiff_t>(a.size()));
}

// r = x^bits for at least one bit; the powers x, x^3, x^5, ... by windows of w bits stand at
// `table`.
void slide(Limbs r, const Bits& bits, std::size_t w, ConstLimbs table, Modulus& modulus) {
  const std::size_t n = modulus.size();
  progress = {0, static_cast<long long>(bits.size())};
  bool begun = false;
  const auto square = [&] {
    poll();
    ++progress.done;
    if (begun) modulus.square(r, r);
  };
  for (std::size_t above = bits.size(); above > 0;) {
    std::size_t low = above - std::min(above, w);
    while (low < above - 1 && !bits[low]) ++low;
    std::size_t value = 0;
    for (; above > low; --above) {
      square();
      value = 2 * value + (bits[above - 1] ? 1 : 0);
      if (value == 0) low = above - 1;
    }
    if (value == 0) continue;
    const ConstLimbs power = table.subspan(value / 2 * n, n);
    if (begun) {
      modulus.multiply(r, r, power);
    } else {
      std::ranges::copy(power, r.begin());
      begun = true;
    }
  }
}

}  // namespace

std::size_t power_modulo_workspace(std::size_t n) {
  return Workspace::bytes<std::uint32_t>(bit_words(n)) +
         std::max(bits_workspace(n), Workspace::bytes<Limb>(table_limbs(n)) +
                                         std::max(Workspace::bytes<Limb>(n) + divide_workspace(n),
                                                  modulus_workspace(n)));
}

void power_modulo(Limbs r, ConstLimbs base, ConstLimbs exponent, ConstLimbs m, Workspace ws) {
  const std::size_t n = m.size();
  assert(n > 0 && m[0] != 0 && r.size() == n);
  const Bits bits = bits_of(ws.take<std::uint32_t>(bit_words(exponent.size())), exponent, ws);
  residue(r, base, m, ws);
  if (n <= 2) return write_short(r, short_power(short_value(r), bits, short_value(m)));
  if (bits.size() == 0) return write_short(r, 1);
  const std::size_t w = window_bits(bits.size(), n);
  const Limbs table = ws.take<Limb>(n << (w - 1));
  std::ranges::copy(r, table.begin());
  Modulus modulus = make_modulus(m, ws);
  if (w > 1) modulus.square(r, r);
  for (std::size_t i = n; i < table.size(); i += n) {
    poll();
    modulus.multiply(table.subspan(i, n), table.subspan(i - n, n), r);
  }
  slide(r, bits, w, table, modulus);
}

}  // namespace tivelo::limbs
