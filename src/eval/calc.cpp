#include "eval/calc.h"

#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/pool.h"
#include "eval/operators.h"
#include "fraction/arith.h"

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
  char additive = '+';
  char multiplicative = '*';

  Evaluation(const char* expression, numf* target, int depth)
      : text(expression),
        result(target),
        factor(Zc[depth], Zm[depth]),
        term(Zc[depth + 1], Zm[depth + 1]),
        level{expression, numf(Zc[depth + 2], Zm[depth + 2]), depth},
        slot(&term) {
    mclear(result);
    mclear(&factor);
    mclear(&term);
    mclear(&level.auxiliary);
  }

  char here() const { return text[position]; }
  void skip_spaces() {
    while (here() == ' ') ++position;
  }
  int apply_operator(int precedence);
  int read_factor();
  void finish_product();
  bool finish_term();
};

// Applies the operator at the position if it is one of this precedence. Negative when the
// evaluation stops.
int Evaluation::apply_operator(int precedence) {
  const Operator* op = find_operator(here(), precedence);
  if (op == nullptr) return 0;
  const int next = op->apply(level, slot, position + 1);
  if (next >= 0) position = next;
  return next;
}

// factor: operand [ power or postfix operator ] [ gcd, lcm or remainder operator ]
int Evaluation::read_factor() {
  const int count = nread(text + position, slot, level.depth + 2);
  if (count < 0) return count;
  position += count;
  const int status = apply_operator(kPostfix);
  if (status < 0) return status;
  skip_spaces();
  return apply_operator(kInteger);
}

void Evaluation::finish_product() {
  if (slot == &term) return;
  if (multiplicative == '*') {
    err(nprod(&term, &term, &factor));
    return;
  }
  if (factor.c->len >= IS - 5) {
    explain("divisor of %d limbs, at most %d are taken; not divided", factor.c->len, IS - 6);
    err(kTooLong);
    return;
  }
  const std::int8_t sign = factor.c->sign == term.c->sign ? 1 : -1;
  err(ndiv(&term, &term, &factor));
  term.c->sign = sign;
}

// Adds the term that the character at the position ends, and steps over that character. True when
// it ends the expression too.
bool Evaluation::finish_term() {
  const char end = text[position++];
  if (additive == '-') term.c->sign = static_cast<std::int8_t>(-term.c->sign);
  (void)nsum(result, result, &term);  // a refused sum leaves the result and has been explained
  additive = end;
  slot = &term;
  if (end == '|') result->c->sign = 1;
  return end == ')' || end == '|' || end == '\0' || here() == ',';
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

}  // namespace

bool depth_fits(int depth) { return depth + 2 < kRegisterPairs; }

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
      if (e.position > before) continue;
      explain_at(text + e.position, "'%c' starts no operand", e.here());
      err(kNoOperand);
      return kNoOperand;
    }
    e.finish_product();
    if (e.here() == '*' || e.here() == '/') {
      e.multiplicative = text[e.position++];
      e.slot = &e.factor;
    } else if (e.finish_term()) {
      return e.position;
    }
  }
  return e.position;
}

int calc_nested(const char* text, numf* target, int depth) {
  if (!depth_fits(depth)) {
    explain_at(text, "nested too deep");
    err(kTooDeep);
    return kTooDeep;
  }
  const int count = calc(text, target, depth);
  return count > 0 && text[count - 1] == '\0' ? count - 1 : count;
}

}  // namespace tivelo
