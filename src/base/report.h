// How a refusal reaches the user: "err " on the console for the codes that are shown, and, when
// standard error is a terminal, one line there that says what was refused and why.
#pragma once

#include "base/stream.h"

namespace tivelo {

// The console and, null unless someone is there to read it, the channel for explanations. Set by
// whoever runs the calculator (the program or a test); everything below prints through these.
extern Out* console;
extern Out* explanations;

// The reporter: prints "err " for a negative code, nothing otherwise.
void err(int code);

// One line of explanation, formatted like printf (at most 255 characters), after the console text
// that came before it. Does nothing when nobody reads explanations.
void explain(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The same for a place in the line in hand: starts with its column when `place` lies in that line.
void explain_at(const char* place, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Names the line that columns are counted in (zero-terminated, as normalised), or none.
void set_line_in_hand(const char* line);

}  // namespace tivelo
