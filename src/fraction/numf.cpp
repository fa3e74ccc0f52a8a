// The variables and the current result, and what is done to a fraction as a whole.
#include "fraction/numf.h"

#include <utility>

#include "base/exactness.h"

namespace tivelo {

numf M[kVariables];
numf Cn;
numf spare;
num shared_one;

namespace {

Limb one = 1;

}  // namespace

void wire_variables() {
  Cn = numf(Zc[0], Zm[0]);
  spare = numf(Sc, Sm);
  mclear(&Cn);
  shared_one.limbs = &one;
  shared_one.len = shared_one.used = 1;
  for (int v = 0; v < kVariables; ++v) {
    M[v] = numf(Mc[v], &shared_one);
    M[v].c->used = 1;  // 0 already, without its page being touched
    cells_written[v] = 0;
    limbs_written[v] = 1;
  }
  clear_marks();
}

void give_denominator(int v) {
  M[v].m = Mm[v];
  rclear(M[v].m);
  set_one_limb(M[v].m, 1);
}

void exchange_result() {
  std::swap(Zc[0], Sc);
  std::swap(Zm[0], Sm);
  std::swap(Cn, spare);
}

int gcm(int a, int b) {
  if (a == 1 || b == 1) return 1;
  for (;;) {
    a %= b;
    if (a == 0) return b;
    b %= a;
    if (b == 0) return a;
  }
}

}  // namespace tivelo
