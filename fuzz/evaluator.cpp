// One expression, evaluated twice by calc: the same count and value, a well-formed result, and no
// look behind the text's end.
#include <algorithm>
#include <memory>

#include "base/precision.h"
#include "base/report.h"
#include "bigint/pool.h"
#include "console/storage.h"
#include "eval/calc.h"
#include "eval/stepwise.h"
#include "harness.h"
#include "output/print.h"

namespace {

using namespace tivelo;
using fuzz::demand;

Out out;

bool drop(void*, const char*, std::size_t) { return true; }

void start() {
  choose_precision(0);
  demand(reserve_numbers().data != nullptr, "storage");
  wire_variables();
  out.drain = drop;
  console = explanations = &out;
  const char* values[] = {"2/3",    "-.123456789", "9^180", "99999999", "-7", "0",
                          "SQR(2)", "5/99999999",  "2^600", "1.00001",  "1"};
  int v = 0;
  for (const char* value : values) {
    calc(value, &Cn, 1);
    rncopy(Mc[v], Cn.c);
    rncopy(Mm[v++], Cn.m);
  }
}

struct Result {
  int count;
  int fields[8];
  std::vector<Limb> limbs;
  bool operator==(const Result&) const = default;
};

Result evaluate(const char* text) {
  set_line_in_hand(text);
  grant_steps();
  Result r{calc(text, &Cn, 1), {}, {}};
  const num* c = Cn.c;
  const num* m = Cn.m;
  const int fields[] = {c->sign, c->len, c->dec, c->imag, c->shift, m->sign, m->len, m->dec};
  std::ranges::copy(fields, r.fields);
  demand(c->len >= 0 && c->len <= IS && m->len >= 0 && m->len <= IS, "lengths");
  r.limbs.assign(in_use(c).begin(), in_use(c).end());
  r.limbs.insert(r.limbs.end(), in_use(m).begin(), in_use(m).end());
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
  static const bool started = (start(), true);
  size = static_cast<std::size_t>(std::find(data, data + size, 0) - data);
  if (!started || size > 1600) return 0;
  // Of exactly that size, so that a look behind the end is an address error.
  const auto text = std::make_unique<char[]>(size + 1);
  std::copy_n(data, size, text.get());
  const Result first = evaluate(text.get());
  check(first, static_cast<int>(size));
  rncopy(Mc['T' - 'A'], Cn.c);
  rncopy(Mm['T' - 'A'], Cn.m);
  static char scratch[print_scratch(kPrecisionTable[0])];
  for (const int digits : {-1, 16, 790}) nprint("T", scratch, digits, nullptr);
  // The variable T has just changed; that covers the clock, too.
  if (std::find(text.get(), text.get() + size, 'T') != text.get() + size) return 0;
  demand(evaluate(text.get()) == first, "the same again");
  return 0;
}
