#include "limbs/arith.h"

#include <algorithm>
#include <cassert>

namespace tivelo::limbs {

ConstLimbs strip(ConstLimbs a) {
  std::size_t zeros = 0;
  while (zeros < a.size() && a[zeros] == 0) ++zeros;
  return a.subspan(zeros);
}

int compare(ConstLimbs a, ConstLimbs b) {
  if (a.size() != b.size()) return a.size() > b.size() ? 1 : -1;
  const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin());
  if (x == a.end()) return 0;
  return *x > *y ? 1 : -1;
}

Limb add(Limbs r, ConstLimbs a, ConstLimbs b) {
  assert(r.size() == a.size() && a.size() >= b.size());
  Limb carry = 0;
  std::size_t i = a.size();
  for (std::size_t j = b.size(); j-- > 0;) {
    --i;
    const Limb t = a[i] + b[j] + carry;
    carry = t >= kBase ? 1 : 0;
    r[i] = carry ? t - kBase : t;
  }
  while (carry && i > 0) {
    --i;
    const Limb t = a[i] + 1;
    carry = t == kBase ? 1 : 0;
    r[i] = carry ? 0 : t;
  }
  if (r.data() != a.data()) std::copy_n(a.data(), i, r.data());
  return carry;
}

Limb subtract(Limbs r, ConstLimbs a, ConstLimbs b) {
  assert(r.size() == a.size() && a.size() >= b.size());
  Limb borrow = 0;
  std::size_t i = a.size();
  for (std::size_t j = b.size(); j-- > 0;) {
    --i;
    const Limb t = a[i] + kBase - b[j] - borrow;
    borrow = t < kBase ? 1 : 0;
    r[i] = borrow ? t : t - kBase;
  }
  while (borrow && i > 0) {
    --i;
    borrow = a[i] == 0 ? 1 : 0;
    r[i] = borrow ? kBase - 1 : a[i] - 1;
  }
  if (r.data() != a.data()) std::copy_n(a.data(), i, r.data());
  return borrow;
}

Limb multiply_limb(Limbs r, ConstLimbs a, Limb k) {
  assert(r.size() == a.size() && k <= kBase);
  std::uint64_t carry = 0;
  for (std::size_t i = a.size(); i-- > 0;) {
    const std::uint64_t t = static_cast<std::uint64_t>(a[i]) * k + carry;
    carry = t / kBase;
    r[i] = static_cast<Limb>(t - carry * kBase);
  }
  return static_cast<Limb>(carry);
}

std::uint32_t divide_limb(Limbs q, ConstLimbs a, std::uint32_t k) {
  assert(q.size() == a.size() && k >= 1);
  std::uint64_t rest = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const std::uint64_t t = rest * kBase + a[i];
    q[i] = static_cast<Limb>(t / k);
    rest = t % k;
  }
  return static_cast<std::uint32_t>(rest);
}

std::uint32_t remainder_limb(ConstLimbs a, std::uint32_t k) {
  std::uint64_t rest = 0;
  for (const Limb limb : a) rest = (rest * kBase + limb) % k;
  return static_cast<std::uint32_t>(rest);
}

}  // namespace tivelo::limbs
