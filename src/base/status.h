// The codes by which an operation answers that it refused: 0 or more is success. A refusal leaves
// the operation's target as it was, except where it says otherwise (a quotient by zero is set to
// 0/1). What the user is told of it is an event (events.h), reported by whoever decides what the
// refusal means for the line.
#pragma once

namespace tivelo {

inline constexpr int kMisfit = -1;     // does not fit a machine integer; a shift leaves too little
inline constexpr int kTooLong = -2;    // a shift beyond the record
inline constexpr int kNegative = -3;   // a negative machine integer where none is allowed
inline constexpr int kNoOperand = -4;  // a character that starts no operand
inline constexpr int kTooDeep = -5;    // nesting beyond the evaluator's levels
inline constexpr int kNoRoom = -6;     // a sum or product that might not fit the record
inline constexpr int kDivisionByZero = -7;  // a zero divisor (or one that div does not take)

}  // namespace tivelo
