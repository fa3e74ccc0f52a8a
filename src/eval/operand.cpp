// One operand: sign, then the first kind whose test holds. Which kind it is shows in the character
// at the position and the one behind it.
#include "base/characters.h"
#include "base/interrupt.h"
#include "base/line_mark.h"
#include "base/precision.h"
#include "base/report.h"
#include "eval/builtins.h"
#include "eval/calc.h"
#include "fraction/arith.h"
#include "fraction/cells.h"
#include "fraction/reduce.h"

namespace tivelo {

namespace {

// cell: capital digit | capital '#' any any
int read_cell_operand(const char* text, numf* target) {
  int count = 2;
  int k = text[1] - '0';
  if (text[1] == '#') {
    while (count < 4 && text[count] != '\0') ++count;
    k = count == 4 ? named_cell(text[2], text[3]) : kNoCell;
  }
  const int v = text[0] - 'A';
  mclear(target);
  if (cell_is_free(v, k)) {
    mark_cell_read(v);
    unpack_cell(read_cell(v, k), target);
  } else {
    report(Event::cell_missing, {.place = text, .needed = k, .name = {text, 1}});
  }
  return count;
}

// literal: blanks digits [ '.' digits ]
int read_literal(const char* text, numf* target) {
  int blanks = 0;
  while (text[blanks] == ' ') ++blanks;
  const int count = ncton(text + blanks, target);
  if (target->c->dec == FF) report(Event::literal_in_decimal, {.place = text + blanks});
  return blanks + count;
}

// bracket: ( '(' | '|' ) expression, whose end the expression itself consumes
int read_bracket(const char* text, numf* target, int depth) {
  const int count = calc_nested(text + 1, target, depth);
  return count < 0 ? count : count + 1;
}

// variable: capital
int read_variable(const char* text, numf* target) {
  mark_read(text[0] - 'A');
  copy(*target, M[text[0] - 'A']);
  return 1;
}

int read_unsigned(const char* text, numf* target, int depth) {
  const char first = text[0];
  if (is_capital(first)) {
    const char second = text[1];
    if (is_capital(second) || second == '\'') return func(text, target, depth);
    if (is_digit(second) || second == '#') return read_cell_operand(text, target);
    return read_variable(text, target);
  }
  if (first == '(' || first == '|') return read_bracket(text, target, depth);
  return read_literal(text, target);
}

}  // namespace

int nread(const char* text, numf* target, int depth) {
  poll();
  const int signs = text[0] == '-' ? 1 : 0;
  const int count = read_unsigned(text + signs, target, depth);
  if (count < 0) return count;
  if (signs != 0) target->c->sign = -target->c->sign;
  nreduct(target->c, target->m);
  return signs + count;
}

}  // namespace tivelo
