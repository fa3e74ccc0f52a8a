// Which values are the true ones, and which were cut, stopped or put in another's place: a mark for
// each variable, for the cells of each variable together, and for the current result. The marks
// follow from what spoils the value of a line and from the variables that it reads (line_mark.h).
#pragma once

#include <span>

#include "base/events.h"

namespace tivelo {

struct Mark {
  static constexpr int kLine = 60;

  Event event = Event::none;  // what first spoilt the value; none: it is exact
  int times = 0;              // how often anything did since; saturates
  char line[kLine + 1] = {};  // the beginning of the line in which it happened first

  bool exact() const { return event == Event::none; }
};

// The line's value becomes the current result; the current result becomes variable v, or a cell of
// it (the cells of one variable share a mark, which stays once one of them is not exact).
void mark_result();
void mark_variable(int v);
void mark_cell(int v);

// The line's value becomes variable v, or a cell of it, and not the current result.
void mark_input(int v, bool cell);

// The same for several variables that are made of the same line at once.
void mark_variables(std::span<const int> variables);

const Mark& mark_of(int v);
const Mark& mark_of_cells(int v);
const Mark& mark_of_result();

// The marks of the values that a file kept. Nothing is told of them.
void put_mark(int v, const Mark& mark);
void put_mark_of_cells(int v, const Mark& mark);
void put_mark_of_result(const Mark& mark);

// All exact, as at the start.
void clear_marks();

}  // namespace tivelo
