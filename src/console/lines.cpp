// The sources of lines, cleaning, the block and its repeats.
#include "console/lines.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>

#include "base/characters.h"
#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "console/own_commands.h"
#include "fraction/numf.h"

namespace tivelo {

namespace {

int line_room() { return ISS * kLimbDigits; }

bool script_is_used_up(const Run& run) {
  return run.script_position - run.script > run.script_length - 2;
}

int reject(char* line, int length) {
  std::strcpy(line, ";");
  return length;
}

// The place of the i-th character in the line as typed, which is in hand while it is cleaned.
const char* typed_place(int i) {
  const char* typed = line_in_hand();
  return typed != nullptr ? typed + i : nullptr;
}

// Says why the character text[0], the i-th of its line, is not accepted.
void report_character(std::string_view text, int i) {
  const char* place = typed_place(i);
  const char c = text[0];
  if (c == '\t') return report(Event::tab_key, {.place = place});
  if (is_control(c)) return report(Event::control_key, {.place = place});
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) ++size;
  const std::string_view name = text.substr(0, size);
  const bool product = name == "\u00D7" || name == "\u00F7" || name == "\u00B7";
  report(product ? Event::times_sign : Event::not_accepted, {.place = place, .name = name});
}

// Is line[i] the first of the blanks between two digits? They are dropped like all others. What
// stands before i is cleaned already, `kept` characters of it, but never looks like a blank there
// unless it was one.
bool splits_number(const char* line, int i, int kept, int room) {
  if (kept == 0 || line[i - 1] == ' ' || !is_digit(line[kept - 1])) return false;
  while (i < room && line[i] == ' ') ++i;
  return i < room && is_digit(line[i]);
}

// May "#TIME" ask when the line in hand began? Looking at the clock takes longer than most lines,
// so the one that stands behind is looked at where it has been read.
bool clock_is_asked(const Run& run) {
  if (run.line[0] == '#') return std::strncmp(run.line, "#TIME", 5) != 0;
  if (run.line[0] == 'R' || run.line[0] == 'L') return true;
  if (const char* next = run.script_position) return *next == '#' || *next == ' ';
  if (outside.batch) return outside.clock;
  const In& in = *outside.lines;
  return in.next == in.end || in.buffer[in.next] == '#' || in.buffer[in.next] == ' ';
}

// Fetches and cleans the next line of the script or the console into the line area.
Flow fetch_line(Run& run) {
  begin_messages();
  const int taken = cgets(run.line_area, run.script_position);
  if (taken < 0 && outside.lines->interrupted) return Flow::interrupted;
  if (taken < 0) {
    if (!outside.batch) put(*answers, "\n");
    return Flow::quit;
  }
  if (run.script_position != nullptr) {
    run.script_position += taken;
    ++run.script_line;
  }
  run.typed = nullptr;
  if (messages != nullptr) {
    const std::size_t size = strnlen(run.line_area, static_cast<std::size_t>(line_room()));
    std::memcpy(run.typed_area, run.line_area, size);
    run.typed_area[size] = '\0';
    run.typed = run.typed_area;
  }
  set_line_in_hand(run.typed, nullptr);
  const char first = run.line_area[0];
  run.word_length = first == '#' || first == ' ' ? own_word_length(run.line_area) : 0;
  eclean(run.line_area);
  run.line = run.line_area;
  if (clock_is_asked(run)) run.line_began = processor_time();
  set_line_in_hand(run.line, run.typed);
  return Flow::next;
}

// The block's turn: its next entry, or the end of a repetition.
Flow next_entry(Run& run) {
  poll();
  if (run.block_index == run.block_entries) {
    --run.repeat_count;
    const bool again = run.repeat_count >= 1 && run.block_entries > 0;
    run.block_index = again ? 0 : -1;
    if (!again) {
      run.line = run.line_area;
      run.entry = nullptr;
      end_repeat();
    }
    return Flow::fall_on;
  }
  run.entry = &run.block[run.block_index++];
  run.line = run.entry->text;
  set_line_in_hand(run.line, nullptr);
  if (run.script_position == nullptr && !outside.batch) {
    put(*answers, "? ");
    put(*answers, run.line);
    put(*answers, "\n");
  }
  return Flow::next;
}

bool is_repeat(const char* line) { return line[0] == 'R' && line[1] != '='; }

// The block while it is being captured.
struct Capture {
  Run& run;
  char* end;  // where the next entry goes
  bool full = false;

