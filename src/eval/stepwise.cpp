#include "eval/stepwise.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/pool.h"
#include "fraction/arith.h"
#include "limbs/arith.h"
#include "limbs/multiply.h"

namespace tivelo {

namespace {

// Work is counted in limbs written, one to four nanoseconds each. What a step costs besides:
constexpr std::int64_t kPlainStep = 16;     // limbs
constexpr std::int64_t kGeneralFactor = 8;  // of a step by nprod to a plain one

std::int64_t limbs_left = 0;

// Takes the work of a step on `limbs` limbs from what the line has left; false when that is not
// enough.
bool afford(std::size_t limbs, std::int64_t factor) {
  limbs_left -= (static_cast<std::int64_t>(limbs) + kPlainStep) * factor;
  return limbs_left >= 0;
}

bool same_magnitude(const num* a, const num* b) {
  return a->dec == b->dec && std::ranges::equal(in_use(a), in_use(b));
}

// One product as the evaluator forms it. False when it changes nothing (zero, one, or a refusal):
// all later ones would do the same.
bool general_step(numf* result, numf* base) {
  rncopy(Ze, result->c);
  rncopy(Zx, result->m);
  err(nprod(result, result, base));
  return !same_magnitude(Ze, result->c) || !same_magnitude(Zx, result->m);
}

// The factor of plain steps: a decimal, or a quotient of two numbers of a limb.
struct Factor {
  ConstLimbs numerator;  // without leading zero limbs, not 1
  Limb denominator;      // 0: a decimal, whose products lose FF limbs
};

std::optional<Factor> plain_factor(const numf& base) {
  const ConstLimbs c = in_use(base.c);
  if (c.empty() || c[0] == 0 || is_one(base.c)) return std::nullopt;
  if (base.c->dec == FF) return Factor{c, 0};
  if (c.size() > 1 || base.m->len > 1) return std::nullopt;
  return Factor{c, units(base.m)};
}

// `power` times the factor, cut like nprod cuts it, at the start of `room`.
ConstLimbs plain_product(Limbs room, ConstLimbs power, const Factor& f, Workspace& ws) {
  const Limbs product = room.first(power.size() + f.numerator.size());
  if (f.denominator == 0) {
    limbs::multiply(product, power, f.numerator, ws);
    return limbs::strip(product.first(product.size() - static_cast<std::size_t>(FF)));
  }
  const Limbs quotient = product.subspan(1);
  limbs::divide_limb(quotient, power, f.denominator);
  product[0] = limbs::multiply_limb(quotient, quotient, f.numerator[0]);
  return limbs::strip(product);
}

// Multiplies the decimal *c, which has no leading zero limbs, up to n times by the factor, without
// records and their fields. Returns the products made: it leaves off before one that is refused,
// comes to zero or changes nothing, and where the work granted runs out.
long long plain_steps(num* c, const Factor& f, long long n) {
  Workspace ws = engine;
  Limbs from = ws.take<Limb>(static_cast<std::size_t>(IS));
  Limbs to = ws.take<Limb>(static_cast<std::size_t>(IS));
  ConstLimbs power = in_use(c);
  long long done = 0;
  while (done < n && power.size() + f.numerator.size() < static_cast<std::size_t>(IS) &&
         afford(power.size(), 1)) {
    const ConstLimbs next = plain_product(to, power, f, ws);
    if (next.empty() || std::ranges::equal(next, power)) break;
    power = next;
    std::swap(from, to);
    ++done;
  }
  if (done > 0) {
    c->len = static_cast<int>(power.size());
    std::ranges::copy(power, in_use(c).begin());
  }
  return done;
}

}  // namespace

void grant_steps() { limbs_left = std::int64_t{1'000'000} * IS; }

bool stepwise_power(numf* result, numf* base, long long n) {
  const std::optional<Factor> factor = plain_factor(*base);
  while (n > 0) {
    const std::size_t limbs = static_cast<std::size_t>(result->c->len);
    if (!afford(limbs, kGeneralFactor)) {
      explain("the power takes more products than a line is granted; taken as 0");
      err(kNoRoom);
      mclear(result);
      return false;
    }
    if (!general_step(result, base)) return true;
    --n;
    const bool plain = result->c->dec == FF && result->c->len > 0 && in_use(result->c)[0] != 0;
    if (plain && factor) n -= plain_steps(result->c, *factor, n);
  }
  return true;
}

}  // namespace tivelo
