// Many groups at once are one quotient: of the remainder with that many zero limbs behind it.
#include "bigint/expansion.h"

#include <algorithm>

#include "bigint/engine.h"
#include "limbs/digits.h"
#include "limbs/divide.h"
#include "limbs/linear.h"

namespace tivelo {

char* expand(char* out, num* a, const num* m, std::size_t groups) {
  Workspace ws = engine;
  const ConstLimbs rest = magnitude(a);
  const Limbs dividend = ws.take<Limb>(rest.size() + groups);
  std::ranges::copy(rest, dividend.begin());
  std::ranges::fill(dividend.last(groups), Limb{0});
  if (const int k = small_magnitude(m, 0); k != 0) {
    iton(a,
         static_cast<int>(limbs::divide_limb(dividend, dividend, static_cast<std::uint32_t>(k))));
    return limbs::write(out, dividend.last(groups));
  }
  const ConstLimbs divisor = magnitude(m);
  if (dividend.size() < divisor.size()) {
    set_limbs(a, dividend);
    std::ranges::fill(dividend, Limb{0});
    return limbs::write(out, dividend.last(groups));
  }
  const Limbs quotient = ws.take<Limb>(dividend.size() - divisor.size() + 1 + groups);
  const Limbs remainder = ws.take<Limb>(divisor.size());
  std::ranges::fill(quotient.first(groups), Limb{0});
  limbs::divide(quotient.subspan(groups), remainder, dividend, divisor, ws);
  set_limbs(a, remainder);
  return limbs::write(out, quotient.last(groups));
}

std::size_t expansion_workspace(std::size_t n) {
  return 4 * Workspace::bytes<Limb>(2 * n) + limbs::divide_workspace(2 * n);
}

}  // namespace tivelo
