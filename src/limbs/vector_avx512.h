// Eight doubles at a time with AVX-512 (F, DQ, VL). The three vector_*.h files offer the same
// names; each is included by one target_*.cpp, inside its unnamed namespace, so that no function
// compiled for one processor can be linked into another target.
#pragma once

constexpr std::size_t W = 8;
constexpr std::size_t kTile = 4;
using Vec = __m512d;
using Columns = __m512i;

inline Vec load(const double* p) { return _mm512_load_pd(p); }
inline Vec load_unaligned(const double* p) { return _mm512_loadu_pd(p); }
inline void store(double* p, Vec x) { _mm512_store_pd(p, x); }
inline Vec all(double x) { return _mm512_set1_pd(x); }
inline Vec add(Vec x, Vec y) { return _mm512_add_pd(x, y); }
inline Vec sub(Vec x, Vec y) { return _mm512_sub_pd(x, y); }
inline Vec floor_of(Vec x) { return _mm512_roundscale_pd(x, 0x09); }
inline bool any_at_least(Vec x, Vec y) { return _mm512_cmp_pd_mask(x, y, _CMP_GE_OQ) != 0; }

// x w = q m + r, see multiply_quotient in the portable file.
inline void multiply_quotient(Vec x, Vec w, Vec m, Vec m_inverse, Vec& q, Vec& r) {
  const Vec magic = _mm512_set1_pd(6755399441055744.0);
  const Vec h = _mm512_mul_pd(x, w);
  const Vec l = _mm512_fmsub_pd(x, w, h);
  q = _mm512_sub_pd(_mm512_fmadd_pd(h, m_inverse, magic), magic);
  r = _mm512_add_pd(_mm512_fnmadd_pd(q, m, h), l);
}

// x - q m where the exact value is an integer below 2^53 in magnitude.
inline Vec subtract_multiple(Vec x, Vec q, Vec m) { return _mm512_fnmadd_pd(q, m, x); }
inline Vec scale(Vec x, Vec y) { return _mm512_mul_pd(x, y); }
inline Vec round_of(Vec x) {
  const Vec magic = _mm512_set1_pd(6755399441055744.0);
  return _mm512_sub_pd(_mm512_add_pd(x, magic), magic);
}

// x moved one lane to the front, the first lane of y behind it.
inline Vec shift_in(Vec x, Vec y) {
  return _mm512_castsi512_pd(
      _mm512_alignr_epi64(_mm512_castpd_si512(y), _mm512_castpd_si512(x), 1));
}

// r0, r1, r1 and five times r2, for the twiddles of three levels.
inline void spread(Vec* v, const double* r) {
  v[0] = _mm512_permutexvar_pd(_mm512_setr_epi64(0, 1, 1, 2, 2, 2, 2, 2), load_unaligned(r));
}

inline void transpose(Vec* v) {
  Vec a[8];
  Vec b[8];
  for (int i = 0; i < 8; i += 2) {
    a[i] = _mm512_unpacklo_pd(v[i], v[i + 1]);
    a[i + 1] = _mm512_unpackhi_pd(v[i], v[i + 1]);
  }
  for (int i = 0; i < 8; i += 4) {
    for (int k = 0; k < 2; ++k) {
      b[i + k] = _mm512_shuffle_f64x2(a[i + k], a[i + k + 2], 0x88);
      b[i + k + 2] = _mm512_shuffle_f64x2(a[i + k], a[i + k + 2], 0xdd);
    }
  }
  for (int k = 0; k < 4; ++k) {
    v[k] = _mm512_shuffle_f64x2(b[k], b[k + 4], 0x88);
    v[k + 4] = _mm512_shuffle_f64x2(b[k], b[k + 4], 0xdd);
  }
}

// Integers below 2^52 in each lane to doubles, by way of the bits of 2^52 + x.
inline Vec to_double(Columns x) {
  const Columns bits = _mm512_set1_epi64(0x4330000000000000);
  return _mm512_sub_pd(_mm512_castsi512_pd(_mm512_or_si512(x, bits)), _mm512_set1_pd(0x1p52));
}

// Pairs of limbs: the first of each pair to `high`, the second to `low`.
inline void load_pairs(const std::uint32_t* p, Vec& high, Vec& low) {
  const Columns x = _mm512_loadu_si512(p);
  high = to_double(_mm512_and_si512(x, _mm512_set1_epi64(0xffffffff)));
  low = to_double(_mm512_srli_epi64(x, 32));
}

