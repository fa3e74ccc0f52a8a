// Half gcds while the numbers are long, then Lehmer's method. A whole division is only needed where
// one number is much longer than the other.
#include "limbs/gcd.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/half_gcd.h"
#include "limbs/lehmer.h"
#include "limbs/linear.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

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
  return 2 * Workspace::bytes<Limb>(n) +
         (n < kHalfGcd ? dividing : std::max(dividing, half_gcd_workspace(n)));
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
    if (y.size == 0 || x.size <= 2) break;
    if (x.size >= kHalfGcd && half_gcd(x, y, ws)) continue;
    const LehmerStep step = lehmer_step(x.run(), y.run());
    if (step.trivial()) {
      divide_once(x, y, ws);
    } else {
      apply(step, x, y);
    }
  }
  if (y.size > 0) return write_short(r, std::gcd(short_value(x.run()), short_value(y.run())));
  std::copy_n(x.run().begin(), x.size, r.end() - static_cast<std::ptrdiff_t>(x.size));
  return x.size;
}

}  // namespace tivelo::limbs
