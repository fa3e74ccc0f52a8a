// Which values are the true ones, and which were cut, stopped or put in another's place: a mark for
// each variable, for the cells of each variable together, and for the current result. The marks
// follow from the events that spoil a value and from the variables that a line reads.
#pragma once

#include <cstdint>

#include "base/events.h"

namespace tivelo {

struct Mark {
  static constexpr int kLine = 60;

  Event event = Event::none;  // what first spoilt the value; none: it is exact
  int times = 0;              // how often anything did since; saturates
  char line[kLine + 1] = {};  // the beginning of the line in which it happened first

  bool exact() const { return event == Event::none; }
};

// What spoils the value of the line in hand, and what the line has read. Kept inline: a sum of
// fractions may be cut a million times a second.
struct LineMark {
  Event event = Event::none;
  long long times = 0;
  std::uint64_t read = 0;  // bit v: variable v; bit 32 + v: a cell of it
};
inline LineMark line_mark;

inline void begin_mark() { line_mark = {}; }

// The value of the line is not the true one, for this reason.
inline void spoil(Event event) {
  if (line_mark.times++ == 0) line_mark.event = event;
}

// A value of variable v (0 to 25), or of a cell of it, takes part in the line.
inline void mark_read(int v) { line_mark.read |= std::uint64_t{1} << v; }
inline void mark_cell_read(int v) { line_mark.read |= std::uint64_t{1} << (32 + v); }

// The line's value becomes the current result; the current result becomes variable v, or a cell of
// it (the cells of one variable share a mark, which stays once one of them is not exact).
void mark_result();
void mark_variable(int v);
void mark_cell(int v);

// The line's value becomes variable v, or a cell of it, past the current result.
void mark_input(int v, bool cell);

const Mark& mark_of(int v);
const Mark& mark_of_result();

// All exact, as at the start.
void clear_marks();

}  // namespace tivelo
