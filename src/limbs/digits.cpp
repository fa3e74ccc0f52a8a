// Four limbs (32 digits) go through the vector registers at once
// where the processor has them; single limbs go through one 64-bit word. Both split a limb by
// halves: 10^8 = 10^4 x 10^4, 10^4 = 10^2 x 10^2, 10^2 = 10 x 10.
#include "limbs/digits.h"

#include <bit>
#include <cassert>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tivelo::limbs {
namespace {

// Byte i of the word is character i of the text, on every processor.
std::uint64_t to_text_order(std::uint64_t w) {
  return std::endian::native == std::endian::little ? w : __builtin_bswap64(w);
}

constexpr std::uint64_t kZeros = 0x3030303030303030;  // "00000000"

// Adjacent digits, pairs and quads are joined in turn: the lane with the higher character index
// is the lower one in value.
Limb parse_limb(const char* text) {
  std::uint64_t w;
  std::memcpy(&w, text, sizeof w);
  w = to_text_order(w) - kZeros;
  w = (w * 10 + (w >> 8)) & 0x00FF00FF00FF00FF;
  w = (w * 100 + (w >> 16)) & 0x0000FFFF0000FFFF;
  return static_cast<Limb>(w * 10000 + (w >> 32));
}

// Reciprocals: x x 5243 >> 19 = x / 100 for x < 10^4, x x 103 >> 10 = x / 10 for x < 100.
void write_limb(char* out, Limb limb) {
  std::uint64_t w = limb / 10000 | static_cast<std::uint64_t>(limb % 10000) << 32;
  const std::uint64_t hundreds = ((w * 5243) >> 19) & 0x0000007F0000007F;
  w = hundreds | (w - hundreds * 100) << 16;
  const std::uint64_t tens = ((w * 103) >> 10) & 0x000F000F000F000F;
  w = to_text_order((tens | (w - tens * 10) << 8) + kZeros);
  std::memcpy(out, &w, sizeof w);
}

#if defined(__SSE2__)
// 16 characters to four numbers below 10^4, each in a 32-bit lane.
__m128i parse_quads(const char* text) {
  __m128i w = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  w = _mm_sub_epi8(w, _mm_set1_epi8('0'));
  const __m128i tens = _mm_mullo_epi16(_mm_and_si128(w, _mm_set1_epi16(0x00FF)),  //
                                       _mm_set1_epi16(10));
  w = _mm_add_epi16(tens, _mm_srli_epi16(w, 8));
  return _mm_madd_epi16(w, _mm_set1_epi32(100 | 1 << 16));
}

void parse_four(Limb* r, const char* text) {
  const __m128i quads = _mm_packs_epi32(parse_quads(text), parse_quads(text + 16));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(r),
                   _mm_madd_epi16(quads, _mm_set1_epi32(10000 | 1 << 16)));
}

// Eight numbers below 100 in 16-bit lanes to 16 characters (6554 / 2^16 is 1 / 10 closely enough
// below 100): t | (w - 10 t) << 8 = (w << 8) - 2559 t.
void write_pairs(char* out, __m128i w) {
  const __m128i tens = _mm_mulhi_epu16(w, _mm_set1_epi16(6554));
  w = _mm_sub_epi16(_mm_slli_epi16(w, 8), _mm_mullo_epi16(tens, _mm_set1_epi16(2559)));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_add_epi8(w, _mm_set1_epi8('0')));
}

// x x 3518437209 >> 45 = x / 10000 for every 32-bit x.
void write_four(char* out, const Limb* a) {
  const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a));
  const __m128i inverse = _mm_set1_epi64x(3518437209);
  const __m128i even = _mm_srli_epi64(_mm_mul_epu32(x, inverse), 45);
  const __m128i odd = _mm_srli_epi64(_mm_mul_epu32(_mm_srli_epi64(x, 32), inverse), 45);
  const __m128i upper = _mm_or_si128(even, _mm_slli_epi64(odd, 32));
  const __m128i lower = _mm_sub_epi16(x, _mm_mullo_epi16(upper, _mm_set1_epi16(10000)));
  const __m128i quads = _mm_or_si128(upper, _mm_slli_epi32(lower, 16));
  const __m128i hundreds = _mm_srli_epi16(_mm_mulhi_epu16(quads, _mm_set1_epi16(5243)), 3);
  const __m128i units = _mm_sub_epi16(quads, _mm_mullo_epi16(hundreds, _mm_set1_epi16(100)));
  write_pairs(out, _mm_unpacklo_epi16(hundreds, units));
  write_pairs(out + 16, _mm_unpackhi_epi16(hundreds, units));
}
#endif

}  // namespace

void parse(Limbs r, std::string_view digits) {
  assert(r.size() == (digits.size() + 7) / 8);
  const char* text = digits.data();
  std::size_t k = 0;
  if (const std::size_t odd = digits.size() % kLimbDigits; odd > 0) {
    Limb value = 0;
    for (std::size_t i = 0; i < odd; ++i) value = value * 10 + static_cast<Limb>(text[i] - '0');
    r[k++] = value;
    text += odd;
  }
#if defined(__SSE2__)
  for (; k + 4 <= r.size(); k += 4, text += 4 * kLimbDigits) parse_four(&r[k], text);
#endif
  for (; k < r.size(); ++k, text += kLimbDigits) r[k] = parse_limb(text);
}

char* write(char* out, ConstLimbs a) {
  std::size_t k = 0;
#if defined(__SSE2__)
  for (; k + 4 <= a.size(); k += 4, out += 4 * kLimbDigits) write_four(out, &a[k]);
#endif
  for (; k < a.size(); ++k, out += kLimbDigits) write_limb(out, a[k]);
  return out;
}

}  // namespace tivelo::limbs
