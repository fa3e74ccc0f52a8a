// Lines: from the console, a script or a stored block, cleaned to capitals without blanks. Also the
// two forms that change where lines come from, block captures and repeats.
#pragma once

#include "console/run.h"

namespace tivelo {

// Reads one line of `in` into buf, with room for n bytes; what does not fit is dropped. Returns
// buf, or null at the end of the input or when the line was broken off (in.interrupted).
char* getsn(char* buf, int n, In& in);

// Takes one line into dst, which has room for ISS x 8 bytes. With src: copies up to the first
// control character and returns the characters to advance src by; a line that does not fit fills
// dst and has no end there, so that cleaning rejects it unless a comment ends it before. Without:
// prompts, reads a typed line and returns 0, or -1 where getsn() has none.
int cgets(char* dst, const char* src);

// Cleans a line in place: capitals, no blanks, nothing from ';' on; kept as typed behind the first
// ':'. A character that no line has, '(' without ')', or no end within ISS x 8 characters make it
// ";". Returns the length with the terminating zero; 2 for brackets; the length kept before a bad
// character and 1; 0 without an end.
int eclean(char* line);

// Makes run.line the next line to look at. Flow::next with a line, fall_on when the pass is over
// without one (a block went into its next repetition or ended), used_up, quit, or interrupted at
// the prompt.
Flow next_line(Run& run);

// The line begins with '{': reads lines into the block up to the one whose last piece begins with
// '}', or the script's end. Commas split a line into entries. Flow::next, or what ended the reading
// as in next_line().
Flow capture_block(Run& run);

// The line begins with 'R': starts the block with the count that follows.
void start_block(Run& run);

}  // namespace tivelo
