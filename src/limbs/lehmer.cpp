// The quotients of a step are found in two halves, each on 63 leading bits and with entries of 31:
// on the leading 128 bits of both numbers, then on what the first half makes of these. That is 2^96
// or more and off by less than 2^31; cut to 63 bits by less than 3/2, which is why the second half
// stops earlier.
#include "limbs/lehmer.h"

#include <bit>
#include <cstdlib>
#include <utility>

namespace tivelo::limbs {
namespace {

// Twice the square of it is below 2^63 - 2^55.
constexpr std::int64_t kEntryLimit = (std::int64_t{1} << 31) - (std::int64_t{1} << 23);

Word magnitude(std::int64_t x) { return static_cast<Word>(x < 0 ? -x : x); }

// Euclid's algorithm on x >= y, leading bits of two long numbers, of at most 63 bits each. They are
// at most 1 below the true ones in their unit if `slack` is 1, less than 3/2 off if it is 2. The
// true results differ from x and y by less than an entry, or 3/2 times two entries, so while both
// stay at twice as much the true ones are positive, whether or not the quotients are those of the
// true numbers.
LehmerStep half_step(std::int64_t x, std::int64_t y, int slack) {
  const std::int64_t least = 2 * slack * kEntryLimit;
  std::int64_t a = 1, b = 0, c = 0, d = 1;
  while (y >= least) {
    const std::int64_t q = x / y;
    const std::int64_t rest = x - q * y;
    if (q >= kEntryLimit || rest < least) break;
    const std::int64_t next_c = a - q * c;
    const std::int64_t next_d = b - q * d;
    if (std::max(std::abs(next_c), std::abs(next_d)) >= kEntryLimit) break;
    a = std::exchange(c, next_c);
    b = std::exchange(d, next_d);
    x = std::exchange(y, rest);
  }
  return {magnitude(a), magnitude(b), magnitude(c), magnitude(d), b > 0};
}

}  // namespace

// Signs alternate like a chessboard's, so that nothing cancels where two halves are joined.
LehmerStep lehmer_step(Wide x, Wide y, bool once) {
  const LehmerStep f =
      half_step(static_cast<std::int64_t>(x >> 65), static_cast<std::int64_t>(y >> 65), 1);
  if (f.trivial() || once) return f;
  // Modulo 2^128, which holds the results.
  const Wide u = f.odd ? f.b * y - f.a * x : f.a * x - f.b * y;
  const Wide v = f.odd ? f.c * x - f.d * y : f.d * y - f.c * x;
  const int shift = 65 - std::countl_zero(static_cast<Word>(u >> kWordBits));
  if (u < v || shift < 1) return f;
  const LehmerStep m =
      half_step(static_cast<std::int64_t>(u >> shift), static_cast<std::int64_t>(v >> shift), 2);
  return {m.a * f.a + m.b * f.c, m.a * f.b + m.b * f.d, m.c * f.a + m.d * f.c,
          m.c * f.b + m.d * f.d, f.odd != m.odd};
}

Wide leading(const Words& x, std::size_t n, int shift) {
  // Word i and what moves in from the one behind it, zero outside of x.
  const auto shifted = [&x, shift](std::size_t i) {
    const Word word = i < x.size ? x.w[i] : 0;
    if (shift == 0) return word;
    const Word next = i - 1 < x.size ? x.w[i - 1] : 0;
    return word << shift | next >> (kWordBits - shift);
  };
  return (Wide{shifted(n - 1)} << kWordBits) + shifted(n - 2);
}

}  // namespace tivelo::limbs
