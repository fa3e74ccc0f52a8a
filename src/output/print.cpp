// A value as an integer, a decimal, a mixed number or an expansion; the words of a cell.
#include "output/print.h"

#include <algorithm>

#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/expansion.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "bigint/text.h"
#include "fraction/cells.h"
#include "fraction/numf.h"
#include "fraction/reduce.h"

namespace tivelo {

namespace {

constexpr std::size_t kPiece = 2048;  // groups of eight places

// A long integer is written in pieces that stay in the cache.
void put_number(Out& to, const num* a, char* text) {
  ConstLimbs left = in_use(a);
  if (a->dec != 0 || left.size() <= kPiece) {
    ntoc(a, text);
    return put(to, text);
  }
  char* end = text + lltoa(left[0], text);
  for (left = left.subspan(1); !left.empty(); end = text) {
    poll();
    const std::size_t count = std::min(left.size(), kPiece);
    end = write_digits(end, left.first(count));
    put(to, {text, static_cast<std::size_t>(end - text)});
    left = left.subspan(count);
  }
}

// A decimal over an integer denominator other than 1, as scaling a denominator leaves it, is shown
// as the decimal over 1 that reduction makes of it; a decimal shorter than its places is shown as
// if padded to them.
void print_decimal(const numf& value, char* text, Out& to) {
  const Lent c({value.c, value.m});
  const Lent m({value.c, value.m});
  rncopy(c, value.c);
  rncopy(m, value.m);
  if (!is_one(m)) nreduct(c, m);
  pad(c, FF);
  put_number(to, c, text);
}

// A fraction being printed, split into its integer part and the remainder over m.
class Fraction {
 public:
  Fraction(const numf& value, char* text, Out& to) : to_(to), text_(text), m_(value.m) {
    clear(remainder_);
    if (machine_m_ == 0) {
      nndiv(integer_, remainder_, value.c, m_);
    } else {
      rncopy(integer_, value.c);
      div(integer_, machine_m_);
      iton(remainder_, integer_->rem);
    }
    if (!has_value(integer_)) iton(integer_, 0);
    integer_->dec = 0;
  }

  void print_integer() { put_number(to_, integer_, text_); }

  // [ " " remainder "/" m " " ]
  void print_mixed() {
    if (!has_value(remainder_)) return;
    put(to_, " ");
    put_number(to_, remainder_, text_);
    put(to_, "/");
    put_number(to_, m_, text_);
    put(to_, " ");
  }

  void print_expansion(int digits);

  // "." and that many places, zeros behind the last one. A state saved at a longer precision may
  // ask for more of them than a number has.
  void print_places(int digits);

