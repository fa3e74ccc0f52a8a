// Powers: by the engine's squaring chain where the power is one integer, by one pass after the
// other where every product cuts.
#include "bigint/power.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/engine.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"
#include "limbs/product.h"

namespace tivelo {

namespace {

// log10 of a number without leading zero limbs, from its three leading ones.
long double log10_of(ConstLimbs a) {
  long double top = 0;
  const std::size_t leading = std::min<std::size_t>(a.size(), 3);
  for (std::size_t i = 0; i < leading; ++i) top = top * kBase + a[i];
  return std::log10(top) + static_cast<long double>(a.size() - leading) * kLimbDigits;
}

// The first exponent whose power of `base` (at least 2) has `limbs` limbs or more, from logarithms:
// exact unless base^*result lies within a millionth part of a limb's bound, and then *result may be
// one too small.
long long exponent_reaching(ConstLimbs base, int limbs) {
  const long double exponent = static_cast<long double>(limbs - 1) * kLimbDigits / log10_of(base);
  return static_cast<long long>(std::ceil(exponent - 1e-6L));
}

// `power` times the factor, cut to 16 places, at the start of `room`.
ConstLimbs cut_product(Limbs room, ConstLimbs power, const StepFactor& f, bool* cut,
                       Workspace& ws) {
  const Limbs product = room.first(power.size() + f.numerator.size());
  if (f.denominator == 0) {
    limbs::multiply(product, power, f.numerator, ws);
    *cut |= !limbs::strip(product.last(static_cast<std::size_t>(FF))).empty();
    return limbs::strip(product.first(product.size() - static_cast<std::size_t>(FF)));
  }
  const Limbs quotient = product.subspan(1);
  *cut |= limbs::divide_limb(quotient, power, f.denominator) != 0;
  product[0] = limbs::multiply_limb(quotient, quotient, f.numerator[0]);
  return limbs::strip(product);
}

}  // namespace

void integer_power(num* result, const num* base, long long n) {
  const ConstLimbs b = magnitude(base);
  const int refused_from = IS - base->len;  // length of a power that is not multiplied any more
  if (refused_from <= 1) {
    report(Event::power_base_too_long, {.needed = digits_of(base), .held = digits_held()});
    return;
  }
  Workspace ws = engine;
  const long long last = std::max(exponent_reaching(b, refused_from), 1LL);
  const Limbs room = ws.take<Limb>(static_cast<std::size_t>(IS) + b.size() + 2);
  const auto exponent = static_cast<std::uint64_t>(std::min(n, last));
  ConstLimbs power = room.last(limbs::power(room, b, exponent, ws));
  long long reached = std::min(n, last);
  if (n > last) {
    if (power.size() < static_cast<std::size_t>(refused_from)) {
      const Limbs next = ws.take<Limb>(power.size() + b.size());
      limbs::multiply(next, power, b, ws);
      power = limbs::strip(next);
      ++reached;
    }
  }
  if (reached < n) {
    const auto digits = static_cast<long long>(static_cast<long double>(n) * log10_of(b)) + 1;
    report(Event::power_stopped, {.needed = digits, .held = digits_held()});
  }
  set_limbs(result, power);
}

long long multiply_steps(num* c, const StepFactor& factor, long long n, std::int64_t* limbs_left,
                         bool* cut) {
  Workspace ws = engine;
  Limbs from = ws.take<Limb>(static_cast<std::size_t>(IS));
  Limbs to = ws.take<Limb>(static_cast<std::size_t>(IS));
  ConstLimbs power = in_use(c);
  long long done = 0;
  while (done < n && power.size() + factor.numerator.size() < static_cast<std::size_t>(IS)) {
    poll();
    *limbs_left -= static_cast<std::int64_t>(power.size()) + kStepLimbs;
    if (*limbs_left < 0) break;
    bool lost = false;
    const ConstLimbs next = cut_product(to, power, factor, &lost, ws);
    if (next.empty() || std::ranges::equal(next, power)) break;
    *cut |= lost;
    power = next;
    std::swap(from, to);
    ++done;
  }
  if (done > 0) set_limbs(c, power);
  return done;
}

std::size_t power_workspace(std::size_t n) {
  return 8 * Workspace::bytes<Limb>(2 * n) +
         std::max(limbs::power_workspace(2 * n), limbs::multiply_workspace(2 * n, 2 * n));
}

}  // namespace tivelo
