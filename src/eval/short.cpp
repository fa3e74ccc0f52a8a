// The arithmetic of fraction/arith.h on values for which nothing is ever refused, cut or to be
// told.
#include "eval/short.h"

#include <cstdint>
#include <cstdlib>
#include <numeric>

#include "base/characters.h"
#include "base/interrupt.h"
#include "base/line_mark.h"
#include "bigint/text.h"

namespace tivelo {

namespace {

constexpr std::int64_t kBase2 = std::int64_t{kBase} * kBase;

bool is_one_limb(std::int64_t n) { return std::abs(n) < kBase; }

// n / d, at first 0, else an integer below 10^16 in magnitude, or both below 10^8.
struct Value {
  std::int64_t n = 0;
  std::int64_t d = 1;

  bool is_short() const {
    const std::int64_t size = std::abs(n);
    return size != 0 && (size < kBase || (d == 1 && size < kBase2)) && d < kBase;
  }
};

// Does a short operand end here, with nothing behind it that could belong to it?
bool ends(char c) { return c == '\0' || c == '+' || c == '-' || c == '*' || c == '/'; }

// In lowest terms, as every operand is.
bool read_variable(const numf& f, Value* value) {
  const num* c = f.c;
  if (f.m->len != 1 || units(f.m) == 0 || c->dec != 0 || c->shift != 0) return false;
  *value = {std::int64_t{units(c)}, std::int64_t{units(f.m)}};
  if (c->len == 2 && in_use(c)[0] != 0) {
    value->n += std::int64_t{in_use(c)[0]} * kBase;
  } else if (c->len != 1) {
    return false;
  }
  if (!value->is_short()) return false;
  if (value->d != 1) {
    const std::int64_t g = std::gcd(value->n, value->d);
    *value = {value->n / g, value->d / g};
  }
  if (c->sign < 0) value->n = -value->n;
  return true;
}

// The products of a term are not reduced, its sum is: whether a value stays exact hangs on that.
bool multiply(Value* x, const Value& y) {
  if (!is_one_limb(x->n) || !is_one_limb(y.n)) return false;
  *x = {x->n * y.n, x->d * y.d};
  return x->is_short();
}

bool divide(Value* x, const Value& y) {
  if (!is_one_limb(x->n) || !is_one_limb(y.n)) return false;
  const std::int64_t g = std::gcd(x->n, y.n);
  const std::int64_t h = std::gcd(x->d, y.d);
  const std::int64_t sign = y.n < 0 ? -1 : 1;
  *x = {sign * (x->n / g) * (y.d / h), std::abs(y.n / g) * (x->d / h)};
  return is_one_limb(x->n) && is_one_limb(x->d);
}

bool add(Value* sum, const Value& term) {
  std::int64_t a = sum->n;
  std::int64_t b = term.n;
  std::int64_t l = sum->d;
  if (sum->d != term.d) {
    if (!is_one_limb(a) || !is_one_limb(b)) return false;
    const std::int64_t g = std::gcd(sum->d, term.d);
    a *= term.d / g;
    b *= sum->d / g;
    l *= term.d / g;
    if (!is_one_limb(a) || !is_one_limb(b)) return false;
  }
  *sum = {a + b, l};
  if (!sum->is_short()) return false;
  if (l == 1) return true;
  const std::int64_t g = std::gcd(sum->n, l);
  *sum = {sum->n / g, l / g};
  return true;
}

// Reads along an expression.
class Reader {
 public:
  explicit Reader(const char* text) : at_(text) {}

  bool sum(Value* value);
  std::uint64_t read() const { return read_; }

 private:
  bool term(Value* value);
  bool operand(Value* value);

  const char* at_;
  std::uint64_t read_ = 0;  // as in a LineMark
};

bool Reader::operand(Value* value) {
  poll();
  const bool minus = *at_ == '-';
  if (minus) ++at_;
  if (is_capital(*at_)) {
    const int v = *at_++ - 'A';
    if (!ends(*at_) || !read_variable(M[v], value)) return false;
    read_ |= std::uint64_t{1} << v;
  } else {
    Limb limb = 0;
    at_ += read_short(at_, &limb);
    if (!ends(*at_) || limb == 0) return false;
    *value = {limb, 1};
  }
  if (minus) value->n = -value->n;
  return true;
}

bool Reader::term(Value* value) {
  if (!operand(value)) return false;
  while (*at_ == '*' || *at_ == '/') {
    const bool product = *at_++ == '*';
    Value factor;
    if (!operand(&factor)) return false;
    if (product ? !multiply(value, factor) : !divide(value, factor)) return false;
  }
  return true;
}

bool Reader::sum(Value* value) {
  for (bool first = true; first || *at_ != '\0'; first = false) {
    const bool minus = !first && *at_ == '-';
    if (!first) ++at_;
    Value next;
    if (!term(&next)) return false;
    if (minus) next.n = -next.n;
    if (!add(value, next)) return false;
  }
  return true;
}

}  // namespace

bool evaluate_short(const char* text, numf* target) {
  Reader reader(text);
  Value value;
  if (!reader.sum(&value)) return false;
  line_mark.read |= reader.read();
  mclear(target);
  const auto size = static_cast<std::uint64_t>(std::abs(value.n));
  set_one_limb(target->c, static_cast<Limb>(size % kBase));
  if (size >= kBase) {
    target->c->len = 2;
    in_use(target->c)[0] = static_cast<Limb>(size / kBase);
  }
  target->c->sign = value.n < 0 ? -1 : 1;
  set_one_limb(target->m, static_cast<Limb>(value.d));
  return true;
}

}  // namespace tivelo
