// The operators but for powers: what each reads behind its mark, and the operation it stands for.
#include "eval/operators.h"

#include <algorithm>
#include <array>
#include <climits>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/addsub.h"
#include "bigint/combinatorics.h"
#include "bigint/divisors.h"
#include "bigint/muldiv.h"
#include "eval/calc.h"
#include "eval/levels.h"
#include "fraction/reduce.h"

namespace tivelo {

namespace {

void expect_integer(const numf& operand, const char* mark) {
  if (is_one(operand.m) && operand.c->dec == 0) return;
  report(Event::numerator_only, {.place = mark, .name = {mark, 1}});
}

// Reads k and returns the position behind it.
int read_k(const Level& level, int position, int* k) {
  const char* mark = level.text + position - 1;
  long long value = 0;
  const int digits = read_count(level.text + position, &value);
  if (digits == 0) report(Event::count_missing, {.place = mark, .name = {mark, 1}});
  position += digits;
  *k = static_cast<int>(std::min<long long>(value, INT_MAX));
  return position;
}

// Reads the second operand into the auxiliary, after spaces.
int read_second(Level& level, int position) {
  const char* mark = level.text + position - 1;
  while (level.text[position] == ' ') ++position;
  const int count =
      nread(level.text + position, &level.auxiliary, second_operand_depth(level.depth));
  if (count < 0) return count;
  expect_integer(level.auxiliary, mark);
  place_in_hand = mark;
  return position + count;
}

int apply_factorial(Level& level, numf* operand, int position) {
  expect_integer(*operand, level.text + position - 1);
  if (!has_value(operand->c)) report(Event::factorial_of_zero);
  factorial(operand->c);
  return position;
}

// Permutations or combinations, whose k is digits.
template <void (*kSelect)(num* n, int k)>
int apply_selection(Level& level, numf* operand, int position) {
  expect_integer(*operand, level.text + position - 1);
  int k = 0;
  position = read_k(level, position, &k);
  kSelect(operand->c, k);
  return position;
}

int apply_gcd(Level& level, numf* operand, int position) {
  expect_integer(*operand, level.text + position - 1);
  position = read_second(level, position);
  if (position >= 0) ngcm(operand->c, operand->c, level.auxiliary.c);
  return position;
}

// a L b is a x (b / gcd(a, b)). The auxiliary keeps b / gcd(a, b): an unknown name behind a later
// '^' or 'G' leaves it as it is.
int apply_lcm(Level& level, numf* operand, int position) {
  expect_integer(*operand, level.text + position - 1);
  position = read_second(level, position);
  if (position < 0) return position;
  num* a = operand->c;
  num* b = level.auxiliary.c;
  if (!has_value(a) || !has_value(b)) {
    nreduct(a, b);
    clear(a);
    return position;
  }
  const Lent divisor({a, b});
  ngcm(divisor, a, b);
  exact_quotient(b, divisor);
  (void)prod(a, a, b);  // a refused product leaves the operand and has been reported
  return position;
}

int apply_remainder(Level& level, numf* operand, int position) {
  const char* mark = level.text + position - 1;
  expect_integer(*operand, mark);
  long long k = 0;
  const int digits = read_count(level.text + position, &k);
  if (k > INT_MAX) {
    report(Event::remainder_too_large, {.held = INT_MAX});
    return position + digits;
  }
  num* n = operand->c;
  int rest = 0;
  if (digits == 0) {
    report(Event::digits_missing, {.place = mark, .name = {mark, 1}});
  } else if (k == 0) {
    report(Event::remainder_by_zero);
  } else {
    rest = remainder(n, static_cast<int>(k));
  }
  iton(n, rest);
  return position + digits;
}

constexpr Operator kOperators[] = {
    {'^', kPostfix, apply_power},
    {'!', kPostfix, apply_factorial},
    {'P', kPostfix, apply_selection<permutations>},
    {'C', kPostfix, apply_selection<combinations>},
    {'G', kInteger, apply_gcd},
    {'L', kInteger, apply_lcm},
    {'M', kInteger, apply_remainder},
    {'%', kInteger, apply_remainder},
};

// The row of kOperators for each character, or null.
constexpr std::array<const Operator*, 256> make_rows() {
  std::array<const Operator*, 256> rows{};
  for (const Operator& op : kOperators) rows[static_cast<unsigned char>(op.mark)] = &op;
  return rows;
}

}  // namespace

const Operator* find_operator(char mark, int precedence) {
  static constexpr std::array<const Operator*, 256> kRows = make_rows();
  const Operator* op = kRows[static_cast<unsigned char>(mark)];
  return op != nullptr && op->precedence == precedence ? op : nullptr;
}

}  // namespace tivelo
