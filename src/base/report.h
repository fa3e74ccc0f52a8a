// How an event reaches the people: its answer on standard output ("err " and the like), and, where
// somebody reads messages, one line with what happened, what was stored and where in the line, as
// it was typed. A message that comes again in a repeat is counted; a line is told ten at most.
#pragma once

#include <string_view>

#include "base/events.h"
#include "base/stream.h"

namespace tivelo {

// Standard output and, null unless somebody reads them, the channel for messages. Set by whoever
// runs the calculator (the program or a test); everything prints through these. On a terminal the
// place of a message is shown, too.
extern Out* answers;
extern Out* messages;
inline bool messages_on_terminal = false;

// What is known of an event where it is decided. Sizes are in digits.
struct Detail {
  const char* place = nullptr;  // in the line in hand; null: the place that was named last
  long long needed = 0;
  long long held = 0;
  std::string_view name = {};
  Event reason = Event::none;  // another event, whose text says why
};

// Reports that the event has happened: the one road by which anything is told, or printed as a
// refusal. An event that spoils the value is kept in the mark of the line (exactness.h); one that
// cuts places is told when the value reaches a variable.
void report(Event event, const Detail& detail = {});

// The same on a channel of its own, for what ends the process: told whether or not messages are.
void report_to(Out& out, Event event, const Detail& detail = {});

// The line that places lie in: `text` as it is looked at, zero-terminated, and `typed` as it was
// typed, of which `text` is what cleaning left, or null where they are the same. Both stay the
// caller's and must live until the next call. Names no place in it.
void set_line_in_hand(const char* text, const char* typed);
const char* line_in_hand();

// Names the place that is being worked at: a message without one of its own takes it.
inline const char* place_in_hand = nullptr;

// The column of a place, counted from 1 in the line as typed; 0 where it does not lie in the line.
int column_of(const char* place);

// Where the lines come from, when that is no console: "-e 2: " or "sums.txt:14: " then stands
// before a message. `name` stays the caller's.
enum class Origin { none, option, file };
void set_origin(const char* name, long long number, Origin kind);

// What batch use asks of a line: nothing is printed for a refusal, only told; how many events were
// refusals, and the exit status that the first of them leads to (0 without one).
struct Refusals {
  bool silent = false;  // refusals print nothing
  long long count = 0;
  int first_status = 0;
};
inline Refusals refusals;

// Messages are grouped by the line they come from. Begins a group, after telling what the one
// before left out; within a repeat, where all passes are one group, does nothing.
void begin_messages();
void begin_repeat();
void end_repeat();

// Tells what was left out and forgets the line and the repeats: the end of a run.
void end_messages();

}  // namespace tivelo
