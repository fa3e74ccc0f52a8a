// Four doubles at a time with AVX2 and FMA; see vector_avx512.h for how these files are used.
#pragma once

constexpr std::size_t W = 4;
constexpr std::size_t kTile = 2;
using Vec = __m256d;
using Columns = __m256i;

inline Vec load(const double* p) { return _mm256_load_pd(p); }
inline Vec load_unaligned(const double* p) { return _mm256_loadu_pd(p); }
inline void store(double* p, Vec x) { _mm256_store_pd(p, x); }
inline Vec all(double x) { return _mm256_set1_pd(x); }
inline Vec add(Vec x, Vec y) { return _mm256_add_pd(x, y); }
inline Vec sub(Vec x, Vec y) { return _mm256_sub_pd(x, y); }
inline Vec floor_of(Vec x) { return _mm256_round_pd(x, 0x09); }
inline bool any_at_least(Vec x, Vec y) {
  return _mm256_movemask_pd(_mm256_cmp_pd(x, y, _CMP_GE_OQ)) != 0;
}

// x w = q m + r, see multiply_quotient in the portable file.
inline void multiply_quotient(Vec x, Vec w, Vec m, Vec m_inverse, Vec& q, Vec& r) {
  const Vec magic = _mm256_set1_pd(6755399441055744.0);
  const Vec h = _mm256_mul_pd(x, w);
  const Vec l = _mm256_fmsub_pd(x, w, h);
  q = _mm256_sub_pd(_mm256_fmadd_pd(h, m_inverse, magic), magic);
  r = _mm256_add_pd(_mm256_fnmadd_pd(q, m, h), l);
}

// x - q m where the exact value is an integer below 2^53 in magnitude.
inline Vec subtract_multiple(Vec x, Vec q, Vec m) { return _mm256_fnmadd_pd(q, m, x); }
inline Vec scale(Vec x, Vec y) { return _mm256_mul_pd(x, y); }
inline Vec round_of(Vec x) {
  const Vec magic = _mm256_set1_pd(6755399441055744.0);
  return _mm256_sub_pd(_mm256_add_pd(x, magic), magic);
}

// x moved one lane to the front, the first lane of y behind it.
inline Vec shift_in(Vec x, Vec y) { return _mm256_permute4x64_pd(_mm256_blend_pd(x, y, 1), 0x39); }

// r0, r1, r1 and five times r2, for the twiddles of three levels.
inline void spread(Vec* v, const double* r) {
  v[0] = _mm256_permute4x64_pd(load_unaligned(r), 0x94);
  v[1] = all(r[2]);
}

inline void transpose(Vec* v) {
  const Vec a0 = _mm256_unpacklo_pd(v[0], v[1]);
  const Vec a1 = _mm256_unpackhi_pd(v[0], v[1]);
  const Vec a2 = _mm256_unpacklo_pd(v[2], v[3]);
  const Vec a3 = _mm256_unpackhi_pd(v[2], v[3]);
  v[0] = _mm256_permute2f128_pd(a0, a2, 0x20);
  v[1] = _mm256_permute2f128_pd(a1, a3, 0x20);
  v[2] = _mm256_permute2f128_pd(a0, a2, 0x31);
  v[3] = _mm256_permute2f128_pd(a1, a3, 0x31);
}

// Integers below 2^52 in each lane to doubles, by way of the bits of 2^52 + x.
inline Vec to_double(Columns x) {
  const Columns bits = _mm256_set1_epi64x(0x4330000000000000);
  return _mm256_sub_pd(_mm256_castsi256_pd(_mm256_or_si256(x, bits)), _mm256_set1_pd(0x1p52));
}

inline Columns load_limbs(const std::uint32_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

// Pairs of limbs: the first of each pair to `high`, the second to `low`.
inline void load_pairs(const std::uint32_t* p, Vec& high, Vec& low) {
  const Columns x = load_limbs(p);
  high = to_double(_mm256_and_si256(x, _mm256_set1_epi64x(0xffffffff)));
  low = to_double(_mm256_srli_epi64(x, 32));
}

inline void store_pairs(std::uint32_t* p, Vec high, Vec low) {
  const Vec bias = _mm256_set1_pd(0x1p52);
  const Columns h = _mm256_castpd_si256(_mm256_add_pd(high, bias));
  const Columns l = _mm256_castpd_si256(_mm256_add_pd(low, bias));
  const Columns mask = _mm256_set1_epi64x(0xffffffff);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p),
                      _mm256_or_si256(_mm256_and_si256(h, mask), _mm256_slli_epi64(l, 32)));
}

