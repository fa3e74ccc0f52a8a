#include "output/print.h"

#include <algorithm>

#include "base/precision.h"
#include "base/report.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "bigint/text.h"
#include "fraction/cells.h"
#include "fraction/reduce.h"
#include "limbs/arith.h"
#include "limbs/divide.h"
#include "limbs/text.h"

namespace tivelo {

namespace {

// Where a fraction is being printed to, and its two parts: the integer part is in Z3, the remainder
// over the denominator m in Z4.
struct Fraction {
  Out& to;
  char* scratch;
  const num* m;
  int machine_m;  // m when it fits a machine integer, else 0
};

void put_number(Out& to, const num* a, char* scratch) {
  ntoc(a, scratch);
  put(to, scratch);
}

// A decimal over an integer denominator other than 1, as scaling a denominator leaves it, is shown
// as the decimal over 1 that reduction makes of it; a decimal shorter than its places is shown as
// if padded to them.
const num* printable_decimal(const num* c, const num* m) {
  rncopy(Z3, c);
  rncopy(Z2, m);
  if (!is_one(Z2)) nreduct(Z3, Z2);
  while (Z3->len < FF) {
    ++Z3->len;
    in_use(Z3)[0] = 0;
  }
  return Z3;
}

// Splits |c| / m into Z3 and Z4.
void split(const num* c, const Fraction& f) {
  if (f.machine_m == 0) {
    nndiv(Z3, Z4, c, f.m);
    return;
  }
  rncopy(Z3, c);
  div(Z3, f.machine_m);
  iton(Z4, Z3->rem);
}

void print_mixed(const Fraction& f) {
  if (!has_value(Z4)) return;
  put(f.to, " ");
  put_number(f.to, Z4, f.scratch);
  put(f.to, "/");
  put_number(f.to, f.m, f.scratch);
  put(f.to, " ");
}

// The next `count` groups of eight digits, which are the quotient of the remainder x 10^(8 count)
// by the denominator; Z4 becomes the new remainder. The groups lie in the engine's workspace.
ConstLimbs next_groups(const Fraction& f, std::size_t count) {
  Workspace ws = engine;
  const ConstLimbs remainder = magnitude(Z4);
  const Limbs dividend = ws.take<Limb>(remainder.size() + count);
  std::ranges::copy(remainder, dividend.begin());
  std::ranges::fill(dividend.last(count), Limb{0});
  if (f.machine_m != 0) {
    const auto divisor = static_cast<std::uint32_t>(f.machine_m);
    iton(Z4, static_cast<int>(limbs::divide_limb(dividend, dividend, divisor)));
    return dividend.last(count);
  }
  const ConstLimbs divisor = magnitude(f.m);
  if (dividend.size() < divisor.size()) {
    Z4->len = static_cast<int>(dividend.size());
    std::ranges::copy(dividend, in_use(Z4).begin());
    std::ranges::fill(dividend, Limb{0});
    return dividend.last(count);
  }
  const Limbs quotient = ws.take<Limb>(dividend.size() - divisor.size() + 1 + count);
  const Limbs rest = ws.take<Limb>(divisor.size());
  std::ranges::fill(quotient.first(count), Limb{0});
  limbs::divide(quotient.subspan(count), rest, dividend, divisor, ws);
  Z4->len = static_cast<int>(rest.size());
  std::ranges::copy(rest, in_use(Z4).begin());
  return quotient.last(count);
}

// The groups are found many at a time: by a machine integer in pieces that stay in the cache, by a
// long denominator all at once. An expansion that ends does so at its last group that is not zero.
void print_expansion(const Fraction& f, int digits) {
  constexpr std::size_t kPiece = 2048;
  if (!has_value(Z4)) return;
  if (f.m->len >= IS - 1) {
    explain("a denominator of %d limbs leaves no room to find digits", f.m->len);
    put(f.to, ".. ");
    return;
  }
  put(f.to, ".");
  std::size_t left = (static_cast<std::size_t>(digits) + 7) / 8;
  while (left > 0 && has_value(Z4)) {
    const std::size_t count = f.machine_m != 0 ? std::min(left, kPiece) : left;
    const ConstLimbs groups = next_groups(f, count);
    const char* end = limbs::write(f.scratch, groups);
    if (!has_value(Z4))
      while (end[-1] == '0') --end;
    put(f.to, {f.scratch, static_cast<std::size_t>(end - f.scratch)});
    left -= count;
  }
  put(f.to, has_value(Z4) ? ".. " : " ");
}

void print_fraction(const num* c, const num* m, char* scratch, int digits, Out& to) {
  clear(Z4);
  const Fraction f{to, scratch, m, small_magnitude(m, 0)};
  split(c, f);
  if (!has_value(Z3)) iton(Z3, 0);
  Z3->dec = 0;
  put_number(to, Z3, scratch);
  if (digits == -1) {
    print_mixed(f);
  } else if (digits > 0 && digits < IS * 4) {
    print_expansion(f, digits);
  }
  if (c->imag == 1) put(to, " i ");
  put(to, "\n");
}

void print_variable(int v, char* scratch, int digits, Out& to) {
  const num* c = Mc[v];
  const num* m = Mm[v];
  if (digits == 0) return;
  print(to, "%c=%s", 'A' + v, c->sign == 1 ? " " : "-");
  if (c->dec == FF || is_one(m)) {
    put_number(to, c->dec == FF ? printable_decimal(c, m) : c, scratch);
    put(to, " \n");
  } else {
    print_fraction(c, m, scratch, digits, to);
  }
}

// The words as they are: under a long value they are its limbs, and a loaded low word may have nine
// or ten digits.
void print_cell(int v, int k) {
  const Cell cell = read_cell(v, k);
  const long long top = cell.top;
  const long long middle = cell.middle;
  long long low = cell.low;
  if (low < 0) {
    put(*console, "-");
    low = -low;
  }
  if (top < 0) {
    if (middle > 0) {
      print(*console, "%lld%08lld", middle, low);
    } else {
      print(*console, "%lld", low);
    }
    print(*console, "/%lld", -top);
  } else if (middle < 0) {
    print(*console, "%lld.%08lld", top, -middle);
    if (low > 1) print(*console, "%08lld", low);
  } else if (top > 0) {
    print(*console, "%lld%08lld%08lld", top, middle, low);
  } else if (middle == 0) {
    print(*console, "%lld", low);
  } else {
    print(*console, "%lld%08lld", middle, low);
  }
  put(*console, "\n");
}

}  // namespace

int nprint(const char* name, char* out, int digits, Out* file) {
  const Scratch scratch({Z2, Z3, Z4}, {});
  const int v = name[0] - 'A';
  if (name[1] >= '0' && name[1] <= '9') {
    print_cell(v, name[1] - '0');
    return 1;
  }
  print_variable(v, out, digits, file != nullptr ? *file : *console);
  return 0;
}

}  // namespace tivelo