  void add(const char* piece, std::size_t length);
  bool add_line(char* line);
};

void Capture::add(const char* piece, std::size_t length) {
  if (full) return;
  const std::size_t left = static_cast<std::size_t>(run.block_area + line_room() - end);
  if (run.block_entries == kBlockEntries || length + 1 > left) {
    full = true;
    report(Event::block_full, {.needed = run.block_entries});
    return;
  }
  if (is_repeat(piece)) report(Event::repeat_in_block, {.place = piece});
  run.block[run.block_entries++] = {end, nullptr, 0, false};
  std::memcpy(end, piece, length);
  end += length;
  *end++ = '\0';
}

// Adds the pieces of a line; true when the last one closes the block.
bool Capture::add_line(char* line) {
  for (;;) {
    char* comma = std::strchr(line, ',');
    if (comma == nullptr && *line == '}') return true;
    const std::size_t length = comma ? static_cast<std::size_t>(comma - line) : std::strlen(line);
    add(line, length);
    if (comma == nullptr) return false;
    line = comma + 1;
  }
}

int numeral_value(char c) {
  switch (c) {
    case 'V':
      return 5;
    case 'X':
      return 10;
    case 'L':
      return 50;
    case 'C':
      return 100;
    case 'D':
      return 500;
    case 'M':
      return 1000;
    default:
      return 0;
  }
}

// The count behind 'R', in at most six characters: digits append to it, numerals add to it, others
// do nothing and are reported.
int read_repeat_count(const char* text) {
  long long count = 0;
  const char* other = nullptr;
  for (int i = 0; i < 6 && text[i] != '\0'; ++i) {
    const int numeral = numeral_value(text[i]);
    if (!is_digit(text[i]) && numeral == 0 && other == nullptr) other = text + i;
    count = is_digit(text[i]) ? count * 10 + (text[i] - '0') : count + numeral;
    count = std::min<long long>(count, INT_MAX);
  }
  count = std::max(count, 1LL);
  if (other != nullptr) {
    const Event event = *other == 'I' ? Event::repeat_numeral : Event::repeat_of_expression;
    report(event, {.place = other, .needed = count, .name = {other, 1}});
  }
  return static_cast<int>(count);
}

}  // namespace

char* getsn(char* buf, int n, In& in) {
  // What the line discipline of a terminal passes of one line at most.
  constexpr std::size_t kTerminalLine = 4095;
  if (!read_line(in, *answers, buf, static_cast<std::size_t>(n))) return nullptr;
  if (in.terminal && !in.edited && std::strlen(buf) == kTerminalLine)
    report(Event::terminal_line_full, {.needed = kTerminalLine});
  return buf;
}

int cgets(char* dst, const char* src) {
  if (src == nullptr) {
    if (!outside.batch) put(*answers, "? ");
    return getsn(dst, line_room(), *outside.lines) != nullptr ? 0 : -1;
  }
  int n = 0;
  while (!is_control(src[n])) ++n;
  const int kept = std::min(n, line_room());
  std::memcpy(dst, src, static_cast<std::size_t>(kept));
  if (kept < line_room()) dst[kept] = '\0';
  return n + 1;
}

int eclean(char* line) {
  int kept = 0;
  int depth = 0;
  bool split = false;
  const int room = line_room();
  for (int i = 0; i < room; ++i) {
    const char c = line[i];
    switch (classify(c)) {
      case Keep::as_is:
        depth += (c == '(') - (c == ')');
        line[kept++] = c;
        if (is_digit(c)) {  // long lines are long numbers
          for (; i + 8 < room && eight_digits(line + i + 1); i += 8, kept += 8)
            std::memmove(line + kept, line + i + 1, 8);
        }
        break;
      case Keep::capital:
        line[kept++] = static_cast<char>(c - 'a' + 'A');
        break;
      case Keep::rest:
        for (; i < room && line[i] != '\0'; ++i) line[kept++] = line[i];
        --i;
        break;
      case Keep::drop:
        if (!split && splits_number(line, i, kept, room)) {
          report(Event::blank_between_digits, {.place = typed_place(i)});
          split = true;
        }
        break;
      case Keep::end:
        if (depth != 0) {
          report(Event::brackets, {.name = depth > 0 ? "a ')' is missing" : "a '(' is missing"});
          return reject(line, 2);
        }
        line[kept] = '\0';
        return kept + 1;
      case Keep::reject:
        report_character({line + i, std::min<std::size_t>(4, static_cast<std::size_t>(room - i))},
                         i);
        return reject(line, kept + 1);
    }
  }
  report(Event::line_too_long, {.needed = room, .held = room - 1});
  return reject(line, 0);
}

Flow next_line(Run& run) {
  if (run.block_index != -1) return next_entry(run);
  if (run.script_position != nullptr && script_is_used_up(run)) {
    run.script_position = nullptr;
    if (run.nested) return Flow::used_up;
  }
  return fetch_line(run);
}

Flow capture_block(Run& run) {
  if (run.line[1] != '\0') report(Event::brace_text, {.place = run.line + 1});
  run.block_entries = 0;
  run.capturing = true;
  Capture capture{run, run.block_area};
  while (run.script_position == nullptr || !script_is_used_up(run)) {
    const Flow flow = fetch_line(run);
    if (flow != Flow::next) return flow;
    if (capture.add_line(run.line)) break;
  }
  run.capturing = false;
  return Flow::next;
}

void start_block(Run& run) {
  const char* count = run.line + 1;
  if (run.block_entries == 0) report(Event::repeat_without_block);
  run.repeat_count = 0;
  if (count[0] == '.' && is_capital(count[1])) {
    if (ntoi(M[count[1] - 'A'].c, &run.repeat_count) < 0)
      report(Event::repeat_count_too_large, {.place = count + 1, .name = {count + 1, 1}});
  } else {
    run.repeat_count = read_repeat_count(count);
  }
  run.passes = run.repeat_count;
  if (run.block_index == -1) begin_repeat();
  run.block_index = 0;
}

}  // namespace tivelo
