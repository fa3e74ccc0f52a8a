// Counts written as plain digits after an operator, a function name or a command letter.
#pragma once

#include <climits>

namespace tivelo {

// Reads the decimal digits at `text` into *value, which saturates above INT_MAX: at INT_MAX + 1, so
// that a caller can tell. Returns how many digits there were; none leave the value 0.
inline int read_count(const char* text, long long* value) {
  constexpr long long kSaturated = static_cast<long long>(INT_MAX) + 1;
  int n = 0;
  for (*value = 0; text[n] >= '0' && text[n] <= '9'; ++n) {
    *value = *value * 10 + (text[n] - '0');
    if (*value > kSaturated) *value = kSaturated;
  }
  return n;
}

}  // namespace tivelo
