#include "console/process.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <new>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/pool.h"
#include "console/commands.h"
#include "console/files.h"
#include "console/loop.h"
#include "console/storage.h"
#include "fraction/numf.h"
#include "numtheory/factor.h"
#include "output/print.h"

namespace tivelo {

namespace {

constexpr int kNestedRuns = 32;

// A script that runs itself twice asks for 2^32 runs within that depth. So one "L:" of the
// outermost run stands for so many runs at most, all that it leads to counted.
constexpr int kRunsAtOnce = 100'000;

int nesting = 0;
int runs_left = 0;

// How the command line is understood.
struct Start {
  int precision = kDefaultPrecision;
  const char* argument = nullptr;  // a precision digit or the name of a script
};

// The mode is the form of the command line: none, one argument, a mode digit and an argument, or
// more. Modes 11 to 19 carry a precision; below 2 no argument is looked at.
Start understand(int count, const char* const* arguments) {
  int mode = count + 1;
  const char* argument = count > 0 ? arguments[0] : nullptr;
  if (count == 1) {
    const bool digit =
        is_digit(argument[0]) && std::iscntrl(static_cast<unsigned char>(argument[1]));
    mode = digit ? argument[0] - '0' + 10 : 2;
  } else if (count == 2) {
    mode = static_cast<unsigned char>(arguments[0][0]) - '0';
    argument = arguments[1];
  }
  Start start;
  if (mode >= 11 && mode <= 19) start.precision = mode - 10;
  if (mode >= 2) start.argument = argument;
  return start;
}

// A script as read, before the areas that will hold it are laid out.
struct Script {
  char text[kScriptBytes + 1];
  int length = 0;
  int first_line = 0;  // offset of the first line to run
  bool opened = false;
};

// "A." or "A:" at the start makes the first line a header, which may choose the precision.
void read_header(Script& script, bool may_choose) {
  const char* text = script.text;
  if (text[0] != 'A' || (text[1] != '.' && text[1] != ':')) return;
  if (may_choose && is_digit(text[2])) choose_precision(text[2] - '0');
  int end = 0;
  while (!std::iscntrl(static_cast<unsigned char>(text[end]))) ++end;
  script.first_line = end + 1;
}

// Reads the script file into `script`; reports when it cannot be opened.
void load_script(Script& script, const char* name, bool may_choose) {
  const long length = read_text(name, script.text, kScriptBytes);
  script.opened = length >= 0;
  if (!script.opened) {
    explain("%.200s: cannot be read", name);
    put(*console, "file not found.");
    return;
  }
  script.length = static_cast<int>(length);
  script.text[length] = '\0';
  script.first_line = 0;
  read_header(script, may_choose);
}

// Where the script is while the areas are not laid out yet. One is enough: a run copies it into its
// own area before it runs a line.
Script incoming;

// Lays out the areas of one run in one reservation. Without memory `run` is null.
struct RunStorage {
  Region region;
  Run* run = nullptr;
};

RunStorage lay_out_run() {
  const std::size_t line = static_cast<std::size_t>(ISS) * kLimbDigits;
  const std::size_t text = std::max(print_scratch(ISS), factor_text_bytes(ISS));
  RunStorage storage{reserve(sizeof(Run) + line + line + sizeof incoming.text + text)};
  std::byte* at = storage.region.data;
  if (at == nullptr) return storage;
  Run* run = ::new (at) Run;
  at += sizeof(Run);
  const auto area = [&at](std::size_t size) {
    char* start = reinterpret_cast<char*>(at);
    at += size;
    return start;
  };
  run->block_area = area(line);
  run->line_area = area(line);
  run->script = area(sizeof incoming.text);
  run->text = area(text);
  run->line = run->line_area;
  storage.run = run;
  return storage;
}

void start_script(Run& run) {
  if (!incoming.opened) return;
  std::memcpy(run.script, incoming.text, static_cast<std::size_t>(incoming.length) + 1);
  run.script_opened = true;
  run.script_length = incoming.length;
  run.script_position = run.script + incoming.first_line;
}

// Runs line after line. Returns how the run ended.
Flow run_lines(Run& run) {
  Flow flow = Flow::next;
  while (flow == Flow::next) flow = run_pass(run);
  close_files(run);
  return flow;
}

int fail_without_storage(Out& errors, const Region& region) {
  flush(*console);
  print(errors, "tivelo: %zu bytes of storage cannot be had\n", region.size);
  flush(errors);
  return 1;
}

int run_session(Out& errors) {
  Region numbers = reserve_numbers();
  if (numbers.data == nullptr) return fail_without_storage(errors, numbers);
  RunStorage storage = lay_out_run();
  if (storage.run == nullptr) {
    const int status = fail_without_storage(errors, storage.region);
    release(numbers);
    return status;
  }
  print(*console, "TIVELO Algebra 2022.10.29 (%d digits,%d) \n", (ISS - 2) * kLimbDigits,
        kLimbDigits);
  wire_variables();
  start_script(*storage.run);
  run_lines(*storage.run);
  release(storage.region);
  release(numbers);
  return 0;
}

}  // namespace

int run_calculator(int count, const char* const* arguments, const Console& outside) {
  console = outside.out;
  explanations = outside.explanations;
  typed = outside.in;
  set_line_in_hand(nullptr);
  nesting = 0;
  ROF[0] = 0;
  const Start start = understand(count, arguments);
  choose_precision(start.precision);
  incoming.opened = false;
  // An argument of one character is a precision digit or nothing, an empty one is nothing.
  if (const char* argument = start.argument; argument != nullptr && argument[0] != '\0') {
    if (argument[1] != '\0') {
      load_script(incoming, argument, true);
    } else if (is_digit(argument[0])) {
      choose_precision(argument[0] - '0');
    }
  }
  int status = run_session(*outside.errors);
  if (!flush(*console)) {
    put(*outside.errors, "tivelo: standard output cannot be written\n");
    flush(*outside.errors);
    status = 1;
  }
  return status;
}

Flow run_nested(const char* name) {
  if (nesting >= kNestedRuns) {
    explain("scripts nested more than %d deep; not run", kNestedRuns);
    err(kTooDeep);
    return Flow::next;
  }
  if (nesting == 0) runs_left = kRunsAtOnce;
  if (--runs_left < 0) {
    explain("more than %d scripts run by one line; not run", kRunsAtOnce);
    err(kTooDeep);
    return Flow::next;
  }
  load_script(incoming, name, false);
  if (!incoming.opened) return Flow::next;
  RunStorage storage = lay_out_run();
  if (storage.run == nullptr) {
    explain("%zu bytes of storage cannot be had; not run", storage.region.size);
    err(kNoRoom);
    return Flow::next;
  }
  storage.run->nested = true;
  start_script(*storage.run);
  ++nesting;
  const Flow flow = run_lines(*storage.run);
  --nesting;
  release(storage.region);
  return flow == Flow::used_up ? Flow::next : flow;
}

}  // namespace tivelo
