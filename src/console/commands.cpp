#include "console/commands.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <string_view>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/addsub.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "console/lines.h"
#include "console/process.h"
#include "console/variable_file.h"
#include "eval/calc.h"
#include "eval/stepwise.h"
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
  num* c = Mc[**at - 'A'];
  num* m = Mm[**at - 'A'];
  c->ext = 0;
  if (is_short_zero(c) || is_short_zero(m)) return Flow::next;
  const int divisor = small_magnitude(m, 0);
  if (divisor > 0) {
    div(c, divisor);
  } else {
    nndiv(c, N4, c, m);
  }
  set_one_limb(m, 1);
  return Flow::next;
}

// "X." X [ '-' ] digits: times a power of ten, or divided by it without reducing.
Flow scale(Run&, const char** at) {
  if (!is_capital(**at)) return Flow::next;
  const int v = *(*at)++ - 'A';
  num* scaled = Mc[v];
  if (**at == '-') {
    scaled = Mm[v];
    ++*at;
  }
  long long digits = 0;
  read_count(*at, &digits);
  err(nfloat(scaled, digits));
  return Flow::next;
}

// Evaluates the typed line into X, or the units of its value into the low word of a cell of X.
void store_input(const char* line, int v, int k) {
  numf value(Jc, Jm);
  set_line_in_hand(line);
  grant_steps();
  // The registers of depth 0 begin with the current result, which a typed value must not disturb.
  rncopy(Fc, Cn.c);
  rncopy(Fm, Cn.m);
  calc(line, &value, 0);
  rncopy(Cn.c, Fc);
  rncopy(Cn.m, Fm);
  if (k < 0) {
    rncopy(Mc[v], value.c);
    rncopy(Mm[v], value.m);
  } else if (cell_is_free(v, k)) {
    Cell cell = read_cell(v, k);
    cell.low = static_cast<std::int32_t>(units(value.c));
    write_cell(v, k, cell);
  } else {
    explain("the value of %c covers its cell %d; nothing stored", 'A' + v, k);
    err(kMisfit);
  }
}

// "I." X ':' prompt, "I." X d ':' prompt
Flow input(Run& run, const char** at) {
  const char* form = *at;
  const bool to_cell = is_capital(form[0]) && is_digit(form[1]);
  const char* colon = is_capital(form[0]) ? form + (to_cell ? 2 : 1) : form;
  if (*colon != ':' || colon == form) {
    explain("\"I.\" takes a variable or a cell, and ':' with a prompt");
    err(kNoOperand);
    return Flow::next;
  }
  const int v = form[0] - 'A';
  const int k = to_cell ? form[1] - '0' : -1;
  put(*console, colon + 1);
  if (getsn(run.line_area, ISS * kLimbDigits) == nullptr) {
    put(*console, "\n");
    return Flow::quit;
  }
  store_input(run.line_area, v, k);
  return Flow::next;
}

// "P." X [ d ]; without a variable the line goes on behind the letters.
Flow print_on_console(Run& run, const char** at) {
  if (!is_capital(**at)) return Flow::fall_on;
  nprint(*at, run.text, run.display_digits, nullptr);
  return Flow::next;
}

// "W." X [ d ], likewise.
Flow print_to_file(Run& run, const char** at) {
  if (!is_capital(**at)) return Flow::fall_on;
  const bool open = run.write_file.descriptor >= 0;
  nprint(*at, run.text, run.display_digits, open ? &run.write_file.out : nullptr);
  return Flow::next;
}

// "F." operand
Flow factorise(Run& run, const char** at) {
  numf operand(Fc, Fm);
  mclear(&operand);
  if (nread(*at, &operand, 1) < 0) mclear(&operand);
  fprime(operand.c, run.text, Zc);
  put(*console, run.text);
  put(*console, "\n");
  return Flow::next;
}

// "O." X any Y: which numerator is the larger in magnitude.
Flow compare(Run&, const char** at) {
  const char* form = *at;
  if (!is_capital(form[0]) || form[1] == '\0' || !is_capital(form[2])) return Flow::next;
  constexpr char kSigns[] = {'<', '=', '>'};
  const int order = fcomp(Mc[form[0] - 'A'], Mc[form[2] - 'A']);
  print(*console, "%c%c%c\n", form[0], kSigns[order + 1], form[2]);
  return Flow::next;
}

// "V.F" | "V." digits
Flow set_display(Run& run, const char** at) {
  long long digits = -1;
  if (**at != 'F') {
    read_count(*at, &digits);
    digits = std::min<long long>(digits, INT_MAX);
    if (digits > static_cast<long long>(IS) * kLimbDigits) digits = IS / 2 - 2;
  }
  run.display_digits = static_cast<int>(digits);
  return Flow::next;
}

// "L:" name
Flow run_script(Run&, const char** at) { return run_nested(*at); }

// "LC:" name
Flow load_cells(Run&, const char** at) {
  csv_load(*at);
  return Flow::next;
}

// "WC:" X d any name
Flow save_cells(Run&, const char** at) {
  const char* form = *at;
  if (!is_capital(form[0]) || !is_digit(form[1]) || form[2] == '\0' || form[3] == '\0') {
    explain("\"WC:\" takes the last variable, the last cell, any character and a file name");
    err(kNoOperand);
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

void close_read_file(Run& run) {
  if (run.read_file >= 0) ::close(run.read_file);
  run.read_file = -1;
}

// "#FR" [ ':' name ]
Flow open_read_file(Run& run, const char** at) {
  close_read_file(run);
  run.read_file = open_to_read(print_file_name(*at));
  if (run.read_file < 0) explain("%.200s: cannot be read", print_file_name(*at));
  return Flow::next;
}

Flow close_both_files(Run& run, const char**) {
  close_files(run);
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

void close_files(Run& run) {
  close_print_file(run.write_file);
  close_read_file(run);
}

}  // namespace tivelo
