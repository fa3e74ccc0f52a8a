// The marks. A line that reads nothing but exact values and spoils none costs a few tests: the
// values that are not exact are also kept as one bit each.
#include "base/exactness.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "base/line_mark.h"
#include "base/report.h"

namespace tivelo {

namespace {

constexpr int kLetters = 26;
constexpr int kCells = 32;  // first bit and index of the marks of cells

Mark marks[kCells + kLetters];  // a gap lies between variables and cells
Mark result;
std::uint64_t inexact = 0;  // bit i: marks[i] is not exact

std::uint64_t bit(int i) { return std::uint64_t{1} << i; }

int saturated(long long times) { return static_cast<int>(std::min<long long>(times, INT_MAX)); }

// What `other` says comes on top of what `to` says already.
void add(Mark& to, const Mark& other) {
  const long long times = static_cast<long long>(to.times) + other.times;
  if (to.exact()) to = other;
  to.times = saturated(times);
}

// The mark that the line's value takes: the marks of what was read come first, they are older.
Mark of_line() {
  Mark mark;
  for (std::uint64_t left = line_mark.read & inexact; left != 0; left &= left - 1)
    add(mark, marks[__builtin_ctzll(left)]);
  if (line_mark.times != 0) {
    Mark own{line_mark.event, saturated(line_mark.times), {}};
    if (const char* line = line_in_hand()) std::strncpy(own.line, line, Mark::kLine);
    add(mark, own);
  }
  return mark;
}

bool line_is_exact() { return line_mark.times == 0 && (line_mark.read & inexact) == 0; }

void keep(int i, const Mark& mark) {
  marks[i] = mark;
  inexact |= bit(i);
}

void set_inexact(int i, const Mark& mark) {
  const bool was_exact = marks[i].exact();
  keep(i, mark);
  if (!was_exact || event_row(mark.event).kind != EventClass::cut || i >= kCells) return;
  const char name = static_cast<char>('A' + i);
  report(Event::cut_from_here, {.name = {&name, 1}, .reason = mark.event});
}

inline void set(int i, const Mark& mark) {
  if (!mark.exact()) return set_inexact(i, mark);
  inexact &= ~bit(i);
  marks[i].event = Event::none;
}

}  // namespace

void mark_result() {
  if (line_is_exact()) {
    result.event = Event::none;
  } else {
    result = of_line();
  }
}

void mark_variable(int v) { set(v, result); }

void mark_cell(int v) {
  if (!result.exact()) set(kCells + v, result);
}

void mark_input(int v, bool cell) {
  const Mark mark = of_line();
  if (!cell || !mark.exact()) set(cell ? kCells + v : v, mark);
}

void mark_variables(std::span<const int> variables) {
  const Mark mark = of_line();
  for (const int v : variables) set(v, mark);
}

const Mark& mark_of(int v) { return marks[v]; }
const Mark& mark_of_cells(int v) { return marks[kCells + v]; }
const Mark& mark_of_result() { return result; }

void put_mark(int v, const Mark& mark) { keep(v, mark); }
void put_mark_of_cells(int v, const Mark& mark) { keep(kCells + v, mark); }
void put_mark_of_result(const Mark& mark) { result = mark; }

void clear_marks() {
  for (Mark& mark : marks) mark = {};
  result = {};
  inexact = 0;
  begin_mark();
}

}  // namespace tivelo
