// Decimal text to a number and back. The parser decides from the digits after the point whether a
// literal is exact (up to three: an integer over a power of ten) or in decimal mode (16 places).
#pragma once

#include <string_view>

#include "base/characters.h"
#include "bigint/num.h"

namespace tivelo {

// Parses blanks, digits and an optional point with digits at `text` into `a`. Returns the
// characters of the number, blanks not counted; a point without digits is not part of it.
// Up to three fraction digits: dec 0, dden 10^digits. More: dec FF, dden 1, the places cut or
// filled to 16, and the sixteenth set to 1 unless more than 16 were typed. Leading zeros count as
// digits, so they stay as limbs. A number of more than IS limbs becomes zero, its text consumed,
// which has been reported.
int cton(const char* text, num* a);

// Reads the one to eight digits that are a whole literal, with no blank before them and no point
// behind, as nearly all are. Returns how many, or 0 with nothing done for anything else.
inline int read_short(const char* text, Limb* value) {
  Limb sum = 0;
  int n = 0;
  for (; is_digit(text[n]); ++n) {
    if (n == kLimbDigits) return 0;
    sum = sum * 10 + static_cast<Limb>(text[n] - '0');
  }
  if (text[n] == '.') return 0;
  *value = sum;
  return n;
}

// Writes the digits of |a| (with its point in decimal mode, dec = FF) and a terminating zero at
// `out`, which has room for 8 len + 3 characters. The last limb of a decimal is left out when it is
// below 20: it is then the parser's mark or of its size. Returns 8 times the limbs written.
int ntoc(const num* a, char* out);

// Writes eight digits for each limb at `out`, without a terminating zero; returns the end.
char* write_digits(char* out, ConstLimbs a);

// Reads all of a from the digits: a.size() == (digits.size() + 7) / 8.
void read_digits(Limbs a, std::string_view digits);

// Writes v in decimal with a terminating zero, at most 21 bytes; returns the length.
int lltoa(long long v, char* out);

}  // namespace tivelo
