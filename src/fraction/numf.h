// The fraction that every value is: a numerator with the sign, the decimal mode and the imaginary
// mark, over a positive denominator. Owns neither of its records: they are wired in by whoever owns
// the fraction, and copying a fraction means copying both records.
#pragma once

#include "bigint/num.h"

namespace tivelo {

struct numf {
  num* c = nullptr;  // numerator
  num* m = nullptr;  // denominator; 1 for integers and for values in decimal mode
  int fl = 0;        // non-zero: ncton keeps a literal as read and forms no denominator

  numf() = default;
  numf(num* numerator, num* denominator) : c(numerator), m(denominator) {}
};

// The variables A to Z (entries 0 to 25) and the current result. Wired and set to 0/1 by
// wire_variables(), once the pool is attached.
extern numf M[30];
extern numf Cn;
void wire_variables();

// f = 0/1. Returns 1.
int mclear(numf* f);

// Sets the limbs of `a` to the one-limb value v, which a denominator may carry up to 10^8.
void set_one_limb(num* a, Limb v);

// Greatest common divisor of a >= 0 and b >= 1 by alternating remainders.
int gcm(int a, int b);

// Divides *a and *b by their greatest common divisor and returns it; equal members become 1/1 and
// the result is 1. *a >= 0, *b >= 1.
int reduct(int* a, int* b);

// Machine-integer fractions rn/rd = an/ad op bn/bd in lowest terms, for operands whose cross
// products fit an int. fminus stores the magnitude and returns the sign of the difference.
void fplus(int* rn, int* rd, int an, int ad, int bn, int bd);
int fminus(int* rn, int* rd, int an, int ad, int bn, int bd);
void fprod(int* rn, int* rd, int an, int ad, int bn, int bd);

}  // namespace tivelo
