#include "limbs/gcd.h"

#include <algorithm>
#include <utility>

#include "limbs/arith.h"
#include "limbs/divide.h"

namespace tivelo::limbs {

std::size_t gcd_workspace(std::size_t n) {
  return 4 * Workspace::bytes<Limb>(n + 1) + divide_workspace(n, n);
}

// Euclid's algorithm with whole quotients.
std::size_t gcd(Limbs r, ConstLimbs a, ConstLimbs b, Workspace ws) {
  const std::size_t room = std::max(a.size(), b.size());
  Limbs x = ws.take<Limb>(room);
  Limbs y = ws.take<Limb>(room);
  Limbs rest = ws.take<Limb>(room);
  const Limbs quotient = ws.take<Limb>(room + 1);
  if (compare(a, b) < 0) std::swap(a, b);
  std::copy(a.begin(), a.end(), x.begin());
  std::copy(b.begin(), b.end(), y.begin());
  std::size_t nx = a.size();
  std::size_t ny = b.size();
  while (ny > 0) {
    const Limbs left = rest.first(ny);
    divide(quotient.first(nx - ny + 1), left, x.first(nx), y.first(ny), ws);
    const ConstLimbs next = strip(left);
    std::swap(x, y);
    nx = ny;
    std::copy(next.begin(), next.end(), y.begin());
    ny = next.size();
  }
  std::copy_n(x.begin(), nx, r.end() - static_cast<std::ptrdiff_t>(nx));
  return nx;
}

}  // namespace tivelo::limbs
