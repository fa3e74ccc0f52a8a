// Selfridge's parameters: D is the first of 5, -7, 9, -11, ... with the Jacobi symbol (D/n) = -1,
// P = 1 and Q = (1 - D) / 4. With n + 1 = d 2^s, d odd, n passes when U_d = 0 or V_(d 2^r) = 0 for
// an r < s.
//
// The sequences are not formed themselves but V' of P' = 1/Q - 2 and Q' = 1, whose roots are the
// quotients of theirs: V_2k = Q^k V'_k. So each bit costs a square and a product, and no power of
// Q. For d = 2j + 1 and m = j + 1
//   D U_d = V_2m - Q V_2j = Q^m (V'_m - V'_j)  and  V_d = V_2m + Q V_2j = Q^m (V'_m + V'_j),
// and V_(2d 2^r) is a power of Q times V'_(d 2^r).
#include "limbs/probable_prime.h"

#include <algorithm>
#include <cassert>
#include <numeric>
#include <utility>

#include "base/interrupt.h"
#include "limbs/binary.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/modular.h"

namespace tivelo::limbs {
namespace {

constexpr Limb kOne[] = {1};

void write_small(Limbs r, Limb value) {
  std::ranges::fill(r, 0);
  r.back() = value;
}

bool is_small(ConstLimbs a, Limb value) {
  return a.back() == value && strip(a.first(a.size() - 1)).empty();
}

bool is_zero(ConstLimbs a) { return strip(a).empty(); }

// The Jacobi symbol (a/n) of machine integers, n odd.
int jacobi(std::uint32_t a, std::uint32_t n) {
  int symbol = 1;
  for (a %= n; a != 0; a %= n) {
    for (; a % 2 == 0; a /= 2)
      if (n % 8 == 3 || n % 8 == 5) symbol = -symbol;
    if (a % 4 == 3 && n % 4 == 3) symbol = -symbol;
    std::swap(a, n);
  }
  return n == 1 ? symbol : 0;
}

// x with a x = 1 mod k for a prime to k > 1.
std::uint32_t inverse(std::uint32_t a, std::uint32_t k) {
  std::int64_t r0 = k, r1 = a % k, x0 = 0, x1 = 1;
  while (r1 > 1) {
    const std::int64_t q = r0 / r1;
    r0 = std::exchange(r1, r0 - q * r1);
    x0 = std::exchange(x1, x0 - q * x1);
  }
  return static_cast<std::uint32_t>(x1 < 0 ? x1 + k : x1);
}

// Newton's iteration for the integer square root, from a power of the base above it.
bool is_square(ConstLimbs n, Workspace ws) {
  const std::size_t h = (n.size() + 1) / 2 + 1;
  const Limbs x = ws.take<Limb>(h);
  const Limbs next = ws.take<Limb>(n.size());
  const Limbs room = ws.take<Limb>(h);
  write_small(x, 0);
  x[0] = 1;
  for (;;) {
    poll();
    const ConstLimbs by = strip(x);
    const Limbs quotient = next.first(n.size() - by.size() + 1);
    const Limbs rest = room.first(by.size());
    divide(quotient, rest, n, by, ws);
    const ConstLimbs q = strip(quotient);
    const int order = compare(q, by);
    if (order >= 0) return order == 0 && is_zero(rest);
    add(x, x, q);
    divide_limb(x, x, 2);
  }
}

// From this many symbols of 1 on, n is probably a square, and all of them are 1.
constexpr std::uint32_t kSymbols = 40;

// Selfridge's |D|; 0 when n is composite.
std::uint32_t find_parameter(ConstLimbs n, Workspace ws) {
  std::uint32_t d = 5;
  for (std::uint32_t tried = 1;; ++tried, d += 2) {
    if (tried == kSymbols && is_square(n, ws)) return 0;
    // D = 1 mod 4, with its sign, so that (D/n) = (n/|D|).
    const int symbol = jacobi(remainder_limb(n, d), d);
    if (symbol < 0) return d;
    if (symbol == 0) return 0;
    poll();
  }
}

// r = 1/Q - 2 mod n for the Q of |D| = d; false where Q and n have a common divisor.
bool make_parameter(Limbs r, std::uint32_t d, Modulus& modulus, Workspace ws) {
  const ConstLimbs n = modulus.value();
  const bool negative = d % 4 == 1;  // D > 0, Q < 0
  const std::uint32_t q = negative ? (d - 1) / 4 : (d + 1) / 4;
  const std::uint32_t rest = q == 1 ? 0 : remainder_limb(n, q);
  if (q > 1 && std::gcd(rest, q) != 1) return false;
  write_small(r, 1);
  if (q > 1) {
    // (n t + 1) / q for the t < q that makes it an integer.
    const Limbs multiple = ws.take<Limb>(n.size() + 1);
    multiple[0] = multiply_limb(multiple.subspan(1), n, q - inverse(rest, q));
    add(multiple, multiple, kOne);
    divide_limb(multiple, multiple, q);
    std::ranges::copy(multiple.subspan(1), r.begin());
  }
  if (negative) subtract(r, n, r);
  const Limbs two = ws.take<Limb>(n.size());
  write_small(two, 2);
  modulus.subtract(r, r, two);
  return true;
}

// V'_k and V'_(k+1), with what their steps take.
struct Chain {
  Limbs now, next, p, two;

