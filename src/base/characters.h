// The characters that lines are made of, in ASCII whatever the locale, what cleaning a line does to
// each, and counts written as plain digits after an operator, a function name or a command letter.
#pragma once

#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tivelo {

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }
inline bool is_capital(char c) { return c >= 'A' && c <= 'Z'; }
inline bool is_control(char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; }

// Are the eight characters at `text` digits? Such are '0' to '9' that have 3 for their upper half,
// and still have when 6 is added; a carry from one byte to the next comes from no digit.
inline bool eight_digits(const char* text) {
  constexpr std::uint64_t kUpper = 0xF0F0F0F0F0F0F0F0;
  std::uint64_t w;
  std::memcpy(&w, text, sizeof w);
  return ((w & kUpper) | ((w + 0x0606060606060606) & kUpper) >> 4) == 0x3333333333333333;
}

// How many digits `text` begins with.
inline std::size_t leading_digits(std::string_view text) {
  std::size_t n = 0;
  while (n + 8 <= text.size() && eight_digits(text.data() + n)) n += 8;
  while (n < text.size() && is_digit(text[n])) ++n;
  return n;
}

// What becomes of one character of a line that is cleaned: kept, as it is or as a capital; dropped;
// kept with all that follows; the end of the line; or the line is rejected for it.
enum class Keep : unsigned char { reject, as_is, capital, drop, rest, end };

constexpr std::array<Keep, 256> keep_table() {
  std::array<Keep, 256> keep{};
  for (const char c : std::string_view("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ+-*/^!.,%'()|={}#<>"))
    keep[static_cast<unsigned char>(c)] = Keep::as_is;
  for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyz"))
    keep[static_cast<unsigned char>(c)] = Keep::capital;
  keep[' '] = Keep::drop;
  keep[':'] = Keep::rest;
  keep['\0'] = keep[';'] = keep['\n'] = Keep::end;
  return keep;
}

inline Keep classify(char c) {
  static constexpr std::array<Keep, 256> kKeep = keep_table();
  return kKeep[static_cast<unsigned char>(c)];
}

// Reads the decimal digits at `text` into *value, which saturates above INT_MAX: at INT_MAX + 1, so
// that a caller can tell. Returns how many digits there were; none leave the value 0.
inline int read_count(const char* text, long long* value) {
  constexpr long long kSaturated = static_cast<long long>(INT_MAX) + 1;
  int n = 0;
  for (*value = 0; is_digit(text[n]); ++n) {
    *value = *value * 10 + (text[n] - '0');
    if (*value > kSaturated) *value = kSaturated;
  }
  return n;
}

}  // namespace tivelo
