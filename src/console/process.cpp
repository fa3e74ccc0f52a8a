// The command line, the script, the layout of a run's areas, and runs within runs.
#include "console/process.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

#include "base/characters.h"
#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "console/attendant.h"
#include "console/batch.h"
#include "console/editor.h"
#include "console/loop.h"
#include "console/options.h"
#include "console/run.h"
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

struct Nesting {
  int depth = 0;      // of the run that asks
  int runs_left = 0;  // of those that one line of the outermost run stands for
};

// How the command line is understood.
struct Start {
  int precision = kDefaultPrecision;
  const char* argument = nullptr;  // a precision digit or the name of a script
};

void tell_ignored(const char* argument) { report(Event::argument_ignored, {.name = argument}); }

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
    const bool only_mode = arguments[0][0] != '\0' && arguments[0][1] == '\0';
    if (mode < 2 || !only_mode) tell_ignored(arguments[mode < 2 ? 1 : 0]);
  } else if (count > 2) {
    tell_ignored(arguments[1]);
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
  long long whole = 0;
  const long length = read_text(name, script.text, kScriptBytes, &whole);
  script.opened = length >= 0;
  if (!script.opened) return report(Event::script_not_found, {.name = name});
  if (whole > length)
    report(Event::script_cut, {.needed = whole, .held = kScriptBytes, .name = name});
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
  RunStorage storage{reserve(sizeof(Run) + 3 * line + 1 + sizeof incoming.text + text)};
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
  run->typed_area = area(line + 1);
  run->script = area(sizeof incoming.text);
  run->text = area(text);
  run->line = run->line_area;
  for (char* lines : {run->line_area, run->typed_area}) {
    std::byte* start = reinterpret_cast<std::byte*>(lines);
    if (line > kSmallPages) use_large_pages(start + kSmallPages, start + line);
  }
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

Flow run_nested(const char* name, Nesting& nesting);

// Says what was broken off, on a new line of the terminal; where nothing was but a line, only the
// first time.
void tell_interruption(Run& run) {
  const char* text = line_in_hand() != nullptr ? line_in_hand() : "";
  const std::string_view line(text, ::strnlen(text, 60));
  if (messages != nullptr) put(*messages, "\n");
  const Detail detail = {.needed = run.passes - run.repeat_count + 1, .name = line};
  set_line_in_hand(nullptr, nullptr);
  const bool at_prompt = outside.lines->interrupted || outside.asked->interrupted;
  if (run.capturing) {
    report(Event::interrupted_capture);
  } else if (run.block_index != -1) {
    report(Event::interrupted_repeat, detail);
  } else if (run.script_position != nullptr) {
    report(Event::interrupted_script, detail);
  } else if (at_prompt) {
    if (!run.told_line_dropped) report(Event::interrupted_line);
    run.told_line_dropped = true;
  } else {
    report(run.printing ? Event::interrupted_printing : Event::interrupted, detail);
  }
}

Flow pass_unless_interrupted(Run& run) {
  try {
    const Flow flow = run_pass(run);
    if (flow == Flow::interrupted) tell_interruption(run);  // at a prompt
    return flow;
  } catch (const Interrupted&) {
    tell_interruption(run);
  } catch (const Refused&) {  // has been told
    set_line_in_hand(nullptr, nullptr);
  }
  return Flow::interrupted;
}

// Leaves the block and the script of the run; what they stored stays.
Flow return_to_console(Run& run) {
  if (run.capturing) run.block_entries = 0;
  run.capturing = false;
  run.block_index = -1;
  run.line = run.line_area;
  run.entry = nullptr;
  run.script_position = nullptr;
  end_messages();
  return Flow::next;
}

// Runs line after line. Returns how the run ended.
Flow run_lines(Run& run, Nesting& nesting) {
  Flow flow = Flow::next;
  while (flow == Flow::next) {
    flow = pass_unless_interrupted(run);
    if (flow == Flow::script) flow = run_nested(run.script_name, nesting);
    if (flow == Flow::interrupted && nesting.depth == 0) flow = return_to_console(run);
  }
  close_print_file(run.write_file);
  close_descriptor(run.read_file);
  return flow;
}

// Runs the script file `name` on the same variables. Flow::next when its script is used up, could
// not be opened or was refused (each reported), else how it ended: quit or interrupted.
Flow run_nested(const char* name, Nesting& nesting) {
  if (nesting.depth >= kNestedRuns) {
    report(Event::scripts_too_deep, {.held = kNestedRuns, .name = name});
    return Flow::next;
  }
  if (nesting.depth == 0) nesting.runs_left = kRunsAtOnce;
  if (--nesting.runs_left < 0) {
    report(Event::scripts_too_many, {.held = kRunsAtOnce, .name = name});
    return Flow::next;
  }
  load_script(incoming, name, false);
  if (!incoming.opened) return Flow::next;
  RunStorage storage = lay_out_run();
  if (storage.run == nullptr) {
    const auto size = static_cast<long long>(storage.region.size);
    report(Event::no_storage_for_script, {.needed = size, .name = name});
    return Flow::next;
  }
  storage.run->nested = true;
  start_script(*storage.run);
  ++nesting.depth;
  const Run* outer = watch_run(storage.run);
  storage.run->line_began = outer->line_began;  // until it has a line of its own
  const char* line = line_in_hand();
  const Flow flow = run_lines(*storage.run, nesting);
  set_line_in_hand(line, nullptr);  // the last one goes with its areas
  watch_run(outer);
  --nesting.depth;
  release(storage.region);
  return flow == Flow::used_up ? Flow::next : flow;
}

// The status of a run that the system ends.
int failed() { return outside.batch ? exit_status(EventClass::storage) : 1; }

int fail_without_storage(Out& errors, const Region& region) {
  flush(*answers);
  report_to(errors, Event::no_storage, {.needed = static_cast<long long>(region.size)});
  return failed();
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
  if (outside.batch) {
    storage.run->display_digits = -1;
  } else {
    print(*answers, "TIVELO Algebra 2022.10.29 (%d digits,%d) \n", (ISS - 2) * kLimbDigits,
          kLimbDigits);
  }
  wire_variables();
  start_script(*storage.run);
  Nesting nesting;
  watch_run(storage.run);
  run_lines(*storage.run, nesting);
  watch_run(nullptr);
  end_messages();
  release(storage.region);
  release(numbers);
  return outside.batch ? refusals.first_status : 0;
}

// Reads the script or the precision that the arguments name.
void look_at_arguments(const Options& options) {
  const Start start = understand(options.count, options.arguments);
  choose_precision(start.precision);
  incoming.opened = false;
  // An argument of one character is a precision digit or nothing, an empty one is nothing.
  if (start.argument == nullptr || start.argument[0] == '\0') return;
  if (start.argument[1] != '\0') {
    load_script(incoming, start.argument, options.precision < 0);
  } else if (is_digit(start.argument[0])) {
    choose_precision(start.argument[0] - '0');
  } else {
    tell_ignored(start.argument);
  }
}

int run(const Options& options, Batch* batch, Out& errors) {
  refusals = {.silent = outside.batch};
  look_at_arguments(options);
  const int header = batch != nullptr ? batch->header() : -1;
  if (header >= 0) choose_precision(header);
  if (options.precision >= 0) choose_precision(options.precision);
  int status = run_session(errors);
  if (!flush(*answers)) {
    report_to(errors, Event::output_not_written);
    status = failed();
  }
  return status;
}

}  // namespace

