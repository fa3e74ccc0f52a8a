// The evaluation of one expression: operands, the operators behind them, products, sums.
#include "eval/calc.h"

#include "base/characters.h"
#include "base/line_mark.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "eval/levels.h"
#include "eval/operators.h"
#include "eval/short.h"
#include "fraction/arith.h"
#include "fraction/stepwise.h"

namespace tivelo {

namespace {

// What one evaluation keeps: where it is, which fraction the next operand goes to, and the
// operators that wait for their right-hand side.
struct Evaluation {
  const char* text;
  numf* result;  // the sum of the finished terms
  numf factor;   // the operand after a pending '*' or '/'
  numf term;     // the current term
  Level level;
  int position = 0;
  numf* slot;
  const char* additive;        // the '+' or '-' before the current term, or the text's start
  const char* multiplicative;  // the '*' or '/' before the factor

  Evaluation(const char* expression, numf* target, int depth)
      : text(expression),
        result(target),
        factor(factor_level(depth)),
        term(term_level(depth)),
        level{expression, auxiliary_level(depth), depth},
        slot(&term),
        additive(expression),
        multiplicative(nullptr) {
    mclear(result);
    mclear(&factor);
    mclear(&term);
    mclear(&level.auxiliary);
  }

  const char* at() const { return text + position; }
  char here() const { return text[position]; }
  void skip_spaces() {
    while (here() == ' ') ++position;
  }
  int apply_operator(int precedence);
  int read_factor();
  void look_for_missing(bool after_minus) const;
  void look_for_dropped() const;
  void divide_term();
  void finish_product();
  bool finish_term();
};

// Applies the operator at the position if it is one of this precedence. Negative when the
// evaluation stops.
int Evaluation::apply_operator(int precedence) {
  const Operator* op = find_operator(here(), precedence);
  if (op == nullptr) return 0;
  place_in_hand = at();
  const int next = op->apply(level, slot, position + 1);
  if (next >= 0) position = next;
  return next;
}

// factor: operand [ power or postfix operator ] [ gcd, lcm or remainder operator ]
int Evaluation::read_factor() {
  const bool minus = here() == '-';
  const int count = nread(at(), slot, operand_depth(level.depth));
  if (count < 0) return count;
  position += count;
  if (count == (minus ? 1 : 0)) look_for_missing(minus);
  const int status = apply_operator(kPostfix);
  if (status < 0) return status;
  skip_spaces();
  return apply_operator(kInteger);
}

// Does an operand end before this character? Otherwise another operand begins with it.
bool ends_operand(char c) {
  switch (c) {
    case '\0':
    case '+':
    case '-':
    case '*':
    case '/':
    case ')':
    case '|':
      return true;
    default:
      return false;
  }
}

// Nothing was read but perhaps a minus: the character here takes 0 as its left side. Of a sum that
// begins with its '+' everybody expects it.
void Evaluation::look_for_missing(bool after_minus) const {
  const char c = here();
  if (c == '+' && slot == &term && !after_minus) return;
  const bool is_operator =
      find_operator(c, kPostfix) != nullptr || find_operator(c, kInteger) != nullptr;
  if (!ends_operand(c) && !is_operator) return;
  const char quoted[] = {'\'', c, '\''};
  const std::string_view name = c == '\0' ? "the end of the line" : std::string_view(quoted, 3);
  report(Event::operand_missing, {.place = at(), .name = name});
}

// An operand was read, and another begins.
void Evaluation::look_for_dropped() const {
  const char c = here();
  if (is_capital(c) || is_digit(c) || c == '(' || (c == '.' && is_digit(at()[1])))
    report(Event::operand_dropped, {.place = at()});
}

void Evaluation::divide_term() {
  const int most = IS - 6;
  if (factor.c->len > most) {
    const auto held = static_cast<long long>(most) * kLimbDigits;
    report(Event::divisor_too_long, {.needed = digits_of(factor.c), .held = held});
    return;
  }
  const std::int32_t sign = factor.c->sign == term.c->sign ? 1 : -1;
  if (ndiv(&term, &term, &factor) == kDivisionByZero) report(Event::division_by_zero);
  term.c->sign = sign;
}

void Evaluation::finish_product() {
  if (slot == &term) return;
  place_in_hand = multiplicative;
  if (*multiplicative == '*') {
    nprod(&term, &term, &factor);
  } else {
    divide_term();
  }
}

// Adds the term that the character at the position ends, and steps over that character. True when
// it ends the expression too.
bool Evaluation::finish_term() {
  place_in_hand = additive;
  if (*additive == '-' && additive != text) term.c->sign = -term.c->sign;
  nsum(result, result, &term);
  additive = at();
  const char end = text[position++];
  slot = &term;
  if (end == '|') result->c->sign = 1;
  return end == ')' || end == '|' || end == '\0' || here() == ',';
}

}  // namespace

namespace {

// Puts the current result aside: its level is the answer's.
class ResultAside {
 public:
  ResultAside() { exchange_result(); }
  ~ResultAside() { exchange_result(); }
  ResultAside(const ResultAside&) = delete;
  ResultAside& operator=(const ResultAside&) = delete;
};

}  // namespace

// How much of the line was read matters to nobody.
void evaluate_line(const char* text, numf* target) {
  grant_steps();
  begin_mark();
  if (evaluate_short(text, target)) return;
  if (target == &Cn) {
    (void)calc(text, &spare, kLineDepth);
    exchange_result();
  } else {
    const ResultAside aside;
    (void)calc(text, target, kAnswerDepth);
  }
}

int evaluate_operand(const char* text, numf* target) {
  grant_steps();
  begin_mark();
  const int count = nread(text, target, kLineDepth);
  if (count < 0) mclear(target);
  return count;
}

int calc(const char* text, numf* target, int depth) {
  if (!depth_fits(depth)) return kTooDeep;
  Evaluation e(text, target, depth);
  while (e.here() != '\0') {
    const int before = e.position;
    const int status = e.read_factor();
    if (status < 0) return status;
    e.skip_spaces();
    if (!ends_operand(e.here())) {
      // Another operand follows and replaces this one, provided that something was read at all.
      e.look_for_dropped();
      if (e.position > before) continue;
      report(Event::no_operand, {.place = e.at(), .name = {e.at(), 1}});
      return kNoOperand;
    }
    e.finish_product();
    if (e.here() == '*' || e.here() == '/') {
      e.multiplicative = text + e.position++;
      e.slot = &e.factor;
    } else if (e.finish_term()) {
      return e.position;
    }
  }
  if (e.slot == &e.factor) e.look_for_missing(false);
  return e.position;
}

int calc_nested(const char* text, numf* target, int depth) {
  if (!depth_fits(depth)) {
    report(Event::nested_too_deep, {.place = text});
    return kTooDeep;
  }
  const int count = calc(text, target, depth);
  return count > 0 && text[count - 1] == '\0' ? count - 1 : count;
}

}  // namespace tivelo
