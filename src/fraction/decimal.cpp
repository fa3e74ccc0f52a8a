// Shifts of a record's limbs in place.
#include "fraction/decimal.h"

#include <algorithm>

#include "base/precision.h"
#include "base/status.h"
#include "bigint/muldiv.h"

namespace tivelo {

namespace {

constexpr int kPowersOfTen[kLimbDigits] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};

// Moves the limbs of a up by q places. The caller has checked that they fit.
void move_up(num* a, int q) {
  if (q == 0) return;
  const Limbs digits = in_use(a);
  std::ranges::copy(digits, places(a, a->len + q).begin());
  a->len += q;
  std::ranges::fill(places(a, q), Limb{0});
}

}  // namespace

int nfloat(num* a, long long d) {
  if (d == 0) return 0;
  const long long q = d / kLimbDigits;
  if (a->len + q + 1 > IS) return kTooLong;
  move_up(a, static_cast<int>(q));
  a->limbs[a->end - a->len - 1] = 0;
  (void)prodc(a, a, kPowersOfTen[d % kLimbDigits]);  // has the place above, so it is not refused
  return 1;
}

int nfloatDn(num* a, int k) {
  if (k == 0) return 0;
  if (a->len + k < 2) return kMisfit;
  if (a->len + k > IS) return kTooLong;
  if (k > 0) {
    move_up(a, k);
  } else {
    drop_limbs(a, -k);
  }
  return k;
}

int to_decimal(num* a) {
  const int status = nfloat(a, FF * kLimbDigits);
  if (status >= 0) a->dec = FF;
  return status;
}

}  // namespace tivelo
