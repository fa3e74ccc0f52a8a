// Four doubles at a time in plain C++ for any 64-bit processor with IEEE doubles; see
// vector_avx512.h for how these files are used. Without a fused multiply-add the remainder of a
// product comes from wrapping 64-bit integers, of which only the low bits matter.
#pragma once

constexpr std::size_t W = 4;
constexpr std::size_t kTile = 1;
struct Vec {
  double v[W];
};
struct Columns {
  std::uint64_t v[W];
};

inline Vec load(const double* p) { return {{p[0], p[1], p[2], p[3]}}; }
inline Vec load_unaligned(const double* p) { return load(p); }
inline void store(double* p, Vec x) {
  for (std::size_t i = 0; i < W; ++i) p[i] = x.v[i];
}
inline Vec all(double x) { return {{x, x, x, x}}; }
inline Vec add(Vec x, Vec y) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] += y.v[i];
  return x;
}
inline Vec sub(Vec x, Vec y) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] -= y.v[i];
  return x;
}
inline Vec scale(Vec x, Vec y) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] *= y.v[i];
  return x;
}
// Only for 0 <= x < 2^63, where truncation is the floor.
inline Vec floor_of(Vec x) {
  for (std::size_t i = 0; i < W; ++i) {
    x.v[i] = static_cast<double>(static_cast<std::int64_t>(x.v[i]));
  }
  return x;
}
inline bool any_at_least(Vec x, Vec y) {
  bool any = false;
  for (std::size_t i = 0; i < W; ++i) any |= x.v[i] >= y.v[i];
  return any;
}

// To the nearest integer for |x| < 2^51: the sum has no bits left below the unit.
inline Vec round_of(Vec x) {
  const double magic = 6755399441055744.0;  // 1.5 x 2^52
  for (std::size_t i = 0; i < W; ++i) x.v[i] = x.v[i] + magic - magic;
  return x;
}

inline std::uint64_t integer(double x) {
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(x));
}

// x w = q m + r for integers |x|, |w| <= 2^53 with |x w / m| < 2^51. m_inverse is 1 / m rounded.
// The estimate of the quotient carries three roundings of at most 2^-53 each (two with a fused
// multiply-add) before it is rounded to an integer, so |r| <= m (1/2 + |x w / m| 1.5 x 2^-52 (1 +
// 2^-50)). h - q m = r - l where l, the rounding error of h, is below 2^-52 |x w|: far below 2^53
// in every use here, so the vector targets lose nothing either.
inline void multiply_quotient(Vec x, Vec w, Vec m, Vec m_inverse, Vec& q, Vec& r) {
  const Vec estimate = round_of(scale(scale(x, w), m_inverse));
  for (std::size_t i = 0; i < W; ++i) {
    const std::uint64_t rest =
        integer(x.v[i]) * integer(w.v[i]) - integer(estimate.v[i]) * integer(m.v[i]);
    r.v[i] = static_cast<double>(static_cast<std::int64_t>(rest));
  }
  q = estimate;
}

// x - q m where the exact value is an integer below 2^53 in magnitude and q m is too.
inline Vec subtract_multiple(Vec x, Vec q, Vec m) { return sub(x, scale(q, m)); }

// x moved one lane to the front, the first lane of y behind it.
inline Vec shift_in(Vec x, Vec y) { return {{x.v[1], x.v[2], x.v[3], y.v[0]}}; }

// r0, r1, r1 and five times r2, for the twiddles of three levels.
inline void spread(Vec* v, const double* r) {
  v[0] = {{r[0], r[1], r[1], r[2]}};
  v[1] = all(r[2]);
}

inline void transpose(Vec* v) {
  for (std::size_t i = 0; i < W; ++i) {
    for (std::size_t j = i + 1; j < W; ++j) {
      const double t = v[i].v[j];
      v[i].v[j] = v[j].v[i];
      v[j].v[i] = t;
    }
  }
}

inline Vec to_double(Columns x) {
  Vec r;
  for (std::size_t i = 0; i < W; ++i) r.v[i] = static_cast<double>(x.v[i]);
  return r;
}

// Pairs of limbs: the first of each pair to `high`, the second to `low`.
inline void load_pairs(const std::uint32_t* p, Vec& high, Vec& low) {
  for (std::size_t i = 0; i < W; ++i) {
    high.v[i] = p[2 * i];
    low.v[i] = p[2 * i + 1];
  }
}

