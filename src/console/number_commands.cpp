// Each command looks at its operands first, computes with records, and stores and marks last.
#include "console/number_commands.h"

#include <span>

#include "base/characters.h"
#include "base/exactness.h"
#include "base/line_mark.h"
#include "base/report.h"
#include "bigint/modular.h"
#include "eval/calc.h"
#include "numtheory/primes.h"

namespace tivelo {

namespace {

// The way on, past a point behind the word, and past blanks.
const char* behind_word(const char* at) {
  if (*at == '.') ++at;
  while (*at == ' ') ++at;
  return at;
}

// Reads the letters of variables, all that is left of the line; `form` says what is taken.
bool read_variables(const char* at, std::span<int> variables, const char* form) {
  const char* place = behind_word(at);
  bool right = true;
  for (int& v : variables) {
    right = right && is_capital(*place);
    if (!right) break;
    v = *place - 'A';
    do ++place;
    while (*place == ' ');
  }
  if (right && *place == '\0') return true;
  report(Event::variables_form, {.place = place, .name = form});
  return false;
}

bool is_integer(const numf& value) {
  return value.c->dec == 0 && value.c->shift == 0 && value.c->imag == 0 && is_one(value.m);
}

// Are all of them integers? Their marks then go on to what is made of them.
bool read_integers(std::span<const int> variables, const char* place) {
  begin_mark();
  for (const int v : variables) {
    if (!is_integer(M[v])) {
      const char name = static_cast<char>('A' + v);
      report(Event::integer_wanted, {.place = place, .name = {&name, 1}});
      return false;
    }
    mark_read(v);
  }
  return true;
}

// As assignments store a zero: with one limb.
void finish(std::span<const int> changed) {
  for (const int v : changed) {
    if (M[v].c->len == 0) M[v].c->len = 1;
    note_length(v);
  }
  mark_variables(changed);
}

}  // namespace

Flow divide_command(Run&, const char** at) {
  int v[2];
  if (!read_variables(*at, v, "two variables")) return Flow::next;
  num* x = M[v[0]].c;
  num* y = M[v[1]].c;
  if (x == y) {
    report(Event::variables_form, {.place = *at, .name = "two variables"});
  } else if (!read_integers(v, *at)) {
    return Flow::next;
  } else if (!has_value(y)) {
    report(Event::divisor_is_zero, {.place = *at});
  } else {
    quotient_and_remainder(x, y, x, y);
    finish(v);
  }
  return Flow::next;
}

Flow power_modulo_command(Run&, const char** at) {
  int v[3];
  if (!read_variables(*at, v, "three variables") || !read_integers(v, *at)) return Flow::next;
  const num* exponent = M[v[1]].c;
  const num* modulus = M[v[2]].c;
  if ((exponent->sign < 0 && has_value(exponent)) || modulus->sign < 0 || !has_value(modulus)) {
    report(Event::modular_range, {.place = *at});
    return Flow::next;
  }
  powm(M[v[0]].c, M[v[0]].c, exponent, modulus);
  finish(std::span(v).first(1));
  return Flow::next;
}

Flow prime_command(Run&, const char** at) {
  const char* text = behind_word(*at);
  const Lent c, m;
  numf value(c, m);
  mclear(&value);
  const long long before = refusals.count;
  if (*text == '\0') {
    copy(value, Cn);
  } else {
    evaluate_line(text, &value);
    place_in_hand = nullptr;
  }
  // What was refused has been told, and its value is not the one that was asked about.
  if (refusals.count != before) return Flow::next;
  if (!is_integer(value)) {
    report(Event::integer_wanted, {.place = text, .name = "the value"});
    return Flow::next;
  }
  const Primality answer = primality(value.c);
  put(*answers, answer == Primality::prime       ? "prime\n"
                : answer == Primality::composite ? "composite\n"
                                                 : "probably prime\n");
  return Flow::next;
}

Flow next_prime_command(Run&, const char** at) {
  int v[1];
  if (!read_variables(*at, v, "a variable") || !read_integers(v, *at)) return Flow::next;
  if (next_prime(M[v[0]].c) > 0) finish(v);
  return Flow::next;
}

}  // namespace tivelo