// Column sums of the schoolbook method: 64-bit lanes, products of their low halves.
inline Columns zero_columns() { return _mm256_setzero_si256(); }
inline Columns all_limbs(std::uint32_t x) { return _mm256_set1_epi32(static_cast<int>(x)); }
inline Columns second_limbs(Columns x) { return _mm256_srli_epi64(x, 32); }
inline Columns add_product(Columns s, Columns x, Columns y) {
  return _mm256_add_epi64(s, _mm256_mul_epu32(x, y));
}
inline Columns subtract_product(Columns s, Columns x, Columns y) {
  return _mm256_sub_epi64(s, _mm256_mul_epi32(x, y));
}
inline Columns spread_limbs(const std::uint32_t* p) {
  return _mm256_cvtepu32_epi64(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
}
inline Columns load_columns(const std::uint64_t* p) {
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(p));
}
inline void put_columns(std::uint64_t* p, Columns x) {
  _mm256_store_si256(reinterpret_cast<__m256i*>(p), x);
}
inline Columns add_columns(Columns x, Columns y) { return _mm256_add_epi64(x, y); }
inline Columns low_bits(Columns x, int bits) {
  return _mm256_and_si256(x, _mm256_set1_epi64x((std::int64_t{1} << bits) - 1));
}
inline Columns high_bits(Columns x, int bits) {
  return _mm256_srl_epi64(x, _mm_cvtsi32_si128(bits));
}

// Sums and differences of 8 limbs, turned so that lane 0 is the last one; see vector_avx512.h.
constexpr std::size_t kSumLimbs = 8;

inline __m256i turn(__m256i x) {
  return _mm256_permutevar8x32_epi32(x, _mm256_set_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}
inline __m256i load_turned(const std::uint32_t* p) {
  return turn(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)));
}
inline void store_turned(std::uint32_t* p, __m256i x) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), turn(x));
}
inline std::uint32_t lanes_of(__m256i x) {
  return static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(x)));
}
// All bits of the lanes whose bit is set in the lower eight of x.
inline __m256i mask_of(std::uint32_t x) {
  const __m256i bits = _mm256_set_epi32(128, 64, 32, 16, 8, 4, 2, 1);
  const __m256i all_bits = _mm256_set1_epi32(static_cast<int>(x));
  return _mm256_cmpeq_epi32(_mm256_and_si256(all_bits, bits), bits);
}
inline std::uint32_t spread_carries(__m256i made, __m256i passed, std::uint32_t carry) {
  const std::uint32_t p = lanes_of(passed);
  return (2 * lanes_of(made) + carry + p) ^ p;
}
inline std::uint32_t add_block(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                               std::uint32_t carry) {
  const __m256i base = _mm256_set1_epi32(kLimbBase);
  const __m256i last = _mm256_set1_epi32(kLimbBase - 1);
  const __m256i t = _mm256_add_epi32(load_turned(a), load_turned(b));
  const std::uint32_t in =
      spread_carries(_mm256_cmpgt_epi32(t, last), _mm256_cmpeq_epi32(t, last), carry);
  const __m256i sum = _mm256_sub_epi32(t, mask_of(in));
  store_turned(r, _mm256_min_epu32(sum, _mm256_sub_epi32(sum, base)));
  return in >> 8;
}
inline std::uint32_t subtract_block(std::uint32_t* r, const std::uint32_t* a,
                                    const std::uint32_t* b, std::uint32_t borrow) {
  const __m256i base = _mm256_set1_epi32(kLimbBase);
  const __m256i zero = _mm256_setzero_si256();
  const __m256i t = _mm256_sub_epi32(load_turned(a), load_turned(b));
  const std::uint32_t in =
      spread_carries(_mm256_cmpgt_epi32(zero, t), _mm256_cmpeq_epi32(t, zero), borrow);
  const __m256i left = _mm256_add_epi32(t, mask_of(in));
  store_turned(r, _mm256_min_epu32(left, _mm256_add_epi32(left, base)));
  return in >> 8;
}
