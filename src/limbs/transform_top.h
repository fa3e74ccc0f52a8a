// The top of the transform: limbs to coefficients, and a first split into U = 5 to 8 pieces of
// h = 2^k coefficients each, which gives lengths between the powers of two.
//
// With y = x^h the pieces are the first U linear factors of y^8 - 1 = (y^4 - 1)(y^2 - i)(y^2 + i)
// in the order 1, -1, i, -i, w, -w, iw, -iw (i^2 = -1, w^2 = i). A product of less than U h
// coefficients is determined modulo those. The way back is Chinese remaindering between the
// factors, whose remainders modulo one another are constants: y^4 - 1 is -2 modulo y^4 + 1, and
// y^2 - i is -2i modulo y^2 + i. Compiled inside the unnamed namespace of each target.
#pragma once

// A number as coefficients of two limbs: most significant first, like the limbs, and filled up
// with a zero limb behind the last where the length is odd.
struct Operand {
  const std::uint32_t* limbs;
  std::size_t size;
};

// Coefficients i to i + W - 1 modulo p, all inside the operand; at most 0.76.
inline Vec whole_coefficients(const Operand& a, std::size_t i, const Modulus& m) {
  Vec high;
  Vec low;
  load_pairs(a.limbs + 2 * i, high, low);
  return add(multiply_mod(high, all(1e8), m), low);
}

// The same, zero past the end of the operand.
inline Vec coefficients(const Operand& a, std::size_t i, const Modulus& m) {
  if (2 * i >= a.size) return all(0);
  if (2 * (i + W) <= a.size) return whole_coefficients(a, i, m);
  std::uint32_t part[2 * W] = {};
  for (std::size_t j = 2 * i; j < a.size; ++j) part[j - 2 * i] = a.limbs[j];
  return whole_coefficients({part, 2 * W}, 0, m);
}

struct TopRoots {
  Vec i, w, iw;
  Vec half_i;  // i / 2, the inverse of -2i
};

inline TopRoots top_roots(const Prime& f) {
  const Vec i = all(f.t->chain[2].root[0]);
  return {i, all(f.t->chain[4].root[0]), all(f.t->chain[6].root[0]),
          multiply_mod(i, all(f.t->halves[1]), f.m)};
}

// The first U values of a polynomial with the eight coefficients u (those from kUnits on are zero).
template <int U, int kUnits>
inline void split_column(double* x, std::size_t h, const Vec* u, const TopRoots& z,
                         const Modulus& m) {
  Vec s[4];
  Vec d[4];
  for (std::size_t j = 0; j < 4; ++j) {
    const bool both = j + 4 < kUnits;
    s[j] = both ? add(u[j], u[j + 4]) : u[j];
    d[j] = both ? sub(u[j], u[j + 4]) : u[j];
  }
  const Vec zero = all(0);
  const Vec g2 = kUnits > 2 ? multiply_mod(d[2], z.i, m) : zero;
  const Vec g3 = kUnits > 3 ? multiply_mod(d[3], z.i, m) : zero;
  const Vec e0 = add(s[0], s[2]);
  const Vec e1 = add(s[1], s[3]);
  const Vec e2 = sub(s[0], s[2]);
  const Vec e3 = multiply_mod(sub(s[1], s[3]), z.i, m);
  Vec y[8];
  y[0] = add(e0, e1);
  y[1] = sub(e0, e1);
  y[2] = add(e2, e3);
  y[3] = sub(e2, e3);
  const Vec t1 = multiply_mod(add(d[1], g3), z.w, m);
  y[4] = add(add(d[0], g2), t1);
  y[5] = sub(add(d[0], g2), t1);
  const Vec t3 = multiply_mod(sub(d[1], g3), z.iw, m);
  y[6] = add(sub(d[0], g2), t3);
  y[7] = sub(sub(d[0], g2), t3);
  for (std::size_t j = 0; j < U; ++j) store(x + j * h, y[j]);
}

// Of the U units of a split, how many an operand of k units fills.
constexpr std::size_t held_units(std::size_t u, std::size_t k) { return k < u ? k : u; }

// Columns [from, to) of split_top, in all of which exactly the first kUnits units of the operand
// are present; or any where kUnits is 8.
template <int U, int kUnits>
inline void split_columns_of(double* x, const Operand& a, std::size_t h, std::size_t from,
                             std::size_t to, const Prime& f) {
  constexpr std::size_t kHeld = held_units(U, kUnits);
  const TopRoots z = top_roots(f);
  const Modulus m = f.m;
  for (std::size_t c = from; c < to; c += W) {
    Vec u[8];
    for (std::size_t j = 0; j < 8; ++j) {
      u[j] = all(0);
      if (j >= kHeld) continue;
      u[j] = kUnits == 8 ? coefficients(a, j * h + c, m) : whole_coefficients(a, j * h + c, m);
    }
    split_column<U, kUnits>(x + c, h, u, z, m);
  }
}

