// Finding a step takes the leading 63 bits of both numbers, which are a little too small;
// lehmer_step() says why the step is right all the same. Applying it is one pass over both numbers.
#include "limbs/lehmer.h"

#include <bit>
#include <cassert>
#include <cstdlib>
#include <utility>

#include "base/wide.h"

namespace tivelo::limbs {
namespace {

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

// Both numbers at once, in place. A column is below 2 x 2^31 x 10^8 in size, kLift (kBase - 1) more
// makes it positive: it gets kLift more from the column behind it than it is owed, which costs the
// carry no time.
void apply_columns(const LehmerStep& m, Limbs x, Limbs y) {
  assert(x.size() == y.size());
  constexpr std::int64_t kLift = std::int64_t{1} << 33;
  const auto settle = [](std::int64_t column, std::uint64_t& carry) {
    const auto t = static_cast<std::uint64_t>(column + kLift * (kBase - 1)) + carry;
    carry = t / kBase;
    return static_cast<Limb>(t % kBase);
  };
  std::uint64_t carry_x = kLift;
  std::uint64_t carry_y = kLift;
  for (std::size_t i = x.size(); i-- > 0;) {
    const std::int64_t u = x[i];
    const std::int64_t v = y[i];
    x[i] = settle(m.a * u + m.b * v, carry_x);
    y[i] = settle(m.c * u + m.d * v, carry_y);
  }
  assert(carry_x == kLift && carry_y == kLift);
}

}  // namespace

// Euclid's algorithm on x and y. The true results differ from x and y by less than an entry, or 3/2
// times two entries, so while both stay at twice as much the true ones are positive, whether or not
// the quotients are those of the true numbers.
LehmerStep lehmer_step(std::int64_t x, std::int64_t y, int slack) {
  const std::int64_t least = 2 * slack * kEntryLimit;
  LehmerStep m;
  while (y >= least) {
    const std::int64_t q = x / y;
    const std::int64_t rest = x - q * y;
    if (q >= kEntryLimit || rest < least) break;
    const std::int64_t c = m.a - q * m.c;
    const std::int64_t d = m.b - q * m.d;
    if (std::max(std::abs(c), std::abs(d)) >= kEntryLimit) break;
    m = {m.c, m.d, c, d};
    x = std::exchange(y, rest);
  }
  return m;
}

LehmerStep lehmer_step(ConstLimbs x, ConstLimbs y) {
  if (x.size() - y.size() > 1) return {};
  const auto [high, low] = leading(x, y);
  return lehmer_step(high, low);
}

void apply(const LehmerStep& step, Resizable& x, Resizable& y) {
  std::fill_n(y.room.last(x.size).begin(), x.size - y.size, 0);
  y.size = x.size;
  apply_columns(step, x.run(), y.run());
  x.trim();
  y.trim();
}

}  // namespace tivelo::limbs
