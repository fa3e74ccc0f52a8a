// The table of the words, and those of their functions that are short.
#include "console/own_commands.h"

#include <cstring>
#include <ctime>
#include <iterator>

#include "base/characters.h"
#include "base/event_names.h"
#include "base/exactness.h"
#include "base/precision.h"
#include "base/report.h"
#include "console/help.h"
#include "console/identity.h"
#include "console/number_commands.h"
#include "console/state_file.h"
#include "eval/calc.h"

namespace tivelo {

namespace {

const char* file_name(const char* at) {
  if (at[0] == ':' && at[1] != '\0') return at + 1;
  report(Event::state_form, {.place = at});
  return nullptr;
}

void print_size(const char* name) {
  const StateSize size = size_of_state();
  put(*answers, name);
  print(*answers, ": %d variable%s, %d cell%s\n", size.variables, size.variables == 1 ? "" : "s",
        size.cells, size.cells == 1 ? "" : "s");
}

// "#SAVE:" name
Flow save(Run& run, const char** at) {
  const char* name = file_name(*at);
  if (name != nullptr && save_state(name, run.display_digits)) print_size(name);
  return Flow::next;
}

// "#LOAD:" name
Flow load(Run& run, const char** at) {
  const char* name = file_name(*at);
  if (name != nullptr && load_state(name, &run.display_digits)) print_size(name);
  return Flow::next;
}

// "#ID" [ expression ]
Flow identify(Run& run, const char** at) {
  run.printing = true;
  if (**at == '\0') {
    print_identity(Cn);
    return Flow::next;
  }
  const long long before = refusals.count;
  const Lent c, m;
  numf value(c, m);
  evaluate_line(*at, &value);
  place_in_hand = nullptr;
  if (!outside.batch || refusals.count == before) print_identity(value);
  return Flow::next;
}

// "#WHY" [ X | X d ]: the current result, a variable, or the cells of it.
Flow explain(Run&, const char** at) {
  const char* name = *at;
  const Mark* mark = &mark_of_result();
  put(*answers, is_capital(*name) && is_digit(name[1]) ? "the cells of " : "");
  if (is_capital(*name)) {
    mark = is_digit(name[1]) ? &mark_of_cells(*name - 'A') : &mark_of(*name - 'A');
    put(*answers, {name, 1});
  } else {
    put(*answers, "the result");
  }
  const char* verb = is_digit(name[0] != '\0' ? name[1] : '\0') ? "are" : "is";
  if (mark->exact()) {
    print(*answers, " %s exact\n", verb);
    return Flow::next;
  }
  const EventRow& row = event_row(mark->event);
  const bool cut = row.kind == EventClass::cut;
  print(*answers, " %s %s, ", verb, cut ? "cut to 16 places" : "not the value asked for");
  print(*answers, mark->times == 1 ? "once" : "%d times", mark->times);
  print(*answers, ", first in %s: ", mark->line);
  if (cut) {
    put(*answers, row.text);
  } else {
    for (const char c : event_name(mark->event))
      put(*answers, c == '_' ? " " : std::string_view(&c, 1));
  }
  put(*answers, "\n");
  return Flow::next;
}

const char* kind_of(const numf& value) {
  if (value.c->imag == 1) return "imaginary";
  if (value.c->dec == FF) return "decimal";
  return is_one(value.m) ? "integer" : "fraction";
}

// "#LIST"
Flow list(Run& run, const char**) {
  for (int v = 0; v < kVariables; ++v) {
    const char name = static_cast<char>('A' + v);
    const numf& value = M[v];
    if (is_assigned(v)) {
      const long long digits = digits_of(value.c);
      print(*answers, "%c: %s, %lld", name, kind_of(value), digits);
      if (!is_one(value.m)) print(*answers, "/%lld", digits_of(value.m));
      print(*answers, " digit%s, %s\n", digits == 1 && is_one(value.m) ? "" : "s",
            mark_of(v).exact() ? "exact" : "not exact");
    }
    const int cells = cells_of(v);
    if (cells > 0)
      print(*answers, "%c: %d cell%s, %s\n", name, cells, cells == 1 ? "" : "s",
            mark_of_cells(v).exact() ? "exact" : "not exact");
  }
  if (run.block_entries > 0)
    print(*answers, "the block: %d entr%s\n", run.block_entries,
          run.block_entries == 1 ? "y" : "ies");
  return Flow::next;
}

// "#TIME"
Flow tell_time(Run& run, const char**) {
  print(*answers, "%.3f s\n", processor_time() - run.line_began);
  return Flow::next;
}

Flow help(Run& run, const char** at);

struct OwnCommand {
  Help help;  // the word with its '#'
  // *at is behind the word, and behind a point after it.
  Flow (*run)(Run& run, const char** at);
};

constexpr OwnCommand kOwnCommands[] = {
    {{"#SAVE",
      "#SAVE:name",
      "keeps all variables, cells, the result and the display in a file",
      {"#SAVE:work.state", "#SAVE:/tmp/a"},
      "never over a file that is no such state"},
     save},
    {{"#LOAD",
      "#LOAD:name",
      "brings them back, or refuses and changes nothing",
      {"#LOAD:work.state", "#LOAD:/tmp/a"},
      "all variables are replaced, not some; no block is kept"},
     load},
    {{"#ID",
      "#ID [expression]",
      "what two people need to compare a long number",
      {"#ID 2^1000", "#ID"},
      "of a negative number sha256 counts the minus"},
     identify},
    {{"#WHY",
      "#WHY [X]",
      "is X, or the result, exact; if not, since when and why",
      {"#WHY A", "#WHY"},
      "the cells of a variable have one mark for all: #WHY A1"},
     explain},
    {{"#LIST",
      "#LIST",
      "the variables that were assigned, their cells, the block",
      {"#LIST", "#LIST."},
      "digits of a decimal count its 16 places"},
     list},
    {{"#HELP",
      "#HELP [word]",
      "an index, or all about one word",
      {"#HELP", "#HELP ^"},
      "in a block a point parts the words: #HELP.ID"},
     help},
    {{"#TIME",
      "#TIME",
      "the processor time of the last line",
      {"#TIME", "#TIME."},
      "of the clock: TIME, without '#'"},
     tell_time},
    {{"#DIV",
      "#DIV X Y",
      "X becomes the whole quotient X/Y, Y the remainder",
      {"#DIV A B", "#DIVAB"},
      "the remainder is never negative: of -7 by 2 it is 1"},
     divide_command},
    {{"#POWM",
      "#POWM X Y Z",
      "X becomes X^Y modulo Z",
      {"#POWM A B C", "#POWM.ABC"},
      "Y from 0 on, Z above 0; the result is never negative"},
     power_modulo_command},
    {{"#PRIME",
      "#PRIME [expression]",
      "is it prime: proven below 2^64, probable above",
      {"#PRIME 2^61-1", "#PRIME A"},
      "of 1, 0 and negative numbers: composite"},
     prime_command},
    {{"#NEXT",
      "#NEXT X",
      "X becomes the next prime above it, above 2^64 a probable one",
      {"#NEXT A", "#NEXTA"},
      "one variable, no expression"},
     next_prime_command},
};

// "#HELP" [ word ]
Flow help(Run&, const char** at) {
  Help rows[std::size(kOwnCommands)];
  for (std::size_t i = 0; i < std::size(rows); ++i) rows[i] = kOwnCommands[i].help;
  if (**at == '\0') {
    print_index(rows);
  } else if (!print_help(*at, rows)) {
    report(Event::help_unknown, {.place = *at, .name = *at});
  }
  return Flow::next;
}

bool is_letter(char c) { return is_capital(c) || (c >= 'a' && c <= 'z'); }

}  // namespace

int own_word_length(const char* typed) {
  constexpr int kLonger = 8;                              // than any of the words
  const char* end = typed + ISS * kLimbDigits - kLonger;  // a line may lack its zero
  while (*typed == ' ' && typed < end) ++typed;
  if (*typed != '#') return 0;
  int length = 0;
  while (length < kLonger - 1 && is_letter(typed[length + 1])) ++length;
  return length;
}

Flow run_own_command(Run& run, const char** at) {
  // An entry of a block is kept cleaned: its word ends where its letters do.
  const int length = run.block_index != -1 ? own_word_length(*at) : run.word_length;
  const std::string_view word(*at, static_cast<std::size_t>(length) + 1);
  for (const OwnCommand& command : kOwnCommands) {
    if (word != command.help.word) continue;
    *at += word.size();
    if (**at == '.') ++*at;
    return command.run(run, at);
  }
  return Flow::fall_on;
}

std::string_view own_command_word(std::size_t i) {
  return i < std::size(kOwnCommands) ? kOwnCommands[i].help.word : std::string_view();
}

double processor_time() {
  std::timespec now;
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace tivelo
