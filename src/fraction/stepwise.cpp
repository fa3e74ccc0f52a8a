// A step is a product of fractions. Where it is seen that the next ones will be plain products of
// limb runs, they are made at once, many times faster.
#include "fraction/stepwise.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/pool.h"
#include "bigint/power.h"
#include "fraction/arith.h"

namespace tivelo {

namespace {

constexpr std::int64_t kGeneralFactor = 8;  // of the work of a step by nprod to a plain one

std::int64_t limbs_left = 0;  // of the work granted to the line

bool same_magnitude(const num* a, const num* b) {
  return a->dec == b->dec && std::ranges::equal(in_use(a), in_use(b));
}

// One product as the evaluator forms it. False when it changes nothing (zero, one, or a refusal):
// all later ones would do the same.
bool general_step(numf* result, numf* base) {
  const Lent c({result->c, base->c});
  const Lent m({result->m, base->m});
  rncopy(c, result->c);
  rncopy(m, result->m);
  nprod(result, result, base);
  return !same_magnitude(c, result->c) || !same_magnitude(m, result->m);
}

// The base as the factor of plain steps: a decimal, or a quotient of two numbers of a limb.
std::optional<StepFactor> plain_factor(const numf& base) {
  const ConstLimbs c = in_use(base.c);
  if (c.empty() || c[0] == 0 || is_one(base.c)) return std::nullopt;
  if (base.c->dec == FF) return StepFactor{c, 0};
  if (c.size() > 1 || base.m->len > 1) return std::nullopt;
  return StepFactor{c, units(base.m)};
}

}  // namespace

void grant_steps() { limbs_left = std::int64_t{1'000'000} * IS; }

bool stepwise_power(numf* result, numf* base, long long n) {
  const std::optional<StepFactor> factor = plain_factor(*base);
  bool cut = false;
  progress = {0, n};
  while (n > 0) {
    progress.done = progress.all - n;
    limbs_left -= (result->c->len + kStepLimbs) * kGeneralFactor;
    if (limbs_left < 0) {
      report(Event::power_work);
      mclear(result);
      return false;
    }
    poll();
    if (!general_step(result, base)) break;
    --n;
    const bool plain = result->c->dec == FF && result->c->len > 0 && in_use(result->c)[0] != 0;
    if (plain && factor) n -= multiply_steps(result->c, *factor, n, &limbs_left, &cut);
  }
  if (cut) report(factor->denominator == 0 ? Event::cut_decimal_product : Event::cut_product);
  return true;
}

}  // namespace tivelo
