// What spoils the value of the line in hand, and which variables the line has read. All inline: a
// sum of fractions may be cut a million times a second.
#pragma once

#include <cstdint>

#include "base/events.h"

namespace tivelo {

struct LineMark {
  Event event = Event::none;  // what first spoilt the value
  long long times = 0;        // how often anything did
  std::uint64_t read = 0;     // bit v: variable v; bit 32 + v: a cell of it
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

}  // namespace tivelo
