// A shift by digits is one by whole limbs and a product by a power of ten.
#include "fraction/decimal.h"

#include "base/precision.h"
#include "base/status.h"
#include "bigint/muldiv.h"

namespace tivelo {

namespace {

constexpr int kPowersOfTen[kLimbDigits] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};

}  // namespace

int nfloat(num* a, long long d) {
  if (d == 0) return 0;
  const long long q = d / kLimbDigits;
  if (a->len + q + 1 > IS) return kTooLong;
  raise_limbs(a, static_cast<int>(q));
  a->limbs[a->end - a->len - 1] = 0;
  (void)prodc(a, a, kPowersOfTen[d % kLimbDigits]);  // has the place above, so it is not refused
  return 1;
}

int nfloatDn(num* a, int k) {
  if (k == 0) return 0;
  if (a->len + k < 2) return kMisfit;
  if (a->len + k > IS) return kTooLong;
  if (k > 0) {
    raise_limbs(a, k);
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
