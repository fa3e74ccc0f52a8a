// From residues modulo the three primes to limbs. Compiled inside the unnamed namespace of each
// target.
//
// A coefficient x of the product, 0 <= x <= m 10^32, is v1 + p1 v2 + p1 p2 v3 with
//   v1 = x mod p1, v2 = (x - v1) / p1 mod p2, v3 = ((x - v1) / p1 - v2) / p2 mod p3,
// each as multiply_mod() leaves it, |v| <= 0.51 p for arguments within 2 p. v1 and v2 may be any
// representatives, v3 must be the right one: |p1 v2 + v1| <= 0.52 p1 p2, so v3 lies between -1 and
// x / (p1 p2) + 1. As 4 m 10^32 < p1 p2 p3, that is below p3 / 4 + 1, and its neighbours v3 - p3
// and v3 + p3 are outside 0.51 p3: the representative that comes out is v3 itself.
//
// The limbs of x are the sums of v times the limbs of p1 and p1 p2, and the sums of neighbouring
// coefficients overlap. All are integers in doubles; kBias keeps every sum positive: each place
// gets kBias more from the place to its right than it is owed, which changes nothing in total.
#pragma once

// |v| < 2^43.6 for each term; products split in a multiple of 10^8 below 2^43.6 and a rest below
// 10^8. A place collects at most v1, six quotients and seven rests: below 2^46.5 < kBias 10^8 =
// 2^48.6. With the bias a place is below 2^49.
constexpr double kBias = 4194304;
constexpr double kBaseDouble = 1e8;
// The double nearest to 10^-8 is larger than 10^-8 by less than 2^-52 of it (the checking script
// shows it). So for 0 <= x < 2^50, floor(x kBaseInverse) in doubles is floor(x / 10^8) exactly:
// for multiples of 10^8 the product is not too small, and in between it is too large by at most
// 2^50 10^-8 2^-51.4 < 10^-8, the least distance to the next integer.
constexpr double kBaseInverse = 1e-8;

struct Carry {
  Vec quotients;         // what the pair to the right hands over, in its first lane
  std::uint32_t ripple;  // 0 or 1, once more
};

// Writes the limbs of W pairs where a carry has to run on.
inline std::uint32_t store_rippled(std::uint32_t* out, Vec high, Vec low, std::uint32_t ripple) {
  std::uint32_t t[2 * W];
  store_pairs(t, high, low);
  for (std::size_t i = 2 * W; i-- > 0;) {
    t[i] += ripple;
    ripple = t[i] >= 100000000 ? 1 : 0;
    out[i] = t[i] - ripple * 100000000;
  }
  return ripple;
}

// Normalises W pairs of places (0 <= each < 2^50) given the carry from the right, least significant
// vectors first, and writes 2 W limbs.
inline void store_places(std::uint32_t* out, Vec high, Vec low, Carry& carry) {
  const Vec base = all(kBaseDouble);
  const Vec inverse = all(kBaseInverse);
  Vec q = floor_of(scale(low, inverse));
  low = subtract_multiple(low, q, base);
  high = add(high, q);
  q = floor_of(scale(high, inverse));
  high = subtract_multiple(high, q, base);
  low = add(low, shift_in(q, carry.quotients));
  carry.quotients = q;
  // low < 10^8 + 2^23 now, so high grows to 10^8 at most, and only that starts a ripple.
  q = floor_of(scale(low, inverse));
  low = subtract_multiple(low, q, base);
  high = add(high, q);
  if (carry.ripple != 0 || any_at_least(high, base)) {
    carry.ripple = store_rippled(out, high, low, carry.ripple);
  } else {
    store_pairs(out, high, low);
  }
}

struct Places {
  Vec v[5];  // places of one coefficient, least significant first
};

struct CrtConstants {
  Modulus m1, m2, m3, base;
  Vec scale1, scale2, scale3;
  Vec p1_mod_p2, p1_mod_p3, p2_mod_p3;  // inverses
  Vec p1[2], p1p2[4];
};