  // V'_(2k+1) in place of one of them, and V'_2k of the k of one of them.
  void join(Limbs r, Modulus& modulus) const {
    modulus.multiply(r, now, next);
    modulus.subtract(r, r, p);
  }
  void twice(Limbs r, Modulus& modulus) const {
    modulus.square(r, r);
    modulus.subtract(r, r, two);
  }
  // From k = 0 to the k whose bits are those from `low` on.
  void climb(const Bits& bits, std::size_t low, Modulus& modulus) const {
    progress = {0, static_cast<long long>(bits.size())};
    std::ranges::copy(two, now.begin());
    std::ranges::copy(p, next.begin());
    for (std::size_t i = bits.size(); i-- > low; ++progress.done) {
      poll();
      join(bits[i] ? now : next, modulus);
      twice(bits[i] ? next : now, modulus);
    }
  }
};

}  // namespace

std::size_t probable_prime_workspace(std::size_t n) {
  return Workspace::bytes<std::uint32_t>(bit_words(n + 1)) + 7 * Workspace::bytes<Limb>(n + 1) +
         std::max({bits_workspace(n + 1), modulus_workspace(n), divide_workspace(n)});
}

bool passes_strong_test(ConstLimbs n, Workspace ws) {
  assert(n.size() >= 2 && n[0] != 0 && n.back() % 2 == 1);
  const Limbs minus_one = ws.take<Limb>(n.size());
  const Limbs x = ws.take<Limb>(n.size());
  std::ranges::copy(n, minus_one.begin());
  --minus_one.back();
  const Bits bits = bits_of(ws.take<std::uint32_t>(bit_words(n.size())), minus_one, ws);
  Modulus modulus = make_modulus(n, ws);
  const std::size_t s = bits.trailing_zeros();
  progress = {0, static_cast<long long>(bits.size())};
  write_small(x, 1);
  for (std::size_t i = bits.size(); i-- > s; ++progress.done) {
    poll();
    modulus.square(x, x);
    if (bits[i]) modulus.add(x, x, x);
  }
  if (is_small(x, 1)) return true;
  for (std::size_t r = 0; r < s; ++r) {
    if (std::ranges::equal(x, minus_one)) return true;
    poll();
    modulus.square(x, x);
  }
  return false;
}

bool passes_strong_lucas_test(ConstLimbs n, Workspace ws) {
  assert(n.size() >= 2 && n[0] != 0 && n.back() % 2 == 1);
  const std::uint32_t d = find_parameter(n, ws);
  if (d == 0) return false;
  const Limbs next = ws.take<Limb>(n.size() + 1);
  next[0] = 0;
  std::ranges::copy(n, next.begin() + 1);
  add(next, next, kOne);
  const ConstLimbs order = strip(next);
  const Bits bits = bits_of(ws.take<std::uint32_t>(bit_words(order.size())), order, ws);
  Modulus modulus = make_modulus(n, ws);
  Chain v{ws.take<Limb>(n.size()), ws.take<Limb>(n.size()), ws.take<Limb>(n.size()),
          ws.take<Limb>(n.size())};
  write_small(v.two, 2);
  if (!make_parameter(v.p, d, modulus, ws)) return false;
  const std::size_t s = bits.trailing_zeros();
  v.climb(bits, s + 1, modulus);
  if (std::ranges::equal(v.now, v.next)) return true;
  const Limbs sum = next.first(n.size());
  modulus.add(sum, v.now, v.next);
  if (is_zero(sum)) return true;
  v.join(v.now, modulus);
  for (std::size_t r = 1; r < s; ++r) {
    if (is_zero(v.now)) return true;
    poll();
    v.twice(v.now, modulus);
  }
  return false;
}

}  // namespace tivelo::limbs
