#include "limbs/multiply.h"

#include <algorithm>
#include <cassert>

namespace tivelo::limbs {

std::size_t multiply_workspace(std::size_t, std::size_t) { return 0; }

void multiply(Limbs r, ConstLimbs a, ConstLimbs b, Workspace) {
  assert(r.size() == a.size() + b.size());
  std::fill(r.begin(), r.end(), 0);
  for (std::size_t i = a.size(); i-- > 0;) {
    std::uint64_t carry = 0;
    for (std::size_t j = b.size(); j-- > 0;) {
      const std::uint64_t t = static_cast<std::uint64_t>(a[i]) * b[j] + r[i + j + 1] + carry;
      carry = t / kBase;
      r[i + j + 1] = static_cast<Limb>(t - carry * kBase);
    }
    r[i] = static_cast<Limb>(carry);
  }
}

void square(Limbs r, ConstLimbs a, Workspace ws) { multiply(r, a, a, ws); }

}  // namespace tivelo::limbs