inline CrtConstants crt_constants(const TransformTables& t, int halvings) {
  CrtConstants c;
  c.m1 = make_prime(t.prime[0]).m;
  c.m2 = make_prime(t.prime[1]).m;
  c.m3 = make_prime(t.prime[2]).m;
  c.base = {all(kBaseDouble), all(kBaseInverse)};
  c.scale1 = all(t.prime[0].halves[halvings]);
  c.scale2 = all(t.prime[1].halves[halvings]);
  c.scale3 = all(t.prime[2].halves[halvings]);
  c.p1_mod_p2 = all(t.inverse_p1_mod_p2);
  c.p1_mod_p3 = all(t.inverse_p1_mod_p3);
  c.p2_mod_p3 = all(t.inverse_p2_mod_p3);
  for (int i = 0; i < 2; ++i) c.p1[i] = all(t.p1[i]);
  for (int i = 0; i < 4; ++i) c.p1p2[i] = all(t.p1p2[i]);
  return c;
}

// v times a number of `count` limbs, added to the places from 0 on.
inline void add_multiple(Places& s, Vec v, const Vec* limbs, int count, const Modulus& base) {
  for (int i = 0; i < count; ++i) {
    Vec q;
    Vec r;
    multiply_quotient(v, limbs[i], base.p, base.inverse, q, r);
    s.v[i] = add(s.v[i], r);
    s.v[i + 1] = add(s.v[i + 1], q);
  }
}

// The residues (at most 50) still carry the factor that scale1 to scale3 take away.
inline Places reconstruct(Vec x1, Vec x2, Vec x3, const CrtConstants& c) {
  const Vec v1 = multiply_mod(x1, c.scale1, c.m1);
  const Vec u2 = sub(multiply_mod(x2, c.scale2, c.m2), v1);
  const Vec v2 = multiply_mod(u2, c.p1_mod_p2, c.m2);
  const Vec u3 = sub(multiply_mod(x3, c.scale3, c.m3), v1);
  const Vec w3 = sub(multiply_mod(u3, c.p1_mod_p3, c.m3), v2);
  const Vec v3 = multiply_mod(w3, c.p2_mod_p3, c.m3);
  Places s = {{v1, all(0), all(0), all(0), all(0)}};
  add_multiple(s, v2, c.p1, 2, c.base);
  add_multiple(s, v3, c.p1p2, 4, c.base);
  return s;
}

// Limbs r[0..size) of the product from its coefficients 0..count-1 modulo each prime. Coefficient
// k ends at limb 2k + 3; limbs behind `size` are zero and not written.
void store_product(std::uint32_t* r, std::size_t size, const double* const* x, std::size_t count,
                   const CrtConstants& c) {
  const Vec zero = all(0);
  const Vec bias = all(kBias * kBaseDouble - kBias);
  Places right = {{zero, zero, zero, zero, zero}};
  Carry carry = {all(kBias), 0};
  std::uint32_t part[2 * W];
  for (std::size_t k = (count + W - 1) / W * W;; k -= W) {
    // Coefficients k - W to k - 1; the pairs k - W + 1 to k take their places 0 and 1.
    const Places s =
        k == 0 ? Places{{zero, zero, zero, zero, zero}}
               : reconstruct(load(x[0] + k - W), load(x[1] + k - W), load(x[2] + k - W), c);
    const Vec next4 = shift_in(s.v[4], right.v[4]);
    const Vec next4_right = shift_in(right.v[4], right.v[4]);
    Vec low = add(add(s.v[0], shift_in(s.v[2], right.v[2])), shift_in(next4, next4_right));
    Vec high = add(s.v[1], shift_in(s.v[3], right.v[3]));
    low = add(low, bias);
    high = add(high, bias);
    right = s;
    if (k != 0 && 2 * (k + 1) <= size) {
      store_places(r + 2 * (k + 1 - W), high, low, carry);
    } else {
      store_places(part, high, low, carry);
      for (std::size_t i = 0; i < 2 * W; ++i) {
        const std::size_t limb = 2 * (k + 1) + i;  // plus 2 W
        if (limb >= 2 * W && limb - 2 * W < size) r[limb - 2 * W] = part[i];
      }
    }
    if (k == 0) break;
  }
}