int run_calculator(int count, const char* const* arguments, const Streams& streams) {
  answers = streams.answers;
  messages = streams.messages;
  messages_on_terminal = streams.messages != nullptr;
  outside = {.lines = streams.in, .asked = streams.in};
  ROF[0] = 0;
  Options options;
  const Words words(count, arguments);
  if (const int status = read_options(words, &options, *answers, *streams.errors); status >= 0)
    return status;
  if (messages == nullptr && (options.explain || options.batch)) messages = streams.errors;
  if (!options.batch) {
    if (streams.in->terminal) {
      watch_terminal(*streams.in, *answers, *streams.errors, streams.messages != nullptr);
      attach_editor(*streams.in, *answers, *streams.errors, options.history);
    }
    const int status = run(options, nullptr, *streams.errors);
    detach_editor();
    return status;
  }
  // As any program that others read from, a batch run ends when they no longer do.
  std::signal(SIGPIPE, SIG_DFL);
  Region region = reserve(sizeof(Batch));
  if (region.data == nullptr) return fail_without_storage(*streams.errors, region);
  Batch* batch = ::new (region.data) Batch(words, streams.in);
  outside.lines = batch->lines();
  outside.batch = true;
  const int status = run(options, batch, *streams.errors);
  release(region);
  return status;
}

}  // namespace tivelo
