#include "eval/operators.h"

#include <algorithm>
#include <array>
#include <climits>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "eval/calc.h"
#include "eval/falling.h"
#include "fraction/reduce.h"
#include "limbs/arith.h"
#include "limbs/divide.h"

namespace tivelo {

namespace {

constexpr Operator kOperators[] = {
    {'^', kPostfix, apply_power},        {'!', kPostfix, apply_factorial},
    {'P', kPostfix, apply_permutations}, {'C', kPostfix, apply_combinations},
    {'G', kInteger, apply_gcd},          {'L', kInteger, apply_lcm},
    {'M', kInteger, apply_remainder},    {'%', kInteger, apply_remainder},
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

// The least limb of a long operand does not say how many things there are to choose from; such an
// operand counts as this many.
constexpr int kManyThings = 999999;

namespace {

// n of nPk and nCk.
int things(const num* n) { return n->len > 1 ? kManyThings : static_cast<int>(units(n)); }

// n (n-1) for n = 2 and for a zero that is counted as many things, whose factors begin 0, -1: a
// product by 1 or -1 sets nothing but the sign, so the limbs and the decimal mode stay.
bool permute_by_sign(num* n, int k) {
  const ConstLimbs value = magnitude(n);
  const bool two = value.size() == 1 && value[0] == 2;
  if (k != 2 || !(two || value.empty())) return false;
  n->sign = two ? 1 : static_cast<std::int8_t>(-n->sign);
  return true;
}

// Replaces n by n (n-1) ... (n-k+1) for k <= things(n). Zero when that does not fit.
void permute(num* n, int k) {
  if (k == 0) {
    clear(n);
    iton(n, 1);
  } else if (k > things(n)) {
    clear(n);
  } else if (k > 1 && !permute_by_sign(n, k)) {
    falling_factorial(n, k);
  }
}

// Reads k and returns the position behind it.
int read_k(const Level& level, int position, int* k) {
  long long value = 0;
  position += read_count(level.text + position, &value);
  *k = static_cast<int>(std::min<long long>(value, INT_MAX));
  return position;
}

// Reads the second operand into the auxiliary, after spaces.
int read_second(Level& level, int position) {
  while (level.text[position] == ' ') ++position;
  const int count = nread(level.text + position, &level.auxiliary, level.depth + 3);
  return count < 0 ? count : position + count;
}

// a = a / divisor, which divides it.
void exact_quotient(num* a, const num* divisor) {
  nndiv(a, nullptr, a, divisor);
  trim(a, a->len);
}

}  // namespace

int apply_factorial(Level&, numf* operand, int position) {
  num* n = operand->c;
  long long m = 0;
  if (n->len >= 3 || ntoll(n, &m) != 0) return position;
  if (m < 0) m = -m;
  if (m >= kBase) {
    explain("the factorial of a number above 99999999 fits no precision; taken as 0");
    clear(n);
  } else if (m == 2) {
    n->sign = 1;
  } else if (m > 2) {
    trim(n, n->len);
    falling_factorial(n, static_cast<int>(m));
  }
  return position;
}

int apply_permutations(Level& level, numf* operand, int position) {
  int k = 0;
  position = read_k(level, position, &k);
  permute(operand->c, k);
  return position;
}

int apply_combinations(Level& level, numf* operand, int position) {
  int k = 0;
  position = read_k(level, position, &k);
  num* n = operand->c;
  const int all = things(n);
  if (n->len < 4 && all / 2 < k && k <= all) k = all - k;
  permute(n, k);
  if (k <= all)
    for (int i = 2; i <= k && !is_short_zero(n); ++i) div(n, i);
  return position;
}

int apply_gcd(Level& level, numf* operand, int position) {
  position = read_second(level, position);
  if (position >= 0) ngcm(operand->c, operand->c, level.auxiliary.c);
  return position;
}

// a L b is a x (b / gcd(a, b)). The auxiliary keeps b / gcd(a, b): an unknown name behind a later
// '^' or 'G' leaves it as it is.
int apply_lcm(Level& level, numf* operand, int position) {
  position = read_second(level, position);
  if (position < 0) return position;
  num* a = operand->c;
  num* b = level.auxiliary.c;
  if (!has_value(a) || !has_value(b)) {
    nreduct(a, b);
    clear(a);
    return position;
  }
  ngcm(Ze, a, b);
  exact_quotient(b, Ze);
  (void)prod(a, a, b);  // a refused product leaves the operand and has been explained
  return position;
}

int apply_remainder(Level& level, numf* operand, int position) {
  long long k = 0;
  const int digits = read_count(level.text + position, &k);
  if (k > INT_MAX) {
    explain_at(level.text + position, "remainder by more than %d; left unchanged", INT_MAX);
    err(kMisfit);
    return position + digits;
  }
  num* n = operand->c;
  int rest = 0;
  if (k == 0) {
    explain_at(level.text + position, "remainder by zero; taken as 0");
  } else {
    rest = static_cast<int>(limbs::remainder_limb(in_use(n), static_cast<std::uint32_t>(k)));
    n->rem = rest;
    n->rdiv = static_cast<int>(k);
  }
  iton(n, rest);
  return position + digits;
}

}  // namespace tivelo
