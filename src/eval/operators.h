// The operators that apply to the single operand before them: powers and postfix operators, then
// gcd, lcm and remainder. Sums and products are calc's own.
#pragma once

#include "fraction/numf.h"

namespace tivelo {

// What an operator may use of the evaluation it is applied in.
struct Level {
  const char* text;
  numf auxiliary;  // its second operand, and scratch
  int depth;       // a second operand is read at depth + 3
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

int apply_power(Level& level, numf* operand, int position);
int apply_factorial(Level& level, numf* operand, int position);
int apply_permutations(Level& level, numf* operand, int position);
int apply_combinations(Level& level, numf* operand, int position);
int apply_gcd(Level& level, numf* operand, int position);
int apply_lcm(Level& level, numf* operand, int position);
int apply_remainder(Level& level, numf* operand, int position);

}  // namespace tivelo
