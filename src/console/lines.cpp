#include "console/lines.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <string_view>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/status.h"
#include "bigint/pool.h"

namespace tivelo {

In* typed = nullptr;

namespace {

bool is_control(char c) { return (c >= 0 && c < ' ') || c == 127; }

int line_room() { return ISS * kLimbDigits; }

bool script_is_used_up(const Run& run) {
  return run.script_position - run.script > run.script_length - 2;
}

// What becomes of one character of a line.
enum class Keep : unsigned char { reject, as_is, capital, drop, rest, end };

constexpr std::array<Keep, 256> make_classes() {
  std::array<Keep, 256> classes{};
  for (const char c : std::string_view("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ+-*/^!.,%'()|={}#<>"))
    classes[static_cast<unsigned char>(c)] = Keep::as_is;
  for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyz"))
    classes[static_cast<unsigned char>(c)] = Keep::capital;
  classes[' '] = Keep::drop;
  classes[':'] = Keep::rest;
  classes['\0'] = classes[';'] = classes['\n'] = Keep::end;
  return classes;
}

Keep classify(char c) {
  static constexpr std::array<Keep, 256> kClasses = make_classes();
  return kClasses[static_cast<unsigned char>(c)];
}

void reject(char* line) { std::strcpy(line, ";"); }

// Fetches and cleans the next line of the script or the console into the line area.
Flow fetch_line(Run& run) {
  const int taken = cgets(run.line_area, run.script_position);
  if (taken < 0) {
    put(*console, "\n");
    return Flow::quit;
  }
  if (run.script_position != nullptr) run.script_position += taken;
  eclean(run.line_area);
  run.line = run.line_area;
  return Flow::next;
}

// The block's turn: its next entry, or the end of a repetition.
Flow next_entry(Run& run) {
  if (run.block_index == run.block_entries) {
    --run.repeat_count;
    const bool again = run.repeat_count >= 1 && run.block_entries > 0;
    run.block_index = again ? 0 : -1;
    if (!again) run.line = run.line_area;
    return Flow::fall_on;
  }
  run.line = run.block[run.block_index++];
  if (run.script_position == nullptr) {
    put(*console, "? ");
    put(*console, run.line);
    put(*console, "\n");
  }
  return Flow::next;
}

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
    explain("the block is full at %d entries; the rest is left out", run.block_entries);
    err(kNoRoom);
    return;
  }
  run.block[run.block_entries++] = end;
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

// Up to six characters: digits append to the count, numerals add to it, others do nothing.
int read_repeat_count(const char* text) {
  long long count = 0;
  for (int i = 0; i < 6 && text[i] != '\0'; ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    count = digit ? count * 10 + (text[i] - '0') : count + numeral_value(text[i]);
    count = std::min<long long>(count, INT_MAX);
  }
  return static_cast<int>(count);
}

}  // namespace

char* getsn(char* buf, int n) {
  return read_line(*typed, *console, buf, static_cast<std::size_t>(n)) ? buf : nullptr;
}

int cgets(char* dst, const char* src) {
  if (src == nullptr) {
    put(*console, "? ");
    return getsn(dst, line_room()) != nullptr ? 0 : -1;
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
  const int room = line_room();
  for (int i = 0; i < room; ++i) {
    const char c = line[i];
    switch (classify(c)) {
      case Keep::as_is:
        depth += (c == '(') - (c == ')');
        line[kept++] = c;
        break;
      case Keep::capital:
        line[kept++] = static_cast<char>(c - 'a' + 'A');
        break;
      case Keep::rest:
        for (; i < room && line[i] != '\0'; ++i) line[kept++] = line[i];
        --i;
        break;
      case Keep::drop:
        break;
      case Keep::end:
        if (depth != 0) {
          explain("brackets do not balance");
          reject(line);
          return 2;
        }
        line[kept] = '\0';
        return kept + 1;
      case Keep::reject:
        explain(c > ' ' && c < 127 ? "column %d: '%c' is not accepted" : "column %d: not accepted",
                i + 1, c);
        reject(line);
        return kept + 1;
    }
  }
  explain("a line of more than %d characters", room - 1);
  reject(line);
  return 0;
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
  run.block_entries = 0;
  Capture capture{run, run.block_area};
  do {
    if (run.script_position != nullptr && script_is_used_up(run)) return Flow::next;
    if (fetch_line(run) == Flow::quit) return Flow::quit;
  } while (!capture.add_line(run.line));
  return Flow::next;
}

void start_block(Run& run) {
  const char* count = run.line + 1;
  run.repeat_count = 0;
  if (count[0] == '.' && is_capital(count[1])) {
    if (ntoi(Mc[count[1] - 'A'], &run.repeat_count) < 0)
      explain("the numerator of %c is no count; the block runs once", count[1]);
  } else {
    run.repeat_count = std::max(read_repeat_count(count), 1);
  }
  run.block_index = 0;
}

}  // namespace tivelo
