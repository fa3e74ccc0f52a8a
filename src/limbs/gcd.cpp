// Lehmer's method: the quotients of Euclid's algorithm are found on the leading 63 bits, collected
// in a matrix with entries below 2^31, and applied to the long numbers in one pass. A whole
// division is only needed where one number is much longer than the other.
#include "limbs/gcd.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <numeric>
#include <utility>

#include "limbs/arith.h"
#include "limbs/divide.h"
#include "limbs/wide.h"

namespace tivelo::limbs {
namespace {

// x' = a x + b y, y' = c x + d y with determinant 1 or -1, which keeps the gcd.
struct Matrix {
  std::int64_t a = 1, b = 0, c = 0, d = 1;
};

constexpr std::int64_t kEntryLimit = std::int64_t{1} << 31;

// Leading limbs of x and of y, aligned to x, as numbers of at most 63 bits in a common unit.
std::pair<std::int64_t, std::int64_t> leading(ConstLimbs x, ConstLimbs y) {
  Wide high = 0;
  Wide low = 0;
  const std::size_t lag = x.size() - y.size();
  for (std::size_t i = 0; i < 3; ++i) {
    high = high * kBase + x[i];
    low = low * kBase + (i < lag ? 0 : y[i - lag]);
  }
  const auto top = static_cast<std::uint64_t>(high >> 64);
  const int width = top != 0 ? 64 + static_cast<int>(std::bit_width(top))
                             : static_cast<int>(std::bit_width(static_cast<std::uint64_t>(high)));
  const int shift = std::max(width - 63, 0);
  return {static_cast<std::int64_t>(high >> shift), static_cast<std::int64_t>(low >> shift)};
}

// Euclid's algorithm on x and y, each up to 1 below the true value in its unit. The true results
// differ from x and y by less than an entry, so while both stay at 2^32 the true ones are positive,
// whether or not the quotients are those of the true numbers.
Matrix collect(std::int64_t x, std::int64_t y) {
  Matrix m;
  while (y >= 2 * kEntryLimit) {
    const std::int64_t q = x / y;
    const std::int64_t rest = x - q * y;
    if (q >= kEntryLimit || rest < 2 * kEntryLimit) break;
    const std::int64_t c = m.a - q * m.c;
    const std::int64_t d = m.b - q * m.d;
    if (std::max(std::abs(c), std::abs(d)) >= kEntryLimit) break;
    m = {m.c, m.d, c, d};
    x = std::exchange(y, rest);
  }
  return m;
}

// Both numbers at once, in place. A column is below 2 x 2^31 x 10^8 in size, its carry below
// 2^33: lifting it by kBase x 2^33 makes it positive.
void apply(const Matrix& m, Limbs x, Limbs y) {
  assert(x.size() == y.size());
  constexpr std::int64_t kLift = std::int64_t{1} << 33;
  const auto settle = [](std::int64_t column, std::int64_t& carry) {
    const auto t = static_cast<std::uint64_t>(column + carry + kLift * kBase);
    carry = static_cast<std::int64_t>(t / kBase) - kLift;
    return static_cast<Limb>(t % kBase);
  };
  std::int64_t carry_x = 0;
  std::int64_t carry_y = 0;
  for (std::size_t i = x.size(); i-- > 0;) {
    const std::int64_t u = x[i];
    const std::int64_t v = y[i];
    x[i] = settle(m.a * u + m.b * v, carry_x);
    y[i] = settle(m.c * u + m.d * v, carry_y);
  }
  assert(carry_x == 0 && carry_y == 0);
}

std::uint64_t short_value(ConstLimbs a) {
  std::uint64_t value = 0;
  for (const Limb limb : a) value = value * kBase + limb;
  return value;
}

std::size_t write_short(Limbs r, std::uint64_t value) {
  std::size_t length = 0;
  for (; value != 0; value /= kBase) r[r.size() - ++length] = static_cast<Limb>(value % kBase);
  return length;
}

// One of the two numbers: the last `size` limbs of its room.
struct Operand {
  Limbs room;
  std::size_t size;

  void set(ConstLimbs a) {
    size = a.size();
    std::copy(a.begin(), a.end(), run().begin());
  }
  void trim() { size = strip(run()).size(); }
  Limbs run() const { return room.last(size); }
};

}  // namespace

std::size_t gcd_workspace(std::size_t n) {
  return 3 * Workspace::bytes<Limb>(n + 1) + Workspace::bytes<Limb>(n) + divide_workspace(2 * n, n);
}

std::size_t gcd(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t room = std::max(a.size(), b.size());
  Operand x{ws.take<Limb>(room), 0};
  Operand y{ws.take<Limb>(room), 0};
  const Limbs rest = ws.take<Limb>(room);
  const Limbs quotient = ws.take<Limb>(room + 1);
  x.set(a);
  y.set(b);
  for (;;) {
    if (compare(x.run(), y.run()) < 0) std::swap(x, y);
    if (y.size == 0 || x.size <= 2) break;
    Matrix m;
    if (x.size - y.size < 2) {
      const auto [high, low] = leading(x.run(), y.run());
      m = collect(high, low);
    }
    if (m.b != 0) {
      std::fill_n(y.room.last(x.size).begin(), x.size - y.size, 0);
      y.size = x.size;
      apply(m, x.run(), y.run());
      x.trim();
      y.trim();
    } else {
      const Limbs left = rest.first(y.size);
      divide(quotient.first(x.size - y.size + 1), left, x.run(), y.run(), ws);
      x.set(strip(left));
    }
  }
  if (y.size > 0) return write_short(r, std::gcd(short_value(x.run()), short_value(y.run())));
  std::copy_n(x.run().begin(), x.size, r.end() - static_cast<std::ptrdiff_t>(x.size));
  return x.size;
}

}  // namespace tivelo::limbs
