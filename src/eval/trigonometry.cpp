// Sine, cosine and tangent of an angle in degrees. Angles with a closed form in square roots take
// it, as an expression text; the others are computed in long double with 3.141592 for pi, and enter
// as a decimal of six places.
#include <cmath>

#include "base/report.h"
#include "bigint/text.h"
#include "eval/builtins.h"
#include "eval/calc.h"
#include "eval/levels.h"

namespace tivelo {

namespace {

constexpr double kPi = 3.141592;
constexpr float kHalfTurn = 180.0F;

struct ExactValue {
  int degrees;
  const char* text;
};

// Sines of the first quarter turn; those of the second are mirrored.
constexpr ExactValue kSines[] = {
    {0, "0"},       {15, "(SQR2*SQR3-SQR2)/4"}, {18, "(SQR5-1)/4"}, {30, "1/2"},
    {45, "SQR2/2"}, {54, "(1+SQR5)/4"},         {60, "SQR3/2"},     {75, "(SQR2*SQR3+SQR2)/4"},
    {90, "1"},
};

constexpr ExactValue kTangents[] = {{0, "0"}, {30, "SQR3/3"}, {45, "1"}, {60, "SQR3"}};

template <std::size_t N>
const char* exact_text(const ExactValue (&table)[N], long long degrees) {
  for (const ExactValue& value : table)
    if (value.degrees == degrees) return value.text;
  return nullptr;
}

// Texts without an operator are plain values; the others are evaluated.
int set_exact(const char* text, numf* target, int depth) {
  const bool root = text[0] == 'S' || text[0] == '(';
  if (root) {
    const int count = calc_nested(text, target, argument_depth(depth));
    return count < 0 ? count : 0;
  }
  if (text[0] == '0') return 0;
  set_one_limb(target->c, 1);
  set_one_limb(target->m, text[1] == '\0' ? 1 : 2);
  return 0;
}

// sin(a/d degrees) times s, for a >= 0.
int sine(long long a, long long d, int s, numf* target, int depth) {
  const long long in_turn = a % (360 * d);
  const long long in_half = a % (180 * d);
  const char* exact = nullptr;
  if (d == 1) exact = exact_text(kSines, in_half > 90 ? 180 - in_half : in_half);
  if (exact != nullptr) {
    const int status = set_exact(exact, target, depth);
    if (status < 0) return status;
  } else {
    set_numeric(target, std::sin(static_cast<long double>(in_half) * kPi / kHalfTurn /
                                 static_cast<long double>(d)));
  }
  if (in_turn > 180 * d) target->c->sign = -1;
  if (s < 0) target->c->sign = -target->c->sign;
  return 0;
}

}  // namespace

int eval_sine(Argument& argument, numf* target, int depth) {
  return sine(argument.a, argument.d, argument.sign, target, depth);
}

int eval_cosine(Argument& argument, numf* target, int depth) {
  return sine(argument.a + 90 * argument.d, argument.d, 1, target, depth);
}

int eval_tangent(Argument& argument, numf* target, int depth) {
  const long long d = argument.d;
  long long a = argument.a % (180 * d);
  int sign = argument.sign;
  if (a > 90 * d) {
    a = 180 * d - a;
    sign = -sign;
  }
  if (d == 1 && a == 90) {
    report(Event::tangent_of_right_angle);
  } else if (const char* exact = d == 1 ? exact_text(kTangents, a) : nullptr) {
    const int status = set_exact(exact, target, depth);
    if (status < 0) return status;
  } else {
    set_numeric(target,
                std::tan(static_cast<long double>(a) * kPi / static_cast<long double>(180 * d)));
  }
  target->c->sign = sign;
  return 0;
}

}  // namespace tivelo
