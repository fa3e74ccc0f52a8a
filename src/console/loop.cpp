// What a line can be, in the order in which it is tried, and where a result goes.
#include "console/loop.h"

#include "base/characters.h"
#include "base/exactness.h"
#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "console/commands.h"
#include "console/lines.h"
#include "console/own_commands.h"
#include "eval/calc.h"
#include "fraction/cells.h"
#include "output/print.h"

namespace tivelo {

namespace {

constexpr const char* kHelp =
    "A=N  substitute N to A\n"
    "F.N  factorize N \n"
    "V.F  expresses as a fraction \n"
    "V.n  expresses as a decimal \n"
    "n means a number. N means a Variable. \n"
    "q:  quit\n";

constexpr int kDefaultTarget = 'T' - 'A';

// Where a result goes: a variable, or one of its cells (possibly one that does not exist).
struct Target {
  bool named = false;
  int variable = kDefaultTarget;
  bool whole = true;
  int cell = kNoCell;
};

// X '=' | X digit '=' | X '#' any any '=', each tried once, behind the one before. Returns the
// position behind them.
const char* parse_target(const char* at, Target& target) {
  if (is_capital(at[0]) && at[1] == '=') {
    target = {true, at[0] - 'A', true, kNoCell};
    at += 2;
  }
  if (is_capital(at[0]) && is_digit(at[1]) && at[2] == '=') {
    target = {true, at[0] - 'A', false, at[1] - '0'};
    at += 3;
  }
  if (is_capital(at[0]) && at[1] == '#' && at[2] != '\0' && at[3] != '\0' && at[4] == '=') {
    target = {true, at[0] - 'A', false, named_cell(at[2], at[3])};
    at += 5;
  }
  return at;
}

void store_cell(const Target& target) {
  const char name = static_cast<char>('A' + target.variable);
  if (!cell_is_free(target.variable, target.cell)) {
    report(Event::cell_taken, {.needed = target.cell, .name = {&name, 1}});
  } else if (Cn.c->len > NN && has_value(Cn.c)) {
    report(Event::cell_too_short, {.needed = digits_of(Cn.c), .held = NN * kLimbDigits});
  } else {
    write_cell(target.variable, target.cell, pack_cell(Cn));
    mark_cell(target.variable);
  }
}

void store_variable(int variable) {
  num* c = M[variable].c;
  copy(changing(variable), Cn);
  if (c->len == 0 && (c->ext > 0 || c->rem == 0)) c->len = 1;
  note_length(variable);
  mark_variable(variable);
}

void show_result(Run& run, const Target& target, bool refused) {
  if (run.script_position != nullptr) return;
  if (outside.batch && (target.named || refused)) return;
  run.printing = true;
  const char name[] = {static_cast<char>('A' + target.variable), '\0'};
  show(run, name);
  if (!outside.batch) put(*answers, "\n");
}

// The rest of the line is an expression: evaluates it into Cn and stores that. The mark of a
// rejected line stores the previous result again.
void assign(Run& run, const char* at, const Target& target) {
  const long long before = refusals.count;
  if (at[0] != '\0' && at[1] == '=') at += 2;
  if (*at == ';') {
    report(Event::line_rejected);
  } else {
    evaluate_line(at, &Cn);
    mark_result();
  }
  place_in_hand = nullptr;
  if (target.whole) {
    store_variable(target.variable);
    show_result(run, target, refusals.count != before);
  } else {
    store_cell(target);
  }
}

}  // namespace

Flow run_pass(Run& run) {
  if (answers->failed) return Flow::quit;
  run.printing = false;
  progress = {};
  const Flow source = next_line(run);
  if (source == Flow::fall_on) return Flow::next;
  if (source != Flow::next) return source;
  if (const Entry* entry = run.entry; entry != nullptr && entry->expression != nullptr) {
    assign(run, entry->expression, {entry->named, entry->variable});
    return Flow::next;
  }
  const char* at = run.line;
  if (*at == '\0' && !run.script_opened) {
    if (!outside.batch) put(*answers, kHelp);
    return Flow::next;
  }
  if (*at == '{' && run.block_index == -1) return capture_block(run);
  if (*at == 'R' && at[1] != '=') {
    start_block(run);
    return Flow::next;
  }
  while (*at == ' ') ++at;
  if (*at == '#') [[unlikely]] {
    const Flow own = run_own_command(run, &at);
    if (own != Flow::fall_on) return own;
  }
  Target target;
  at = parse_target(at, target);
  const char* behind_target = at;
  const Flow flow = run_command(run, &at);
  if (flow != Flow::fall_on) return flow;
  if (run.entry != nullptr && at == behind_target && target.whole)
    *run.entry = {run.entry->text, at, target.variable, target.named};
  assign(run, at, target);
  return Flow::next;
}

}  // namespace tivelo
