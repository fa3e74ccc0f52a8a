// Sums and differences: sizes, refusals, signs and alignment. Limbs are added by the engine.
#include "bigint/addsub.h"

#include <algorithm>
#include <utility>

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/engine.h"
#include "limbs/linear.h"

namespace tivelo {

namespace {

// The limb of weight 10^(8 (place - 1)) when `a` counts from `shift` places below its own scale.
Limb limb_at(const num* a, int place, int shift) {
  const int own = place - shift;
  return own >= 1 && own <= a->len ? a->limbs[a->end - own] : 0;
}

// Does a + b, both aligned to `scale`, carry out of place n? Decided from the top, where the first
// pair that does not add up to 99999999 settles it.
bool sum_carries_out(const num* a, const num* b, int scale, int n) {
  for (int place = n; place > 0; --place) {
    const Limb t = limb_at(a, place, a->shift - scale) + limb_at(b, place, b->shift - scale);
    if (t != kBase - 1) return t >= kBase;
  }
  return false;
}

// Copies the limbs of src into the lowest n places of r, `up` places higher, zeros elsewhere.
void align(num* r, const num* src, int up, int n) {
  const Limbs all = places(r, n);
  const auto top = all.end() - up;
  std::copy_backward(in_use(src).begin(), in_use(src).end(), top);
  std::fill(top, all.end(), Limb{0});
  std::fill(all.begin(), top - src->len, Limb{0});
}

}  // namespace

int fcomp(const num* a, const num* b) {
  const ConstLimbs x = magnitude(a);
  const ConstLimbs y = magnitude(b);
  const int top_x = x.empty() ? std::min(a->len, 1) : static_cast<int>(x.size()) + a->shift;
  const int top_y = y.empty() ? std::min(b->len, 1) : static_cast<int>(y.size()) + b->shift;
  if (top_x != top_y) return top_x > top_y ? 1 : -1;
  const std::size_t common = std::min(x.size(), y.size());
  const int order = limbs::compare(x.first(common), y.first(common));
  if (order != 0) return order;
  if (!limbs::strip(x.subspan(common)).empty()) return 1;
  return limbs::strip(y.subspan(common)).empty() ? 0 : -1;
}

int sum(num* r, num* a, num* b) {
  if (a->sign != b->sign) return std::min(minus(r, a, b), 0);
  const num* lo = a->shift <= b->shift ? a : b;
  const num* hi = lo == a ? b : a;
  const int scale = lo->shift;
  const int d = hi->shift - scale;
  const int n = std::max(lo->len, hi->len + d);
  if (n > IS || (n == IS && sum_carries_out(a, b, scale, n))) {
    const long long digits =
        std::max(digits_of(lo), digits_of(hi) + static_cast<long long>(d) * kLimbDigits);
    report(Event::sum_too_long, {.needed = digits + (n == IS), .held = digit_places()});
    return kNoRoom;
  }
  Limb carry = 0;
  if (d == 0) {
    if (lo->len < hi->len) std::swap(lo, hi);
    carry = limbs::add(places(r, n), in_use(lo), in_use(hi));
  } else {
    align(r, lo, 0, n);
    const Limbs upper = places(r, n).first(static_cast<std::size_t>(n - d));
    carry = limbs::add(upper, upper, in_use(hi));
  }
  r->len = n;
  if (carry != 0) {
    ++r->len;
    r->limbs[r->end - r->len] = 1;
  }
  r->shift = scale;
  r->sign = a->sign;
  return 1;
}

int minus(num* r, num* a, num* b) {
  const int order = fcomp(a, b);
  if (order == 0) {
    clear(r);
    return 0;
  }
  const num* big = order > 0 ? a : b;
  const num* small = order > 0 ? b : a;
  const int scale = std::min(big->shift, small->shift);
  const int up = big->shift - scale;
  const int d = small->shift - scale;
  const int n = big->len + up;
  if (n > IS) {
    const long long digits = digits_of(big) + static_cast<long long>(up) * kLimbDigits;
    report(Event::sum_too_long, {.needed = digits, .held = digit_places()});
    return kNoRoom;
  }
  ConstLimbs subtrahend = magnitude(small);
  const std::int32_t sign = big->sign;
  ConstLimbs minuend = in_use(big);
  if (d > 0 || up > 0) {
    // The smaller operand, when it is the result too, makes way for the aligned larger one.
    if (r == small) {
      Workspace ws = engine;
      const Limbs copy = ws.take<Limb>(subtrahend.size());
      std::ranges::copy(subtrahend, copy.begin());
      subtrahend = copy;
    }
    if (r != big || up > 0) align(r, big, up, n);
    minuend = places(r, n);
  }
  const std::size_t upper = static_cast<std::size_t>(n - d);
  limbs::subtract(places(r, n).first(upper), minuend.first(upper), subtrahend);
  r->len = n;
  trim(r, n - 1);
  if (r->len == 1 && units(r) == 0) r->len = 0;
  r->sign = sign;
  r->end = IS;
  if (up > 0) r->shift = scale;
  return 1;
}

}  // namespace tivelo
