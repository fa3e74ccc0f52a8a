// One expression, evaluated twice by calc: the same count and value, a well-formed result, and no
// look behind the text's end.
#include <memory>

#include "bigint/pool.h"
#include "eval/calc.h"
#include "fraction/stepwise.h"
#include "harness.h"
#include "output/print.h"
#include "support/calculator.h"

namespace {

using namespace tivelo;
using fuzz::demand;

// The pool, with values of every kind in its first variables.
struct Numbers : tests::Pool {
  Numbers() {
    int v = 0;
    for (const char* value : {"2/3", "-.123456789", "9^180", "99999999", "-7", "0", "SQR(2)",
                              "5/99999999", "2^600", "1.00001", "1"}) {
      evaluate_line(value, &Cn);
      keep(v++);
    }
  }
  static void keep(int v) { copy(changing(v), Cn); }
};

struct Result {
  int count;
  std::vector<int> fields;
  std::vector<Limb> limbs;
  bool operator==(const Result&) const = default;
};

Result evaluate(const char* text) {
  grant_steps();
  Result r{calc(text, &Cn, 1), {}, {}};
  for (const num* a : {Cn.c, Cn.m}) {
    demand(a->len >= 0 && a->len <= IS, "a length");
    r.fields.insert(r.fields.end(), {a->sign, a->len, a->dec, a->imag, a->shift});
    r.limbs.insert(r.limbs.end(), in_use(a).begin(), in_use(a).end());
  }
  return r;
}

void check(const Result& r, int size) {
  demand(r.count <= size + 1, "no more consumed than there is");
  demand(r.count >= 0 || r.count == -4 || r.count == -5, "a status of the table");
  demand(has_value(Cn.m) && Cn.m->sign == 1, "a positive denominator");
  demand(std::ranges::all_of(r.limbs, [](Limb l) { return l <= kBase; }), "limbs");
  demand(std::ranges::all_of(in_use(Cn.c), [](Limb l) { return l < kBase; }), "limbs");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Numbers numbers;
  size = static_cast<std::size_t>(std::find(data, data + size, 0) - data);
  if (size > 1600) return 0;
  // Of exactly that size, so that a look behind the end is an address error.
  const auto text = std::make_unique<char[]>(size + 1);
  std::copy_n(data, size, text.get());
  const Result first = evaluate(text.get());
  check(first, static_cast<int>(size));
  Numbers::keep('T' - 'A');
  static char scratch[print_scratch(kPrecisionTable[0])];
  for (const int digits : {-1, 16, 790}) nprint("T", scratch, digits, nullptr);
  numbers.printed();
  numbers.explained();
  // The variable T has just changed; that covers the clock, too.
  if (std::find(text.get(), text.get() + size, 'T') != text.get() + size) return 0;
  demand(evaluate(text.get()) == first, "the same again");
  return 0;
}
