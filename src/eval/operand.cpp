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
  mclear(target);
  const int count = ncton(text + blanks, target);
  if (target->c->dec == FF) report(Event::literal_in_decimal, {.place = text + blanks});
  return blanks + count;
}

// bracket: ( '(' | '|' ) expression, whose end the expression itself consumes
int read_bracket(const char* text, numf* target, int depth) {
  const int count = calc_nested(text + 1, target, depth);
  return count < 0 ? count : count + 1;
}

int read_unsigned(const char* text, numf* target, int depth) {
  const char first = text[0];
  const char second = first == '\0' ? '\0' : text[1];
  if (is_capital(first) && (is_capital(second) || second == '\'')) return func(text, target, depth);
  if (first == '(' || first == '|') return read_bracket(text, target, depth);
  if (is_capital(first) && (is_digit(second) || second == '#'))
    return read_cell_operand(text, target);
  if (!is_capital(first)) return read_literal(text, target);
  mark_read(first - 'A');
  copy(*target, M[first - 'A']);
  return 1;
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
