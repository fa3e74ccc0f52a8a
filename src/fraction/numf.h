// The fraction that every value is: a numerator with the sign, the decimal mode and the imaginary
// mark, over a positive denominator. Owns neither of its records: they are wired in by whoever owns
// the fraction, and copying a fraction means copying both records.
#pragma once

#include "bigint/pool.h"

namespace tivelo {

struct numf {
  num* c = nullptr;  // numerator
  num* m = nullptr;  // denominator; 1 for integers and for values in decimal mode

  numf() = default;
  numf(num* numerator, num* denominator) : c(numerator), m(denominator) {}
};

// The variables A to Z and the current result, over their records in the pool. Wired and set to
// 0/1, all exact, by wire_variables(), once the pool is attached.
extern numf M[kVariables];
extern numf Cn;
void wire_variables();

// The denominator 1 that variables share until they are first written to, and that nobody changes:
// with limbs of their own, a start would touch 26 pages for it.
extern num shared_one;

// Gives variable v a denominator of its own, 1.
void give_denominator(int v);

// Variable v, whose denominator is going to be changed. For all else M[v] will do.
inline numf& changing(int v) {
  if (M[v].m == &shared_one) [[unlikely]]
    give_denominator(v);
  return M[v];
}

// How far the numerator array of each variable has been written, since the start or since a state
// was loaded: up to which cell, from its front, and up to which limb, from its units. What lies
// between is zero.
inline int cells_written[kVariables];
inline int limbs_written[kVariables];

// To be called when the numerator of variable v may have become longer.
inline void note_length(int v) {
  if (M[v].c->len > limbs_written[v]) [[unlikely]]
    limbs_written[v] = M[v].c->len;
}

// The fraction that the current result changes places with. An evaluation goes into it first, so
// that one that is broken off leaves the current result as it was.
extern numf spare;
void exchange_result();

// Sets the limbs of `a` to the one-limb value v, which a denominator may carry up to 10^8.
inline void set_one_limb(num* a, Limb v) {
  a->len = 1;
  units(a) = v;
}

// f = 0/1. Returns 1.
inline int mclear(numf* f) {
  rclear(f->c);
  rclear(f->m);
  set_one_limb(f->m, 1);
  return 1;
}

// to = from: both records.
inline void copy(const numf& to, const numf& from) {
  rncopy(to.c, from.c);
  rncopy(to.m, from.m);
}

// Greatest common divisor of a >= 0 and b >= 1 by alternating remainders.
int gcm(int a, int b);

}  // namespace tivelo