inline void store_pairs(std::uint32_t* p, Vec high, Vec low) {
  for (std::size_t i = 0; i < W; ++i) {
    p[2 * i] = static_cast<std::uint32_t>(high.v[i]);
    p[2 * i + 1] = static_cast<std::uint32_t>(low.v[i]);
  }
}

// Column sums of the schoolbook method: 64-bit lanes, products of their low halves.
inline Columns zero_columns() { return {{0, 0, 0, 0}}; }
inline Columns load_limbs(const std::uint32_t* p) {
  Columns r;
  for (std::size_t i = 0; i < W; ++i) {
    r.v[i] = p[2 * i] | static_cast<std::uint64_t>(p[2 * i + 1]) << 32;
  }
  return r;
}
inline Columns all_limbs(std::uint32_t x) { return {{x, x, x, x}}; }
inline Columns second_limbs(Columns x) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] >>= 32;
  return x;
}
inline Columns add_product(Columns s, Columns x, Columns y) {
  for (std::size_t i = 0; i < W; ++i) s.v[i] += (x.v[i] & 0xffffffff) * (y.v[i] & 0xffffffff);
  return s;
}
// s - x y for limbs x and signed 32-bit y, each in the low half of its lane.
inline Columns subtract_product(Columns s, Columns x, Columns y) {
  for (std::size_t i = 0; i < W; ++i) {
    const auto factor = static_cast<std::int64_t>(static_cast<std::int32_t>(y.v[i]));
    s.v[i] -= x.v[i] * static_cast<std::uint64_t>(factor);
  }
  return s;
}
// W limbs, one to a lane.
inline Columns spread_limbs(const std::uint32_t* p) { return {{p[0], p[1], p[2], p[3]}}; }
inline Columns load_columns(const std::uint64_t* p) { return {{p[0], p[1], p[2], p[3]}}; }
inline void put_columns(std::uint64_t* p, Columns x) {
  for (std::size_t i = 0; i < W; ++i) p[i] = x.v[i];
}
inline Columns add_columns(Columns x, Columns y) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] += y.v[i];
  return x;
}
inline Columns low_bits(Columns x, int bits) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] &= (std::uint64_t{1} << bits) - 1;
  return x;
}
inline Columns high_bits(Columns x, int bits) {
  for (std::size_t i = 0; i < W; ++i) x.v[i] >>= bits;
  return x;
}

// Sums and differences, kSumLimbs limbs at a time from the end; the carry comes in and goes out.
// Two limbs in one word, each biased by what 32 bits hold beyond a limb, so that a decimal carry
// becomes a binary one; halves without a carry give the bias back.
constexpr std::size_t kSumLimbs = 2;
constexpr std::uint64_t kSlack = (std::uint64_t{1} << 32) - kLimbBase;

inline std::uint64_t load_pair(const std::uint32_t* p) {
  return static_cast<std::uint64_t>(p[0]) << 32 | p[1];
}
inline void store_pair(std::uint32_t* p, std::uint64_t w) {
  p[0] = static_cast<std::uint32_t>(w >> 32);
  p[1] = static_cast<std::uint32_t>(w);
}
inline std::uint32_t add_block(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                               std::uint32_t carry) {
  const std::uint64_t x = load_pair(a);
  const std::uint64_t y = load_pair(b) + (kSlack << 32 | kSlack);
  const std::uint64_t partial = x + y;
  const std::uint64_t sum = partial + carry;
  const std::uint64_t high = (partial < x ? 1u : 0u) | (sum < partial ? 1u : 0u);
  const std::uint64_t low = ((x ^ y ^ sum) >> 32) & 1;  // the carry into the upper half
  store_pair(r, sum - (kSlack & (low - 1)) - ((kSlack << 32) & (high - 1)));
  return static_cast<std::uint32_t>(high);
}
inline std::uint32_t subtract_block(std::uint32_t* r, const std::uint32_t* a,
                                    const std::uint32_t* b, std::uint32_t borrow) {
  const std::uint64_t x = load_pair(a);
  const std::uint64_t y = load_pair(b);
  const std::uint64_t partial = x - y;
  const std::uint64_t left = partial - borrow;
  const std::uint64_t high = (x < y ? 1u : 0u) | (partial < borrow ? 1u : 0u);
  const std::uint64_t low = ((x ^ y ^ left) >> 32) & 1;
  store_pair(r, left - (kSlack & (0 - low)) - ((kSlack << 32) & (0 - high)));
  return static_cast<std::uint32_t>(high);
}
