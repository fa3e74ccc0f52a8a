// A line for each record that is not as at the start, then the digest of all lines.
#include <algorithm>
#include <cstring>

#include "base/event_names.h"
#include "base/exactness.h"
#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/text.h"
#include "console/files.h"
#include "console/replacement.h"
#include "console/state_file.h"
#include "console/state_format.h"
#include "fraction/cells.h"

namespace tivelo {

namespace {

using namespace state;

bool is_zero(Limb word) { return word == 0; }

// The words of variable v above its value, from the front of its array.
ConstLimbs words_above(int v) {
  const num* c = M[v].c;
  return {c->limbs, static_cast<std::size_t>(c->end - c->len)};
}

// Those of them that were stored as cells; the others are left of longer values.
std::size_t cell_words(int v) {
  return std::min(static_cast<std::size_t>(cells_written[v] * NN), words_above(v).size());
}

// All digits of the limbs, the first of them without leading zeros unless `whole`.
void put_limbs(Out& out, ConstLimbs limbs, bool whole) {
  constexpr std::size_t kPiece = 2048;
  char text[kPiece * kLimbDigits] = {};
  if (!whole && !limbs.empty()) {
    put(out, {text, static_cast<std::size_t>(lltoa(limbs[0], text))});
    limbs = limbs.subspan(1);
  }
  while (!limbs.empty()) {
    poll();
    const std::size_t count = std::min(limbs.size(), kPiece);
    put(out, {text, static_cast<std::size_t>(write_digits(text, limbs.first(count)) - text)});
    limbs = limbs.subspan(count);
  }
}

bool is_fresh(const num* a) {
  const bool fields = std::ranges::all_of(
      kFields, [a](const Field& field) { return a->*field.field == field.fresh; });
  return fields && a->sign > 0;
}

void put_record(Out& out, std::string_view owner, Kind kind, const num* a) {
  const std::string_view word = kKinds[kind];
  print(out, "%.*s %.*s %c", static_cast<int>(owner.size()), owner.data(),
        static_cast<int>(word.size()), word.data(), a->sign < 0 ? '-' : '+');
  put_limbs(out, in_use(a), false);
  for (const Field& field : kFields)
    if (a->*field.field != field.fresh) print(out, " %s %d", field.name.data(), a->*field.field);
  if (a->len == 1 && units(a) >= kBase) {
    put(out, " ");
    put(out, kOneGroup);
  }
  put(out, "\n");
}

void put_value(Out& out, std::string_view owner, const numf& value) {
  if (value.c->len > 0 || !is_fresh(value.c)) put_record(out, owner, numerator, value.c);
  if (!is_one(value.m) || !is_fresh(value.m)) put_record(out, owner, denominator, value.m);
}

void put_mark(Out& out, std::string_view owner, Kind kind, const Mark& mark) {
  if (mark.exact()) return;
  for (const std::string_view word : {owner, kKinds[kind], event_name(mark.event)}) {
    put(out, word);
    put(out, " ");
  }
  print(out, "%d ", mark.times);
  put(out, mark.line);
  put(out, "\n");
}

void put_cells(Out& out, int v) {
  if (cells_written[v] > 0) print(out, "%c cells %d\n", 'A' + v, cells_written[v]);
  const ConstLimbs words = words_above(v).first(cell_words(v));
  for (std::size_t at = 0; at < words.size(); at += NN) {
    const ConstLimbs cell_of = words.subspan(at, std::min<std::size_t>(NN, words.size() - at));
    if (std::ranges::all_of(cell_of, is_zero)) continue;
    print(out, "%c cell %d", 'A' + v, static_cast<int>(at / NN));
    for (std::size_t i = 0; i < NN; ++i)
      print(out, " %d", i < cell_of.size() ? static_cast<std::int32_t>(cell_of[i]) : 0);
    put(out, "\n");
  }
}

// What longer values have left above the value: cells that were never stored show it.
void put_rest(Out& out, int v) {
  const auto longest = static_cast<std::size_t>(M[v].c->end - limbs_written[v]);
  const ConstLimbs words = words_above(v);
  const std::size_t from = std::min(std::max(cell_words(v), longest), words.size());
  const ConstLimbs above = words.subspan(from);
  const auto first = std::ranges::find_if_not(above, is_zero);
  if (first == above.end()) return;
  print(out, "%c rest ", 'A' + v);
  put_limbs(out, {first, above.end()}, true);
  put(out, "\n");
}

void put_state(Out& out, int display_digits) {
  put(out, kFirstLine);
  const auto digit = std::ranges::find(kPrecisionTable, IS) - std::begin(kPrecisionTable);
  print(out, "precision %d\ndisplay %d\nreduction %s\n", static_cast<int>(digit), display_digits,
        ROF[0] == 1 ? "off" : "on");
  for (int v = 0; v < kVariables; ++v) {
    const char name = static_cast<char>('A' + v);
    const std::string_view owner(&name, 1);
    put_value(out, owner, M[v]);
    put_mark(out, owner, inexact, mark_of(v));
    put_cells(out, v);
    put_mark(out, owner, cells_inexact, mark_of_cells(v));
    put_rest(out, v);
  }
  put_value(out, kResult, Cn);
  put_mark(out, kResult, inexact, mark_of_result());
}

bool is_state(const char* name) {
  char text[kAnyVersion.size()];
  long long whole = 0;
  const long size = read_text(name, text, sizeof text, &whole);
  return size == static_cast<long>(sizeof text) &&
         kAnyVersion == std::string_view(text, sizeof text);
}

// False when anything could not be written.
bool write_state(Replacement& file, int display_digits) {
  Sha256 digest;
  file.set_digest(&digest);
  put_state(file.out(), display_digits);
  if (!flush(file.out())) return false;
  file.set_digest(nullptr);
  char line[kDigest.size() + Sha256::kHexDigits + 1];
  std::memcpy(line, kDigest.data(), kDigest.size());
  digest.finish(line + kDigest.size());
  line[sizeof line - 1] = '\n';
  put(file.out(), {line, sizeof line});
  return file.finish();
}

}  // namespace

bool is_assigned(int v) {
  const numf& value = M[v];
  return value.c->len > 0 || !is_fresh(value.c) || !is_one(value.m) || !is_fresh(value.m);
}

int cells_of(int v) {
  int count = 0;
  for (int k = 0; k < cells_written[v]; ++k) {
    const Cell words = read_cell(v, k);
    count += cell_is_free(v, k) && (words.low != 0 || words.middle != 0 || words.top != 0);
  }
  return count;
}

StateSize size_of_state() {
  StateSize size;
  for (int v = 0; v < kVariables; ++v) {
    size.variables += is_assigned(v);
    size.cells += cells_of(v);
  }
  return size;
}

bool save_state(const char* name, int display_digits) {
  using Target = Replacement::Target;
  Replacement file(name);
  const Target target = file.target();
  if (target == Target::other || (target == Target::file && !is_state(name))) {
    report(Event::state_protected, {.name = name});
    return false;
  }
  if (target == Target::refused || !file.begin() || !write_state(file, display_digits)) {
    report(Event::state_not_saved, {.name = name});
    return false;
  }
  return true;
}

}  // namespace tivelo
