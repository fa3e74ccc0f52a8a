// Every operation answers with an int: 0 or more for success, one of these codes for a refusal.
// A refused operation leaves its target as it was.
#pragma once

#include <span>

namespace tivelo {

inline constexpr int kMisfit = -1;     // does not fit a machine integer; shift leaves too little
inline constexpr int kTooLong = -2;    // a shift beyond the record; a divisor too long
inline constexpr int kNegative = -3;   // a negative machine integer where none is allowed
inline constexpr int kNoOperand = -4;  // a character that starts no operand
inline constexpr int kTooDeep = -5;    // nesting beyond the scratch registers
inline constexpr int kNoRoom = -6;     // a sum or product that might not fit the record
inline constexpr int kDivisionByZero = -7;  // a zero divisor (or one that div does not take)

struct StatusRow {
  int code;
  const char* meaning;
  const char* returned_by;
  bool shown;  // the user sees "err " for it
};

// One row for each code and each kind of caller that returns it, from -1 downwards.
std::span<const StatusRow> status_table();

}  // namespace tivelo
