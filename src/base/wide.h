// The integer of 128 bits: for products of two 64-bit words, and nothing else. Compilers for 64-bit
// processors have one without a name in the language; elsewhere it is two words.
#pragma once

#include <bit>
#include <cassert>
#include <compare>
#include <concepts>
#include <cstdint>

namespace tivelo {

// Unsigned, modulo 2^128; shifts from 0 to 127, division by anything but 0. Only what is in use.
struct TwoWords {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  constexpr TwoWords() = default;
  constexpr TwoWords(std::uint64_t x) : low(x) {}  // as of every integer: words turn into it
  constexpr TwoWords(std::uint64_t upper, std::uint64_t lower) : high(upper), low(lower) {}
  template <std::integral T>
  constexpr explicit operator T() const {
    return static_cast<T>(low);
  }

  constexpr bool operator==(const TwoWords&) const = default;
  constexpr std::strong_ordering operator<=>(const TwoWords& y) const {
    return high != y.high ? high <=> y.high : low <=> y.low;
  }

  friend constexpr TwoWords operator+(TwoWords x, TwoWords y) {
    const std::uint64_t sum = x.low + y.low;
    return {x.high + y.high + (sum < x.low ? 1u : 0u), sum};
  }
  friend constexpr TwoWords operator-(TwoWords x, TwoWords y) {
    return {x.high - y.high - (x.low < y.low ? 1u : 0u), x.low - y.low};
  }
  friend constexpr TwoWords operator&(TwoWords x, TwoWords y) {
    return {x.high & y.high, x.low & y.low};
  }
  friend constexpr TwoWords operator<<(TwoWords x, int n) {
    assert(n >= 0 && n < 128);
    if (n == 0) return x;
    if (n >= 64) return {x.low << (n - 64), 0};
    return {x.high << n | x.low >> (64 - n), x.low << n};
  }
  friend constexpr TwoWords operator>>(TwoWords x, int n) {
    assert(n >= 0 && n < 128);
    if (n == 0) return x;
    if (n >= 64) return {0, x.high >> (n - 64)};
    return {x.high >> n, x.high << (64 - n) | x.low >> n};
  }
  friend constexpr TwoWords operator*(TwoWords x, TwoWords y) {
    constexpr std::uint64_t kHalf = 0xffffffff;
    const std::uint64_t a = x.low >> 32, b = x.low & kHalf, c = y.low >> 32, d = y.low & kHalf;
    const std::uint64_t middle = (b * d >> 32) + (a * d & kHalf) + (b * c & kHalf);
    return {
        a * c + (a * d >> 32) + (b * c >> 32) + (middle >> 32) + x.high * y.low + x.low * y.high,
        middle << 32 | (b * d & kHalf)};
  }
  // Bit by bit: products of words are reduced by it where no processor divides 128 bits.
  friend constexpr TwoWords operator/(TwoWords x, TwoWords y) {
    TwoWords q;
    while (x >= y) {
      int n = x.width() - y.width();
      if ((y << n) > x) --n;
      x = x - (y << n);
      q = q + (TwoWords(1) << n);
    }
    return q;
  }
  friend constexpr TwoWords operator%(TwoWords x, TwoWords y) { return x - x / y * y; }
  constexpr TwoWords& operator+=(TwoWords y) { return *this = *this + y; }
  constexpr TwoWords& operator/=(TwoWords y) { return *this = *this / y; }

 private:
  constexpr int width() const {
    return high != 0 ? 64 + static_cast<int>(std::bit_width(high))
                     : static_cast<int>(std::bit_width(low));
  }
};

#ifdef __SIZEOF_INT128__
__extension__ typedef unsigned __int128 Wide;
#else
using Wide = TwoWords;
#endif

}  // namespace tivelo
