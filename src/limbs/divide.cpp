#include "limbs/divide.h"

#include <algorithm>
#include <cassert>

#include "limbs/arith.h"

namespace tivelo::limbs {

std::size_t divide_workspace(std::size_t na, std::size_t nb) {
  return Workspace::bytes<Limb>(na + 1) + Workspace::bytes<Limb>(nb);
}

// Knuth, The Art of Computer Programming, volume 2, section 4.3.1, algorithm D.
void divide(Limbs q, Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  assert(!b.empty() && b[0] != 0 && a.size() >= b.size());
  assert(q.size() == a.size() - b.size() + 1 && r.size() == b.size());
  if (b.size() == 1) {
    r[0] = divide_limb(q, a, b[0]);
    return;
  }
  const std::size_t n = b.size();
  const Limb scale = kBase / (b[0] + 1);
  const Limbs u = ws.take<Limb>(a.size() + 1);
  const Limbs v = ws.take<Limb>(n);
  u[0] = multiply_limb(u.subspan(1), a, scale);
  multiply_limb(v, b, scale);
  for (std::size_t j = 0; j < q.size(); ++j) {
    const std::uint64_t top = static_cast<std::uint64_t>(u[j]) * kBase + u[j + 1];
    std::uint64_t guess = std::min<std::uint64_t>(top / v[0], kBase - 1);
    std::uint64_t rest = top - guess * v[0];
    while (rest < kBase && guess * v[1] > rest * kBase + u[j + 2]) {
      --guess;
      rest += v[0];
    }
    std::uint64_t carry = 0;
    std::int64_t borrow = 0;
    for (std::size_t i = n; i-- > 0;) {
      const std::uint64_t p = guess * v[i] + carry;
      carry = p / kBase;
      std::int64_t t = static_cast<std::int64_t>(u[j + 1 + i]) -
                       static_cast<std::int64_t>(p - carry * kBase) - borrow;
      borrow = t < 0 ? 1 : 0;
      if (t < 0) t += kBase;
      u[j + 1 + i] = static_cast<Limb>(t);
    }
    const bool too_big =
        static_cast<std::uint64_t>(u[j]) < carry + static_cast<std::uint64_t>(borrow);
    u[j] = 0;
    if (too_big) {
      --guess;
      add(u.subspan(j + 1, n), u.subspan(j + 1, n), v);
    }
    q[j] = static_cast<Limb>(guess);
  }
  divide_limb(r, u.last(n), scale);
}

}  // namespace tivelo::limbs