 private:
  Out& to_;
  char* text_;  // scratch
  const num* m_;
  const int machine_m_ = small_magnitude(m_, 0);  // m when it fits a machine integer, else 0
  const Lent integer_;
  const Lent remainder_;
};

// The places are found many at a time: by a machine integer in pieces that stay in the cache, by a
// long denominator all at once. An expansion that ends does so at its last place that is not zero.
void Fraction::print_expansion(int digits) {
  if (!has_value(remainder_)) return;
  if (m_->len >= IS - 1) {
    report(Event::expansion_too_long, {.needed = digits_of(m_)});
    put(to_, ".. ");
    return;
  }
  put(to_, ".");
  std::size_t left = (static_cast<std::size_t>(digits) + 7) / 8;
  while (left > 0 && has_value(remainder_)) {
    const std::size_t count = machine_m_ != 0 ? std::min(left, kPiece) : left;
    const char* end = expand(text_, remainder_, m_, count);
    if (!has_value(remainder_))
      while (end[-1] == '0') --end;
    put(to_, {text_, static_cast<std::size_t>(end - text_)});
    left -= count;
  }
  put(to_, has_value(remainder_) ? ".. " : " ");
}

void Fraction::print_places(int digits) {
  if (digits == 0) return;
  if (m_->len >= IS - 1) return report(Event::expansion_too_long, {.needed = digits_of(m_)});
  put(to_, ".");
  const std::size_t most = std::min(kPiece, static_cast<std::size_t>(IS));
  for (std::size_t left = static_cast<std::size_t>(digits); left > 0;) {
    const std::size_t count = std::min((left + 7) / 8, most);
    const char* end = expand(text_, remainder_, m_, count);
    const std::size_t shown = std::min(left, static_cast<std::size_t>(end - text_));
    put(to_, {text_, shown});
    left -= shown;
  }
}

void print_fraction(const numf& value, char* text, int digits, Out& to) {
  Fraction f(value, text, to);
  f.print_integer();
  if (digits == -1) {
    f.print_mixed();
  } else if (digits > 0 && digits < IS * 4) {
    f.print_expansion(digits);
  }
  if (value.c->imag == 1) put(to, " i ");
  put(to, "\n");
}

void print_variable(int v, char* text, int digits, Out& to) {
  const numf& value = M[v];
  if (digits == 0) return;
  const char head[] = {static_cast<char>('A' + v), '=', value.c->sign == 1 ? ' ' : '-'};
  put(to, {head, sizeof head});
  if (value.c->dec != FF && !is_one(value.m)) return print_fraction(value, text, digits, to);
  if (value.c->dec == FF) {
    print_decimal(value, text, to);
  } else {
    put_number(to, value.c, text);
  }
  put(to, " \n");
}

// A decimal with the places it has, or with `digits` of them; its digits in `text` end with the
// last group that is shown.
void print_bare_decimal(const numf& value, char* text, int digits, Out& to) {
  const Lent c({value.c, value.m});
  const Lent m({value.c, value.m});
  rncopy(c, value.c);
  rncopy(m, value.m);
  if (!is_one(m)) nreduct(c, m);
  pad(c, FF + 1);
  ntoc(c, text);
  const std::string_view all(text);
  const std::size_t point = all.find('.');
  put(to, all.substr(0, point));
  std::string_view places = all.substr(point + 1);
  if (digits < 0) {
    while (!places.empty() && places.back() == '0') places.remove_suffix(1);
    digits = static_cast<int>(places.size());
  }
  if (digits == 0) return;
  put(to, ".");
  const auto wanted = static_cast<std::size_t>(digits);
  put(to, places.substr(0, wanted));
  for (std::size_t i = places.size(); i < wanted; ++i) put(to, "0");
}

// The words as they are: under a long value they are its limbs, and a loaded low word may have nine
// or ten digits.
void print_cell(int v, int k) {
  const Cell cell = read_cell(v, k);
  const long long top = cell.top;
  const long long middle = cell.middle;
  long long low = cell.low;
  if (low < 0) {
    put(*answers, "-");
    low = -low;
  }
  if (top < 0) {
    if (middle > 0) {
      print(*answers, "%lld%08lld", middle, low);
    } else {
      print(*answers, "%lld", low);
    }
    print(*answers, "/%lld", -top);
  } else if (middle < 0) {
    print(*answers, "%lld.%08lld", top, -middle);
    if (low > 1) print(*answers, "%08lld", low);
  } else if (top > 0) {
    print(*answers, "%lld%08lld%08lld", top, middle, low);
  } else if (middle == 0) {
    print(*answers, "%lld", low);
  } else {
    print(*answers, "%lld%08lld", middle, low);
  }
  put(*answers, "\n");
}

}  // namespace

int nprint(const char* name, char* out, int digits, Out* file) {
  const int v = name[0] - 'A';
  if (name[1] >= '0' && name[1] <= '9') {
    print_cell(v, name[1] - '0');
    return 1;
  }
  print_variable(v, out, digits, file != nullptr ? *file : *answers);
  return 0;
}

void print_bare(const numf& value, char* out, int digits, Out& to) {
  if (value.c->sign < 0 && has_value(value.c)) put(to, "-");
  if (value.c->dec == FF) {
    print_bare_decimal(value, out, digits, to);
  } else if (digits >= 0) {
    Fraction f(value, out, to);
    f.print_integer();
    f.print_places(digits);
  } else {
    put_number(to, value.c, out);
    if (!is_one(value.m)) {
      put(to, "/");
      put_number(to, value.m, out);
    }
  }
  put(to, value.c->imag == 1 ? "i\n" : "\n");
}

}  // namespace tivelo
