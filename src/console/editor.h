// The line editor: a source of lines between the terminal and the console, which knows nothing of
// it. It draws on the terminal of the input, so that the output carries what it carries without it.
#pragma once

#include "base/stream.h"

namespace tivelo {

// Puts the editor between `typed` and the terminal, where both standard input and output are one
// that can be drawn on and the program was built with it; else changes nothing. Looks on at
// `answers` and `told` to know what stands in front of the line. Nothing else happens until a line
// is asked for. history: earlier lines come from a file, and go there.
//
// Ctrl-C ends an edited line with kInterruptedRead where the program has a handler for SIGINT,
// which is then not called; else it ends the program.
void attach_editor(In& typed, Out& answers, Out& told, bool history);

// At the end of the run, when no further line is asked for.
void detach_editor();

}  // namespace tivelo
