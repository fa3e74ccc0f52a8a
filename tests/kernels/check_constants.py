#!/usr/bin/env python3
"""Recomputes the constants of the exact transform from their definition and checks the bounds that
docs/transform.md derives. Reads the values out of the sources, so that neither can drift."""
import math
import pathlib
import re
import sys
from fractions import Fraction

KERNELS = pathlib.Path(__file__).resolve().parents[2] / "src" / "kernels"
BASE = 10**8


def numbers(text, name):
    found = re.search(r"\b%s(?:\[\w+\])? = ([^;]*);" % name, text)
    return [int(word) for word in re.findall(r"\d+", found[1])]


def is_prime(n):
    return n % 2 and all(n % d for d in range(3, math.isqrt(n) + 1, 2))


def root(p, order):
    """b^((p-1) / order) for the least b whose power has that order."""
    powers = (pow(b, (p - 1) // order, p) for b in range(2, p))
    return next(r for r in powers if all(pow(r, order // q, p) != 1 for q in (2, 3, 5)))


def check(what, fine):
    print(("ok    " if fine else "WRONG ") + what)
    faults.append(not fine)


faults = []
tables = (KERNELS / "transform_tables.h").read_text()
crt = (KERNELS / "reconstruction.inc").read_text()
target = (KERNELS / "target.h").read_text()

order = numbers(tables, "kRootOrder")[0]
longest = numbers(tables, "kMaxTransform")[0]
primes = numbers(tables, "kPrime")
product = primes[0] * primes[1] * primes[2]

expected = []
step = numbers(tables, "kOddOrder")[0] * 2**order
k = 2**44 // step
while len(expected) < 3:
    if is_prime(k * step + 1):
        expected.append(k * step + 1)
    k -= 1
check("kPrime: the three largest primes k 15 2^%d + 1 below 2^44" % order, primes == expected)
check("kRoot: elements of order 15 2^%d" % order,
      numbers(tables, "kRoot") == [root(p, step) for p in primes])
check("roots of order 8 n for the longest transform", longest + 2 <= order)
check("4 m 10^32 < p1 p2 p3 for m = 2^%d coefficients" % (longest - 1),
      4 * 2 ** (longest - 1) * BASE**4 < product)

# multiply_mod: |r| <= 3/4 p for |x| <= 64 p and |w| <= 0.51 p, three roundings of 2^-53.
p = max(primes)
check("values within 64 p stay below 2^50", 64 * p < 2**50)
ratio = 64 * p * Fraction(51, 100)
error = ratio * ((1 + Fraction(1, 2**53)) ** 3 - 1)
check("the quotient of multiply_mod is off by less than 3/4", error + Fraction(1, 2) < Fraction(3, 4))
check("the quotient is below 2^51", ratio < 2**51)
check("primes k 2^32 + 1, k < 2^32", all(f % 2**32 == 1 and f < 2**64 for f in primes))
check("the rest before its correction is below 2^53",
      Fraction(3, 4) * p + 64 * p * Fraction(51, 100) * p / 2**53 < 2**53)
check("forward values: 7.6 + 3/4 for each level within 64",
      Fraction(76, 10) + Fraction(3, 4) * (longest - 1) <= 64)

# Places of the reconstruction.
bias = numbers(crt, "kBias")[0]
v = Fraction(51, 100) * p
cut = 2**22
lower, upper = cut // 2, v / cut + 1
p1, p12 = primes[0], primes[0] * primes[1]
place = [v if j == 0 else 0 for j in range(4)]  # without what is above three limbs of p1 p2
for number, factor in ((p1, lower), (p12, lower), (p1 * cut, upper), (p12 * cut, upper)):
    for j in range(3):
        place[j] += number // BASE**j % BASE * factor
top, top_upper = p12 // BASE**3, p12 * cut // BASE**3
# v3 of a difference of two products, the shorter factors of 2^limit coefficients, may be below zero.
limit = numbers((KERNELS / "../limbs/matrix.cpp").read_text(), "kMostEntries")[-1] - 1
check("sums of two products are as good as one", 2 * 2**limit <= 2 ** (longest - 1))
below = Fraction(2**limit * BASE**4, p12) + 1
down, up = (top * lower + top_upper * (least / cut + 1) for least in (below, Fraction(p, 4)))
check("limbs of p1 and p1 p2, times 2^22 or not", p1 * cut < BASE**3 and top_upper < 2**53)
check("v3 is below 2^39.4 where it is negative", below < 2**39.4)
check("places without their bias are less than the bias",
      max(place[0] + place[2], place[1] + down) < bias * (BASE - 1))
check("places with their bias are below 2^52",
      max(place[0] + place[2], place[1] + up) + bias * BASE < 2**52)
inverse = Fraction(float("1e-8"))
check("the double 1e-8 is above 10^-8, by less than 2^-55 of it",
      0 < inverse - Fraction(1, BASE) < Fraction(1, BASE * 2**55))
# One more rounding of 2^-53 in the product.
check("floor(x 1e-8) is exact below 2^52",
      2**52 * (inverse * (1 + Fraction(1, 2**53)) - Fraction(1, BASE)) < Fraction(1, BASE))
check("what a pair hands to the left is below 2^26", 2**52 // BASE < 2**26)

column = numbers(target, "kMaxColumn")[0]
lowered = (Fraction(1, BASE) - Fraction(1e-8 * (1 - 2**-51))) * BASE
check("the factor of split_sums() is too small by 2^-51 to 2^-50 of it",
      Fraction(1, 2**51) < lowered < Fraction(1, 2**50))
check("kMaxColumn: the most products of limbs in 64 bits",
      column * BASE**2 < 2**64 <= (column + 1) * BASE**2)

# The check by residues modulo m^2, m = 10^16 - 1 (docs/trust.md).
sums = (KERNELS / "sums.inc").read_text()
group, summed = numbers(sums, "kSumGroup")[0], 2 ** numbers(target, "kMostSummed")[1]
m = BASE**2 - 1
check("sums of a group in half a lane", group * (group + 1) // 2 * (BASE - 1) < 2**32)
check("sums of the longest run in 64 bits", (summed // 2) ** 2 // 2 * (BASE - 1) < 2**64)
check("any three neighbouring limbs are worth less than m^2", BASE**3 < m**2)
check("two limbs wrong by the same, an even distance apart", (BASE - 1) * 2 ** longest < m)
check("two ends exchanged, an odd distance apart",
      all((BASE - 1) * (BASE * pow(BASE**2, k, m**2) + 1) % m**2 for k in (0, 1, 2, BASE, m - 1)))
sys.exit(any(faults))