inline void store_pairs(std::uint32_t* p, Vec high, Vec low) {
  const Vec bias = _mm512_set1_pd(0x1p52);
  const Columns h = _mm512_castpd_si512(_mm512_add_pd(high, bias));
  const Columns l = _mm512_castpd_si512(_mm512_add_pd(low, bias));
  const Columns mask = _mm512_set1_epi64(0xffffffff);
  _mm512_storeu_si512(p, _mm512_or_si512(_mm512_and_si512(h, mask), _mm512_slli_epi64(l, 32)));
}

// Column sums of the schoolbook method: 64-bit lanes, products of their low halves.
inline Columns zero_columns() { return _mm512_setzero_si512(); }
inline Columns load_limbs(const std::uint32_t* p) { return _mm512_loadu_si512(p); }
inline Columns all_limbs(std::uint32_t x) { return _mm512_set1_epi32(static_cast<int>(x)); }
inline Columns second_limbs(Columns x) { return _mm512_srli_epi64(x, 32); }
inline Columns add_product(Columns s, Columns x, Columns y) {
  return _mm512_add_epi64(s, _mm512_mul_epu32(x, y));
}
inline Columns subtract_product(Columns s, Columns x, Columns y) {
  return _mm512_sub_epi64(s, _mm512_mul_epi32(x, y));
}
inline Columns spread_limbs(const std::uint32_t* p) {
  return _mm512_cvtepu32_epi64(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)));
}
inline Columns load_columns(const std::uint64_t* p) { return _mm512_load_si512(p); }
inline void put_columns(std::uint64_t* p, Columns x) { _mm512_store_si512(p, x); }
inline Columns add_columns(Columns x, Columns y) { return _mm512_add_epi64(x, y); }
inline Columns low_bits(Columns x, int bits) {
  return _mm512_and_si512(x, _mm512_set1_epi64((std::int64_t{1} << bits) - 1));
}
inline Columns high_bits(Columns x, int bits) {
  return _mm512_srl_epi64(x, _mm_cvtsi32_si128(bits));
}

// Sums and differences of 16 limbs, turned so that lane 0 is the last one. Lanes that make a
// carry (`made`) and lanes that pass one on (`passed`) meet in one binary addition, whose carries
// are the decimal ones.
constexpr std::size_t kSumLimbs = 16;

inline __m512i load_turned(const std::uint32_t* p) {
  const __m512i order = _mm512_set_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  return _mm512_permutexvar_epi32(order, _mm512_loadu_si512(p));
}
inline void store_turned(std::uint32_t* p, __m512i x) {
  const __m512i order = _mm512_set_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  _mm512_storeu_si512(p, _mm512_permutexvar_epi32(order, x));
}
inline std::uint32_t spread_carries(__mmask16 made, __mmask16 passed, std::uint32_t carry) {
  return (2u * made + carry + passed) ^ passed;
}
inline std::uint32_t add_block(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                               std::uint32_t carry) {
  const __m512i base = _mm512_set1_epi32(kLimbBase);
  const __m512i last = _mm512_set1_epi32(kLimbBase - 1);
  const __m512i one = _mm512_set1_epi32(1);
  const __m512i t = _mm512_add_epi32(load_turned(a), load_turned(b));
  const std::uint32_t in =
      spread_carries(_mm512_cmpgt_epi32_mask(t, last), _mm512_cmpeq_epi32_mask(t, last), carry);
  const __m512i sum = _mm512_mask_add_epi32(t, static_cast<__mmask16>(in), t, one);
  store_turned(r, _mm512_min_epu32(sum, _mm512_sub_epi32(sum, base)));
  return in >> 16;
}
inline std::uint32_t subtract_block(std::uint32_t* r, const std::uint32_t* a,
                                    const std::uint32_t* b, std::uint32_t borrow) {
  const __m512i base = _mm512_set1_epi32(kLimbBase);
  const __m512i zero = _mm512_setzero_si512();
  const __m512i one = _mm512_set1_epi32(1);
  const __m512i t = _mm512_sub_epi32(load_turned(a), load_turned(b));
  const std::uint32_t in =
      spread_carries(_mm512_cmplt_epi32_mask(t, zero), _mm512_cmpeq_epi32_mask(t, zero), borrow);
  const __m512i left = _mm512_mask_sub_epi32(t, static_cast<__mmask16>(in), t, one);
  store_turned(r, _mm512_min_epu32(left, _mm512_add_epi32(left, base)));
  return in >> 16;
}
