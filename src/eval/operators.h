// The operators that apply to the single operand before them: powers and postfix operators, then
// gcd, lcm and remainder. Sums and products are calc's own. All but the power are for integers and
// take the numerator of anything else, which is reported.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// What an operator may use of the evaluation it is applied in.
struct Level {
  const char* text;
  numf auxiliary;  // its second operand; an unknown name there leaves what it held
  int depth;
};

inline constexpr int kPostfix = 2;  // '^', '!', 'P', 'C': directly after the operand
inline constexpr int kInteger = 3;  // 'G', 'L', 'M', '%': after that, spaces allowed before

struct Operator {
  char mark;
  int precedence;
  // Replaces *operand by the result. `position` is behind the mark; returns the position behind all
  // that was consumed, or a negative code when the evaluation stops.
  int (*apply)(Level& level, numf* operand, int position);
};

// The operator of that precedence written `mark`, or null.
const Operator* find_operator(char mark, int precedence);

// The power operator, which has a file of its own.
int apply_power(Level& level, numf* operand, int position);
}  // namespace tivelo
