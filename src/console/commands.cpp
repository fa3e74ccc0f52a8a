// One function for each command, and the table of their marks.
#include "console/commands.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <iterator>
#include <string_view>

#include "base/characters.h"
#include "base/exactness.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "console/lines.h"
#include "console/variable_file.h"
#include "eval/calc.h"
#include "fraction/cells.h"
#include "fraction/decimal.h"
#include "numtheory/factor.h"
#include "output/print.h"

namespace tivelo {

namespace {

constexpr const char* kDefaultPrintFile = "save.txt";

// "C." X: the integer part.
Flow truncate(Run&, const char** at) {
  if (!is_capital(**at)) return Flow::next;
  const numf& value = changing(**at - 'A');
  value.c->ext = 0;
  if (is_short_zero(value.c) || is_short_zero(value.m)) return Flow::next;
  if (value.c->dec == FF) report(Event::decimal_not_truncated, {.place = *at, .name = {*at, 1}});
  if (const int divisor = small_magnitude(value.m, 0); divisor > 0) {
    div(value.c, divisor);
  } else {
    nndiv(value.c, nullptr, value.c, value.m);
  }
  set_one_limb(value.m, 1);
  return Flow::next;
}

// "X." X [ '-' ] digits: times a power of ten, or divided by it without reducing.
Flow scale(Run&, const char** at) {
  if (!is_capital(**at)) return Flow::next;
  const int v = *(*at)++ - 'A';
  const numf& value = changing(v);
  num* scaled = value.c;
  if (**at == '-') {
    scaled = value.m;
    ++*at;
  }
  long long digits = 0;
  read_count(*at, &digits);
  if (nfloat(scaled, digits) < 0) {
    const long long needed = digits_of(scaled) + digits;
    report(Event::scale_too_long, {.place = *at, .needed = needed, .held = digits_held()});
  }
  note_length(v);
  return Flow::next;
}

// Evaluates the typed line into X, or the units of its value into the low word of a cell of X.
void store_input(const char* line, int v, int k) {
  const char name = static_cast<char>('A' + v);
  const Lent value_c, value_m;
  numf value(value_c, value_m);
  begin_messages();
  set_line_in_hand(line, nullptr);
  evaluate_line(line, &value);
  place_in_hand = nullptr;
  if (k < 0) {
    copy(changing(v), value);
    note_length(v);
    mark_input(v, false);
  } else if (cell_is_free(v, k)) {
    Cell cell = read_cell(v, k);
    cell.low = static_cast<std::int32_t>(units(value.c));
    write_cell(v, k, cell);
    mark_input(v, true);
  } else {
    report(Event::cell_taken, {.needed = k, .name = {&name, 1}});
  }
}

// "I." X ':' prompt, "I." X d ':' prompt
Flow input(Run& run, const char** at) {
  const char* form = *at;
  const bool to_cell = is_capital(form[0]) && is_digit(form[1]);
  const char* colon = is_capital(form[0]) ? form + (to_cell ? 2 : 1) : form;
  if (*colon != ':' || colon == form) {
    report(Event::input_form, {.place = form});
    return Flow::next;
  }
  const int v = form[0] - 'A';
  const int k = to_cell ? form[1] - '0' : -1;
  Out& prompt = outside.batch ? *messages : *answers;
  put(prompt, colon + 1);
  if (outside.batch) flush(prompt);
  outside.asked->keep = false;
  const char* answer = getsn(run.line_area, ISS * kLimbDigits, *outside.asked);
  outside.asked->keep = true;
  if (answer == nullptr) {
    if (outside.asked->interrupted) return Flow::interrupted;
    if (!outside.batch) put(*answers, "\n");
    return Flow::quit;
  }
  store_input(run.line_area, v, k);
  return Flow::next;
}

// "P." X [ d ]; without a variable the line goes on behind the letters.
Flow print_on_console(Run& run, const char** at) {
  if (!is_capital(**at)) return Flow::fall_on;
  show(run, *at);
  return Flow::next;
}

// "W." X [ d ], likewise.
Flow print_to_file(Run& run, const char** at) {
  if (!is_capital(**at)) return Flow::fall_on;
  if (run.write_file.descriptor < 0) {
    show(run, *at);
  } else {
    nprint(*at, run.text, run.display_digits, &run.write_file.out);
  }
  return Flow::next;
}

// "F." operand
Flow factorise(Run& run, const char** at) {
  const Lent c, m;
  numf operand(c, m);
  mclear(&operand);
  const long long before = refusals.count;
  const int count = evaluate_operand(*at, &operand);
  if (count >= 0 && (*at)[count] != '\0') report(Event::rest_not_read, {.place = *at + count});
  fprime(operand.c, run.text);
  if (outside.batch && refusals.count != before) return Flow::next;
  put(*answers, run.text);
  put(*answers, "\n");
  return Flow::next;
}

// "O." X any Y: which numerator is the larger in magnitude.
Flow compare(Run&, const char** at) {
  const char* form = *at;
  if (!is_capital(form[0]) || form[1] == '\0' || !is_capital(form[2])) return Flow::next;
  constexpr char kSigns[] = {'<', '=', '>'};
  const int order = fcomp(M[form[0] - 'A'].c, M[form[2] - 'A'].c);
  print(*answers, "%c%c%c\n", form[0], kSigns[order + 1], form[2]);
  return Flow::next;
}

// What a person who asks for so many places should know. From IS x 4 on the console shows none; a
// batch run shows them all the same.
void report_places(long long asked, long long shown, const char* place) {
  const bool any = outside.batch || shown < static_cast<long long>(IS) * 4;
  if (asked != shown || !any) {
    report(Event::places_limited, {.place = place, .needed = any ? shown : 0});
  } else if (shown % kLimbDigits != 0 && !outside.batch) {
    report(Event::places_grouped, {.place = place});
  }
}

// "V.F" | "V." digits
Flow set_display(Run& run, const char** at) {
  long long digits = -1;
  if (**at != 'F') {
    read_count(*at, &digits);
    const long long asked = digits;
    digits = std::min<long long>(digits, INT_MAX);
    if (digits > static_cast<long long>(IS) * kLimbDigits) digits = IS / 2 - 2;
    report_places(asked, digits, *at);
  }
  run.display_digits = static_cast<int>(digits);
  return Flow::next;
}

// "L:" name
Flow run_script(Run& run, const char** at) {
  run.script_name = *at;
  return Flow::script;
}

// "LC:" name
Flow load_cells(Run&, const char** at) {
  csv_load(*at);
  return Flow::next;
}

// "WC:" X d any name
Flow save_cells(Run&, const char** at) {
  const char* form = *at;
  if (!is_capital(form[0]) || !is_digit(form[1]) || form[2] == '\0' || form[3] == '\0') {
    report(Event::save_form, {.place = form});
  } else {
    csv_save(form + 3, form);
  }
  return Flow::next;
}

Flow quit(Run&, const char**) { return Flow::quit; }

Flow reduction_off(Run&, const char**) {
  ROF[0] = 1;
  return Flow::next;
}

Flow reduction_on(Run&, const char**) {
  ROF[0] = 0;
  return Flow::next;
}

const char* print_file_name(const char* at) { return *at == ':' ? at + 1 : kDefaultPrintFile; }

// "#FW" [ ':' name ]
Flow open_write_file(Run& run, const char** at) {
  open_print_file(run.write_file, print_file_name(*at));
  return Flow::next;
}

// "#FR" [ ':' name ]
Flow open_read_file(Run& run, const char** at) {
  close_descriptor(run.read_file);
  run.read_file = open_to_read(print_file_name(*at));
  if (run.read_file < 0) report(Event::read_file_not_opened, {.name = print_file_name(*at)});
  return Flow::next;
}

Flow close_both_files(Run& run, const char**) {
  close_print_file(run.write_file);
  close_descriptor(run.read_file);
  return Flow::next;
}

struct Command {
  std::string_view mark;
  // *at is behind the mark.
  Flow (*run)(Run& run, const char** at);
};

// In the order in which they are tried.
constexpr Command kCommands[] = {
    {"C.", truncate},
    {"X.", scale},
    {"I.", input},
    {"P.", print_on_console},
    {"W.", print_to_file},
    {"F.", factorise},
    {"O.", compare},
    {"V.", set_display},
    {"L:", run_script},
    {"LC:", load_cells},
    {"WC:", save_cells},
    {"Q.", quit},
    {"Q:", quit},
    {"#ROF", reduction_off},
    {"#RON", reduction_on},
    {"#FW", open_write_file},
    {"#FR", open_read_file},
    {"#FC", close_both_files},
};

// The second characters of the marks: few lines without a command have one of them there.
constexpr std::array<bool, 256> make_seconds() {
  std::array<bool, 256> seconds{};
  for (const Command& command : kCommands)
    seconds[static_cast<unsigned char>(command.mark[1])] = true;
  return seconds;
}

bool may_be_command(const char* at) {
  static constexpr std::array<bool, 256> kSeconds = make_seconds();
  return *at != '\0' && kSeconds[static_cast<unsigned char>(at[1])];
}

}  // namespace

Flow run_command(Run& run, const char** at) {
  for (const Command& command : kCommands) {
    if (!may_be_command(*at)) break;  // at first, and behind a command that fell on
    if (std::strncmp(*at, command.mark.data(), command.mark.size()) != 0) continue;
    *at += command.mark.size();
    const Flow flow = command.run(run, at);
    if (flow != Flow::fall_on) return flow;
  }
  return Flow::fall_on;
}

void show(const Run& run, const char* name) {
  if (outside.batch && !is_digit(name[1])) {
    print_bare(M[name[0] - 'A'], run.text, run.display_digits, *answers);
  } else {
    nprint(name, run.text, run.display_digits, nullptr);
  }
}

std::string_view command_mark(std::size_t i) {
  return i < std::size(kCommands) ? kCommands[i].mark : std::string_view();
}

}  // namespace tivelo
