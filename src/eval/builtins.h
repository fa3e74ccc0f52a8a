// Functions and constants named by letters. Angles are in degrees. Where a value has no exact form
// it is a decimal of six places, or the text of eleven that a constant has.
#pragma once

#include <cstddef>
#include <string_view>

#include "fraction/numf.h"

namespace tivelo {

// What stands behind a name: decimal digits, or a bracketed expression.
struct Argument {
  long long a = 0;  // magnitude of the numerator, at most 2147483647
  long long d = 1;  // denominator
  int sign = 1;
  bool decimal = false;   // a bracket in decimal mode: a is then 0, and ...
  double magnitude = 0;   // ... this is its magnitude
  const char* rest = "";  // the text behind it, which LOG and ATAN read on
};

// Evaluates the function or constant at the start of `text` (two capitals, or a capital and an
// apostrophe) into target. Returns the characters consumed, at least 1: an unknown name consumes
// its first letter and leaves target alone. Negative when the evaluation stops.
[[nodiscard]] int func(const char* text, numf* target, int depth);

// The name of the i-th function or constant; empty behind the last one.
std::string_view builtin_name(std::size_t i);

// Trigonometry: target, which is 0/1, becomes the value. Return 0, or a negative code when the
// evaluation stops.
int eval_sine(Argument& argument, numf* target, int depth);
int eval_cosine(Argument& argument, numf* target, int depth);
int eval_tangent(Argument& argument, numf* target, int depth);

// Enters a value into the numerator through its text with six decimals, "%.6Lf", of which a leading
// 0 is left out. A text without digits ("inf") is 0.
void set_numeric(numf* target, long double value);

}  // namespace tivelo
