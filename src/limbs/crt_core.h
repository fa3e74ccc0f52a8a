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

// |v| < 2^43.1; a product with a limb is split in a multiple of 10^8 below 2^43.1 and a rest below
// 10^8. A place collects v1 or nothing, up to five quotients and as many rests: below 2^46 in
// magnitude, less than kBias (10^8 - 1). Only the top limb of p1 p2, which is 309, is multiplied
// without a split; 0 <= v3 < p3 / 4 + 1 keeps that below 2^50.4. With the bias a place is below
// 2^51.
constexpr double kBias = 4194304;
constexpr double kBaseDouble = 1e8;
// The double nearest to 10^-8 is larger than 10^-8 by less than 2^-55 of it (the checking script
// shows it). So for 0 <= x < 2^52, floor(x kBaseInverse) in doubles is floor(x / 10^8) exactly:
// for multiples of 10^8 the product is not too small, and in between it is too large by at most
// 2^52 10^-8 (2^-55 + 2^-53) < 10^-8, the least distance to the next integer.
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

// Normalises W pairs of places (0 <= each < 2^51) given the carry from the right, least significant
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
  // low < 10^8 + 2^25 now, so high grows to 10^8 at most, and only that starts a ripple.
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
  Vec v[4];  // places of one coefficient, least significant first
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

// v times one limb, added to a place and the one above.
inline void add_multiple(Vec& place, Vec& above, Vec v, Vec limb, const Modulus& base) {
  Vec q;
  Vec r;
  multiply_quotient(v, limb, base.p, base.inverse, q, r);
  place = add(place, r);
  above = add(above, q);
}

constexpr std::size_t kStrands = 2;

// Coefficients k - i W - W to k - i W - 1 in s[i]; the residues (at most 50) still carry the factor
// that scale1 to scale3 take away. The chain of multiplications is long, so vectors are taken side
// by side, step for step.
inline void reconstruct(Places* s, const double* const* x, std::size_t k, const CrtConstants& c) {
  Vec v1[kStrands];
  Vec v2[kStrands];
  Vec v3[kStrands];
  const std::size_t n = kStrands;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t at = k - (i + 1) * W;
    v1[i] = multiply_mod(load(x[0] + at), c.scale1, c.m1);
    v2[i] = multiply_mod(load(x[1] + at), c.scale2, c.m2);
    v3[i] = multiply_mod(load(x[2] + at), c.scale3, c.m3);
  }
  for (std::size_t i = 0; i < n; ++i) {
    v2[i] = multiply_mod(sub(v2[i], v1[i]), c.p1_mod_p2, c.m2);
    v3[i] = multiply_mod(sub(v3[i], v1[i]), c.p1_mod_p3, c.m3);
  }
  for (std::size_t i = 0; i < n; ++i) {
    v3[i] = multiply_mod(sub(v3[i], v2[i]), c.p2_mod_p3, c.m3);
    s[i] = {{v1[i], all(0), all(0), all(0)}};
    for (std::size_t j = 0; j < 2; ++j) {
      add_multiple(s[i].v[j], s[i].v[j + 1], v2[i], c.p1[j], c.base);
    }
  }
  for (std::size_t j = 0; j < 3; ++j) {
    for (std::size_t i = 0; i < n; ++i) {
      add_multiple(s[i].v[j], s[i].v[j + 1], v3[i], c.p1p2[j], c.base);
    }
  }
  for (std::size_t i = 0; i < n; ++i) s[i].v[3] = add(s[i].v[3], scale(v3[i], c.p1p2[3]));
}

// Adds up the places of W pairs: 0 and 1 of the coefficients in s, 2 and 3 of their right
// neighbours. The pairs are k - W + 1 to k for the coefficients k - W to k - 1. Limbs before the
// first and from `size` on are zero and not written.
inline void store_pairs_of(std::uint32_t* r, std::size_t size, std::size_t k, const Places& s,
                           const Places& right, Carry& carry) {
  const Vec bias = all(kBias * kBaseDouble - kBias);
  const Vec low = add(add(s.v[0], shift_in(s.v[2], right.v[2])), bias);
  const Vec high = add(add(s.v[1], shift_in(s.v[3], right.v[3])), bias);
  if (k != 0 && 2 * (k + 1) <= size) {
    return store_places(r + 2 * (k + 1 - W), high, low, carry);
  }
  std::uint32_t part[2 * W];
  store_places(part, high, low, carry);
  for (std::size_t i = 0; i < 2 * W; ++i) {
    const std::size_t limb = 2 * (k + 1) + i;  // plus 2 W
    if (limb >= 2 * W && limb - 2 * W < size) r[limb - 2 * W] = part[i];
  }
}

// Limbs r[0..size) of the product from its coefficients 0..count-1 modulo each prime; those up to
// the next multiple of kStrands W are there too, and zero. Coefficient k ends at limb 2k + 3.
void store_product(std::uint32_t* r, std::size_t size, const double* const* x, std::size_t count,
                   const CrtConstants& c) {
  const Places none = {{all(0), all(0), all(0), all(0)}};
  Places right = none;
  Carry carry = {all(kBias), 0};
  constexpr std::size_t step = kStrands * W;
  for (std::size_t k = (count + step - 1) / step * step; k > 0; k -= step) {
    Places s[kStrands];
    reconstruct(s, x, k, c);
    for (std::size_t i = 0; i < kStrands; ++i) {
      store_pairs_of(r, size, k - i * W, s[i], i == 0 ? right : s[i - 1], carry);
    }
    right = s[kStrands - 1];
  }
  store_pairs_of(r, size, 0, none, right, carry);
}
