// What is done to a record as a whole: clearing, copying, giving it limbs, reading it as an
// integer.
#include "bigint/num.h"

#include <algorithm>
#include <cstdlib>

#include "base/precision.h"
#include "base/status.h"
#include "limbs/linear.h"

namespace tivelo {

// An int may be read through the unsigned type of its size, so this is a well-defined limb.
num::num() : limbs(reinterpret_cast<Limb*>(&rem)) {}

void attach(num* a, Limb* limbs) {
  a->limbs = limbs;
  a->end = IS;
  a->sign = 1;
  a->len = a->ext = a->rem = a->shift = a->dec = a->res = a->imag = a->used = 0;
  a->rdiv = a->dden = 1;
}

ConstLimbs magnitude(const num* a) { return limbs::strip(in_use(a)); }

void clear_limbs(num* a) { std::ranges::fill(in_use(a), Limb{0}); }

int copy_long(num* dst, const num* src) {
  std::ranges::copy(in_use(src), places(dst, src->len).begin());
  return copy_fields(dst, src);
}

int iton(num* a, int v) {
  if (v < 0) return kNegative;
  const Limb value = static_cast<Limb>(v);
  a->len = value < kBase ? 1 : 2;
  units(a) = value % kBase;
  if (a->len == 2) a->limbs[a->end - 2] = value / kBase;
  return 0;
}

int ntoi(const num* a, int* out) {
  if (a->len > 2 || (a->len == 2 && a->limbs[a->end - 2] >= 21)) return kMisfit;
  Limb value = a->len >= 1 ? units(a) : 0;
  if (a->len == 2) value += a->limbs[a->end - 2] * kBase;
  *out = a->sign * static_cast<int>(value);
  return 0;
}

int ntoll(const num* a, long long* out) {
  if (a->len > 3 || (a->len == 3 && a->limbs[a->end - 3] >= 923)) return kMisfit;
  unsigned long long value = 0;
  for (const Limb limb : in_use(a)) value = value * kBase + limb;
  if (value > static_cast<unsigned long long>(INT64_MAX)) return kMisfit;
  *out = a->sign * static_cast<long long>(value);
  return 0;
}

int small_magnitude(const num* a, int otherwise) {
  int value = otherwise;
  if (ntoi(a, &value) != 0) return otherwise;
  return std::abs(value);
}

void set_limbs(num* a, ConstLimbs limbs) {
  a->len = static_cast<int>(limbs.size());
  std::ranges::copy(limbs, in_use(a).begin());
  if (a->len == 0) units(a) = 0;
}

void pad(num* a, int n) {
  while (a->len < n) {
    ++a->len;
    in_use(a)[0] = 0;
  }
}

long long digits_of(const num* a) {
  const ConstLimbs digits = magnitude(a);
  if (digits.empty()) return 1;
  int top = 1;
  for (Limb limb = digits[0]; limb >= 10; limb /= 10) ++top;
  return static_cast<long long>(digits.size() - 1) * kLimbDigits + top;
}

long long digits_held() { return static_cast<long long>(IS - 2) * kLimbDigits; }
long long digit_places() { return static_cast<long long>(IS) * kLimbDigits; }

void trim(num* a, int most) {
  for (; most > 0 && a->len > 0 && a->limbs[a->end - a->len] == 0; --most) --a->len;
}

}  // namespace tivelo
