#include "fraction/numf.h"

#include <cstdlib>

#include "bigint/pool.h"

namespace tivelo {

numf M[30];
numf Cn;

void wire_variables() {
  Cn.c = &Yc[0];
  Cn.m = &Ym[0];
  for (int k = 0; k < kVariables; ++k) {
    M[k].c = Mc[k];
    M[k].m = Mm[k];
    mclear(&M[k]);
  }
  mclear(&Cn);
}

int mclear(numf* f) {
  rclear(f->c);
  rclear(f->m);
  set_one_limb(f->m, 1);
  return 1;
}

void set_one_limb(num* a, Limb v) {
  a->len = 1;
  units(a) = v;
}

int gcm(int a, int b) {
  for (;;) {
    a %= b;
    if (a == 0) return b;
    b %= a;
    if (b == 0) return a;
  }
}

int reduct(int* a, int* b) {
  if (*a == *b) {
    *a = *b = 1;
    return 1;
  }
  const int g = gcm(*a, *b);
  *a /= g;
  *b /= g;
  return g;
}

void fplus(int* rn, int* rd, int an, int ad, int bn, int bd) {
  *rn = an * bd + bn * ad;
  *rd = ad * bd;
  reduct(rn, rd);
}

int fminus(int* rn, int* rd, int an, int ad, int bn, int bd) {
  const int difference = an * bd - bn * ad;
  *rn = std::abs(difference);
  *rd = ad * bd;
  reduct(rn, rd);
  return (difference > 0) - (difference < 0);
}

void fprod(int* rn, int* rd, int an, int ad, int bn, int bd) {
  reduct(&an, &bd);
  reduct(&bn, &ad);
  *rn = an * bn;
  *rd = ad * bd;
  reduct(rn, rd);
}

}  // namespace tivelo
