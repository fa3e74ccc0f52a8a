// The name table, the argument and the functions that are not trigonometric.
#include "eval/builtins.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/text.h"
#include "eval/calc.h"
#include "eval/levels.h"
#include "fraction/arith.h"

namespace tivelo {

namespace {

// Angles as second operands of angles nest at most this deep.
constexpr int kAngleNesting = 64;

// A decimal of more limbs exceeds every double.
constexpr int kMostLimbs = 45;

struct Builtin {
  const char* name;
  int (*evaluate)(Argument& argument, numf* target, int depth);
};

int set_constant(numf* target, const char* text) {
  ncton(text, target);
  report(Event::approximated);
  return 0;
}

int eval_e(Argument&, numf* target, int) { return set_constant(target, "2.71828182846"); }
int eval_pi(Argument&, numf* target, int) { return set_constant(target, "3.14159265359"); }
int eval_pol(Argument&, numf*, int) { return 0; }

// The roots that the exact values of trigonometry are made of have texts of their own.
const char* root_text(const Argument& argument) {
  if (argument.d != 1 || argument.decimal) return nullptr;
  switch (argument.a) {
    case 2:
      return "1.41421356237";
    case 3:
      return "1.73205080757";
    case 5:
      return "2.2360679775";
    default:
      return nullptr;
  }
}

int eval_root(Argument& argument, numf* target, int) {
  if (const char* text = root_text(argument)) {
    set_constant(target, text);
  } else if (argument.decimal && std::isinf(argument.magnitude)) {
    report(Event::root_too_large, {.needed = kMostLimbs * kLimbDigits});
  } else {
    const double exact = static_cast<double>(argument.a) / static_cast<double>(argument.d);
    set_numeric(target, std::sqrt(argument.decimal ? argument.magnitude : exact));
  }
  if (argument.sign < 0) {
    target->c->imag = 1;
    report(Event::imaginary_root);
  }
  return 0;
}

// Seconds since the epoch, as two limbs.
int eval_time(Argument&, numf* target, int) {
  const lldiv_t parts = std::lldiv(static_cast<long long>(std::time(nullptr)), kBase);
  const Limb limbs[] = {static_cast<Limb>(parts.quot), static_cast<Limb>(parts.rem)};
  set_limbs(target->c, limbs);
  return 0;
}

// "LOG" base any-character digits
int eval_logarithm(Argument& argument, numf* target, int) {
  const long long base = argument.a < 2 ? 2 : argument.a;
  if (*argument.rest != '\0') ++argument.rest;
  long double y = 0;
  if (!is_digit(*argument.rest)) report(Event::logarithm_form);
  for (; is_digit(*argument.rest); ++argument.rest) y = y * 10.0F + (*argument.rest - '0');
  // The text of this one keeps its leading 0; that of minus infinity, for y = 0, has no digits.
  char text[64];
  std::snprintf(text, sizeof text, "%.6Lf", std::log(y) / std::log(static_cast<long double>(base)));
  cton(text, target->c);
  report(Event::approximated);
  return 0;
}

// The second part of ATAN, read from `text`: its numerator, which is 0 when it is no machine
// integer. No decimal but zero is one, whatever its limbs would read as without the point.
long long imaginary_part(const num* a, const char* text) {
  int value = 0;
  const bool decimal = a->dec != 0 && has_value(a);
  if (decimal || ntoi(a, &value) != 0) report(Event::angle_part_too_large, {.place = text});
  return value;
}

// Half degrees, 0 to 720, of the direction (x, y).
long long half_degrees(long long x, long long y) {
  long long h = 180;
  if (x != 0) {
    const double angle =
        std::atan(std::fabs(static_cast<double>(y)) / std::fabs(static_cast<double>(x)));
    h = static_cast<long long>((angle * 180.0 * 2.0 + 1.57) / 3.141592);
  }
  if (x < 0 && y < 0) return h + 360;
  if (y < 0) return 720 - h;
  return x < 0 ? 360 - h : h;
}

// One level more, also for an evaluation that is interrupted.
class Deeper {
 public:
  explicit Deeper(int& level) : level_(level) { ++level_; }
  ~Deeper() { --level_; }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;