// Splits the operand into U pieces of h coefficients at x. Output at most 6.1: sums of up to eight
// coefficients. Most columns hold two to four units whole, because a product leaves room for the
// other factor; the general code takes what is left.
template <int U>
void split_top(double* x, const Operand& a, std::size_t h, const Prime& f) {
  if constexpr (U == 1) {
    for (std::size_t c = 0; c < h; c += W) store(x + c, coefficients(a, c, f.m));
    return;
  }
  const std::size_t whole = a.size / (2 * W) * W;  // coefficients in whole vectors
  const std::size_t units = whole / h;
  const std::size_t edge = whole - units * h;  // in columns before this there is one unit more
  const std::size_t next = 2 * whole < a.size ? edge + W : edge;
  const auto columns = [&](std::size_t count, std::size_t from, std::size_t to) {
    if (count == 2) return split_columns_of<U, 2>(x, a, h, from, to, f);
    if (count == 3) return split_columns_of<U, 3>(x, a, h, from, to, f);
    if (count == 4) return split_columns_of<U, 4>(x, a, h, from, to, f);
    split_columns_of<U, 8>(x, a, h, from, to, f);
  };
  columns(units + 1, 0, edge);
  columns(0, edge, next);
  columns(units, next, h);
}

// The part beyond y^4 - 1 on the way back: from four times the product modulo y^4 - 1 in s (at most
// 12) and the values y[4..U-1] (at most 3), eight times its quotient by y^4 - 1 in g[0..U-5], at
// most 25.5; what is multiplied on the way stays within 51.
template <int U>
inline void quotient_top(Vec* g, const Vec* s, const Vec* y, const TopRoots& z, Vec inverse_w,
                         const Modulus& m) {
  const Vec g2 = multiply_mod(s[2], z.i, m);
  const Vec g3 = multiply_mod(s[3], z.i, m);
  const Vec b0 = add(s[0], g2);  // s modulo y^2 - i
  const Vec b1 = add(s[1], g3);
  if constexpr (U == 5) {
    const Vec y2 = add(y[4], y[4]);
    g[0] = sub(add(b0, multiply_mod(b1, z.w, m)), add(y2, y2));
    return;
  }
  const Vec f0 = add(y[4], y[5]);
  const Vec f1 = multiply_mod(sub(y[4], y[5]), inverse_w, m);
  g[0] = sub(b0, add(f0, f0));
  g[1] = sub(b1, add(f1, f1));
  if constexpr (U == 7) {
    const Vec t = add(sub(s[0], g2), multiply_mod(sub(s[1], g3), z.iw, m));  // s at y = iw
    const Vec y2 = add(y[6], y[6]);
    const Vec h = add(g[0], multiply_mod(g[1], z.iw, m));  // what g has so far at y = iw
    g[2] = multiply_mod(sub(sub(t, add(y2, y2)), h), z.half_i, m);
    g[0] = sub(g[0], multiply_mod(g[2], z.i, m));
  }
}

// y^8 - 1 and nothing missing: the other half of a plain split in eight.
inline void difference_top(Vec* d, const Vec* y, const TopRoots& v, Vec inverse_w, Vec inverse_iw,
                           const Modulus& m) {
  const Vec e0 = add(y[4], y[5]);
  const Vec e1 = multiply_mod(sub(y[4], y[5]), inverse_w, m);
  const Vec e2 = add(y[6], y[7]);
  const Vec e3 = multiply_mod(sub(y[6], y[7]), inverse_iw, m);
  d[0] = add(e0, e2);
  d[1] = add(e1, e3);
  d[2] = multiply_mod(sub(e0, e2), v.i, m);
  d[3] = multiply_mod(sub(e1, e3), v.i, m);
}

// Undoes split_top up to a factor 8. Input up to 3, output at most 50.
template <int U>
void join_top(double* x, std::size_t h, const Prime& f) {
  const Modulus m = f.m;
  const TopRoots z = top_roots(f);
  const TopRoots v = {all(f.t->chain[2].inverse[0]), all(0), all(0), all(0)};
  const Vec inverse_w = all(f.t->chain[4].inverse[0]);
  const Vec inverse_iw = all(f.t->chain[6].inverse[0]);
  for (std::size_t c = 0; c < h; c += W) {
    Vec y[8];
    for (std::size_t j = 0; j < U; ++j) y[j] = load(x + j * h + c);
    const Vec e0 = add(y[0], y[1]);
    const Vec e1 = sub(y[0], y[1]);
    const Vec e2 = add(y[2], y[3]);
    const Vec e3 = multiply_mod(sub(y[2], y[3]), v.i, m);
    const Vec s[4] = {add(e0, e2), add(e1, e3), sub(e0, e2), sub(e1, e3)};
    Vec g[4];
    if constexpr (U == 8) {
      difference_top(g, y, v, inverse_w, inverse_iw, m);
      for (std::size_t j = 0; j < 4; ++j) {
        store(x + j * h + c, add(s[j], g[j]));
        store(x + (j + 4) * h + c, sub(s[j], g[j]));
      }
    } else {
      quotient_top<U>(g, s, y, z, inverse_w, m);
      for (std::size_t j = 0; j < 4; ++j) {
        const Vec twice = add(s[j], s[j]);
        store(x + j * h + c, j + 4 < U ? sub(twice, g[j]) : twice);
        if (j + 4 < U) store(x + (j + 4) * h + c, g[j]);
      }
    }
  }
}
