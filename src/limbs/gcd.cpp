// Half gcds while the numbers are long, then words. A whole division is only needed where one
// number is much longer than the other.
#include "limbs/gcd.h"

#include <algorithm>
#include <utility>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/half_gcd.h"
#include "limbs/linear.h"
#include "limbs/thresholds.h"
#include "limbs/word_gcd.h"

namespace tivelo::limbs {
namespace {

// x = x mod y.
void divide_once(Resizable& x, const Resizable& y, Workspace ws) {
  const Limbs quotient = ws.take<Limb>(x.size - y.size + 1);
  const Limbs rest = ws.take<Limb>(y.size);
  divide(quotient, rest, x.run(), y.run(), ws);
  x.set(strip(rest));
}

}  // namespace

std::size_t gcd_workspace(std::size_t n) {
  const std::size_t dividing = 2 * Workspace::bytes<Limb>(n + 1) + divide_workspace(n);
  const std::size_t most = std::max(dividing, word_gcd_workspace(std::min(n, kHalfGcd)));
  return 2 * Workspace::bytes<Limb>(n) +
         (n < kHalfGcd ? most : std::max(most, half_gcd_workspace(n)));
}

std::size_t gcd(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t room = std::max(a.size(), b.size());
  Resizable x{ws.take<Limb>(room)};
  Resizable y{ws.take<Limb>(room)};
  x.set(a);
  y.set(b);
  for (;;) {
    poll();
    if (compare(x.run(), y.run()) < 0) std::swap(x, y);
    if (y.size == 0) break;
    if (x.size < kHalfGcd && x.size <= y.size + 1) return word_gcd(r, x.run(), y.run(), ws);
    if (x.size < kHalfGcd || !half_gcd(x, y, ws)) divide_once(x, y, ws);
  }
  std::copy_n(x.run().begin(), x.size, r.end() - static_cast<std::ptrdiff_t>(x.size));
  return x.size;
}

}  // namespace tivelo::limbs