 private:
  int& level_;
};

// Reads ATAN's second part, behind its separator, and makes (x, y) the vector it describes with
// the argument as the real part.
int read_vector(Argument& argument, numf* target, int depth, long long* x, long long* y) {
  static int nesting = 0;
  char separator = *argument.rest++;
  if (*argument.rest == '+' || *argument.rest == '-') separator = *argument.rest++;
  if (nesting >= kAngleNesting) {
    report(Event::angles_too_deep, {.place = argument.rest, .held = kAngleNesting});
    return kTooDeep;
  }
  const Deeper deeper(nesting);
  const char* text = argument.rest;
  const int count = nread(text, target, argument_depth(depth));
  if (count < 0) return count;
  argument.rest += count;
  *x = argument.a * argument.sign * small_magnitude(target->m, 1);
  *y = argument.d * imaginary_part(target->c, text);
  if (separator == '-') *y = -*y;
  rclear(target->c);
  set_one_limb(target->m, 1);
  if (*argument.rest == 'I') ++argument.rest;
  return 0;
}

// "ATAN" slope | "ATAN" real ( '+' | '-' | ',' [ '+' | '-' ] ) imaginary [ 'I' ]
int eval_angle(Argument& argument, numf* target, int depth) {
  long long x = argument.d;
  long long y = argument.a * argument.sign;
  if (*argument.rest != '\0' && std::strchr("+-,", *argument.rest) != nullptr) {
    const int status = read_vector(argument, target, depth, &x, &y);
    if (status < 0) return status;
  }
  const long long h = half_degrees(x, y);
  if (x != 0 && y != 0 && x != y && x != -y) report(Event::approximated);
  set_one_limb(target->c, static_cast<Limb>(h % 2 == 0 ? h / 2 : h));
  set_one_limb(target->m, h % 2 == 0 ? 1 : 2);
  return 0;
}

// The first row whose name stands at the start wins, whatever follows.
constexpr Builtin kBuiltins[] = {
    {"SIN", eval_sine},  {"COS", eval_cosine}, {"TAN", eval_tangent}, {"LOG", eval_logarithm},
    {"SQRT", eval_root}, {"SQR", eval_root},   {"EXP", eval_e},       {"E'", eval_e},
    {"PI", eval_pi},     {"TIME", eval_time},  {"POL", eval_pol},     {"ATAN", eval_angle},
};

bool starts_with(const char* text, const char* name) {
  if (std::strncmp(text, "Si", 2) == 0 && std::strcmp(name, "SIN") == 0) return text[2] == 'N';
  return std::strncmp(text, name, std::strlen(name)) == 0;
}

// The value of a bracket in decimal mode as a double: its integer limb and the eight places behind
// it, or for a wider one the whole value.
double decimal_magnitude(const num* c) {
  constexpr int kNarrow = FF + 1;
  if (c->len <= kNarrow) {
    const ConstLimbs limbs = in_use(c);
    const double integer = c->len == kNarrow ? limbs[0] : 0;
    return integer + (c->len >= FF ? limbs[limbs.size() - FF] : 0) * 1e-8;
  }
  if (magnitude(c).size() > kMostLimbs) return HUGE_VAL;
  char text[(kMostLimbs + 1) * kLimbDigits];
  const Lent copy({c});
  rncopy(copy, c);
  trim(copy, copy->len - kNarrow);
  ntoc(copy, text);
  return std::strtod(text, nullptr);
}

// argument: [ '.' ] ( '(' expression | digits )
int read_argument(const char* text, numf* target, int depth, Argument& argument) {
  mclear(target);
  if (*text == '.') ++text;
  argument.rest = text;
  if (*text == '(') {
    const int count = calc_nested(text + 1, target, argument_depth(depth));
    if (count < 0) return count;
    argument.rest = text + 1 + count;
    int a = 0;
    int d = 1;
    argument.decimal = target->c->dec == FF;
    if (argument.decimal) argument.magnitude = decimal_magnitude(target->c);
    if (!argument.decimal && ntoi(target->c, &a) != 0)
      report(Event::argument_too_large, {.place = text});
    if (ntoi(target->m, &d) != 0) d = 1;
    argument.sign = a < 0 ? -1 : 1;
    argument.a = std::abs(a);
    argument.d = std::abs(d);
  } else {
    argument.rest += read_count(text, &argument.a);
    if (argument.a > INT_MAX) {
      report(Event::argument_too_large, {.place = text});
      argument.a = 0;
    }
  }
  mclear(target);
  return 0;
}

}  // namespace

void set_numeric(numf* target, long double value) {
  char text[400];
  std::snprintf(text, sizeof text, "%.6Lf", value);
  cton(text[0] == '0' ? text + 1 : text, target->c);
  report(Event::approximated);
}

namespace {

// A name that is none here: its first letter is skipped. An operator of letters between two
// variables looks like one.
int skip_unknown(const char* text) {
  std::size_t length = 0;
  while (is_capital(text[length])) ++length;
  const bool apart = length <= 3 && std::strchr("GLM", text[1]) != nullptr;
  report(apart ? Event::letters_no_function : Event::unknown_name,
         {.place = text, .name = {text, length}});
  return 1;
}

}  // namespace

int func(const char* text, numf* target, int depth) {
  for (const Builtin& builtin : kBuiltins) {
    if (!starts_with(text, builtin.name)) continue;
    Argument argument;
    int status = read_argument(text + std::strlen(builtin.name), target, depth, argument);
    place_in_hand = text;
    if (status >= 0) status = builtin.evaluate(argument, target, depth);
    if (status < 0) return status;
    if (*argument.rest == '.') {
      if (is_digit(argument.rest[1])) report(Event::argument_ends, {.place = argument.rest});
      ++argument.rest;
    }
    return static_cast<int>(argument.rest - text);
  }
  return skip_unknown(text);
}

std::string_view builtin_name(std::size_t i) {
  return i < std::size(kBuiltins) ? kBuiltins[i].name : std::string_view();
}

}  // namespace tivelo
