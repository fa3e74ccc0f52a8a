// One run of the calculator: the session at the console or a script, or a script nested in either.
// What it keeps from line to line, and where its lines come from.
#pragma once

#include "console/files.h"

namespace tivelo {

inline constexpr int kBlockEntries = 700;
inline constexpr int kScriptBytes = 11216;

// Where lines come from, apart from scripts and blocks, and how they are answered. Set once, by
// whoever runs the calculator, but for the clock: that is a batch's, line by line.
struct Outside {
  In* lines = nullptr;  // those that are typed, or of the command line and its files
  In* asked = nullptr;  // answers to "I."
  bool clock = false;   // "#TIME" may ask when the line began that a batch has handed out last
  bool batch = false;   // no prompt, echo or help; a line without a target prints its value alone
};
inline Outside outside;

// A line of the stored block, and what its first pass found it to be: nothing that could be known
// beforehand, or an expression for a whole variable.
struct Entry {
  char* text;
  const char* expression;  // in the text; null: nothing is known
  int variable;
  bool named;  // the target is
};

struct Run {
  bool nested = false;

  // The script, while it lasts.
  bool script_opened = false;
  char* script = nullptr;           // its text, zero-terminated
  int script_length = 0;            // bytes
  char* script_position = nullptr;  // start of its next line; null: lines come from the console

  // The line in hand: the line area, or an entry of the block that runs.
  char* line_area = nullptr;  // ISS x 8 bytes
  char* line = nullptr;
  Entry* entry = nullptr;       // ... that entry; null: the line area
  char* typed_area = nullptr;   // as large, and a zero: the line before it was cleaned
  const char* typed = nullptr;  // there, while the line is not of a block and messages are read
  int word_length = 0;          // letters behind the '#' of the typed line; 0: there are none
  double line_began = 0;        // processor time at which it did, as far as #TIME may ask for it
  const char* script_name = nullptr;  // in the line: of the script that it asks for

  // The stored block: entries one after another in the block area, each with its zero.
  char* block_area = nullptr;  // ISS x 8 bytes
  Entry block[kBlockEntries];
  int block_entries = 0;
  int block_index = -1;  // entry to run next; -1: no block is running
  int repeat_count = 0;  // passes of the block still to run

  // What an interruption meets.
  bool capturing = false;
  bool printing = false;
  bool told_line_dropped = false;
  int passes = 0;             // of the repeat, in all
  long long script_line = 0;  // number of the line in hand

  int display_digits = 16;  // places of printed results; -1: as fractions
  PrintFile write_file;
  int read_file = -1;

  char* text = nullptr;  // scratch for the text of a number or a factorisation
};

// What happens next: the answer of a pass, and of the steps that it is made of.
enum class Flow {
  next,         // the next line is taken
  fall_on,      // this step had nothing to do; the pass goes on with the next one
  script,       // the script run.script_name is run, then the next line is taken
  interrupted,  // somebody has broken it off: back to the console
  used_up,      // the script is used up, which ends a nested run
  quit,         // the process ends
};

}  // namespace tivelo
