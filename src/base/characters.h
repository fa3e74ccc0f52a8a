// The characters that lines are made of, in ASCII whatever the locale, and counts written as plain
// digits after an operator, a function name or a command letter.
#pragma once

#include <climits>

namespace tivelo {

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }
inline bool is_capital(char c) { return c >= 'A' && c <= 'Z'; }

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
