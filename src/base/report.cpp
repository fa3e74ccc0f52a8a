// Composing, grouping and sending messages.
#include "base/report.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <span>

#include "base/characters.h"
#include "base/line_mark.h"
#include "base/precision.h"
#include "base/radix.h"

namespace tivelo {

Out* answers = nullptr;
Out* messages = nullptr;

namespace {

struct Line {
  const char* text = nullptr;
  const char* typed = nullptr;
};
Line line;

// Text put together in place; what does not fit is left out.
class Text {
 public:
  void add(std::string_view piece) {
    const std::size_t n = std::min(piece.size(), sizeof buffer_ - size_);
    std::memcpy(buffer_ + size_, piece.data(), n);
    size_ += n;
  }
  void add(long long value) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%lld", value);
    add(std::string_view(digits));
  }
  // A name as it was typed, but for what a terminal would act upon.
  void add_name(std::string_view name) {
    constexpr std::size_t kLongest = 200;
    for (char c : name.substr(0, kLongest)) {
      if (is_control(c)) c = '?';
      add({&c, 1});
    }
  }
  std::string_view view() const { return {buffer_, size_}; }

 private:
  char buffer_[640] = {};
  std::size_t size_ = 0;
};

// The sentence about the precision that holds so many digits, with a few limbs to spare.
void add_precision(Text& text, long long digits) {
  constexpr long long kSpare = 6;
  if (digits <= 0) return;
  for (int p = 0; p < kPrecisions; ++p) {
    if ((kPrecisionTable[p] - kSpare) * kLimbDigits < digits) continue;
    text.add("Start with precision ");
    text.add(p);
    text.add(".");
    return;
  }
  text.add("No precision holds that.");
}

// Fills a text of the table in.
void expand(Text& text, std::string_view form, const Detail& detail) {
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (form[i] != '{' || i + 2 >= form.size() || form[i + 2] != '}') {
      text.add(form.substr(i, 1));
      continue;
    }
    switch (form[i + 1]) {
      case 'n':
        text.add(detail.needed);
        break;
      case 'h':
        text.add(detail.held);
        break;
      case 's':
        text.add_name(detail.name);
        break;
      case 'p':
        add_precision(text, detail.needed);
        break;
      default:
        text.add(event_row(detail.reason).text);
    }
    i += 2;
  }
}

struct LineOrigin {
  const char* name = nullptr;
  long long number = 0;
  Origin kind = Origin::none;
};
LineOrigin origin;

void add_origin(Text& text) {
  if (origin.kind == Origin::none) return;
  text.add_name(origin.name);
  text.add(origin.kind == Origin::option ? " " : ":");
  text.add(origin.number);
  text.add(": ");
}

// [ origin ] [ "column N: " ] what [ ". " What to do ]
Text compose(const EventRow& row, const Detail& detail, int column) {
  Text text;
  add_origin(text);
  if (column > 0) {
    text.add("column ");
    text.add(column);
    text.add(": ");
  }
  expand(text, row.text, detail);
  Text hint;
  if (row.hint != nullptr) expand(hint, row.hint, detail);
  if (!hint.view().empty()) {
    text.add(". ");
    text.add(hint.view());
  }
  return text;
}

void send(Out& out, std::string_view text) {
  put(out, "tivelo: ");
  put(out, text);
  put(out, "\n");
}

// The line and a caret below the place. In a short line the column is easily found.
void show_place(Out& out, int column) {
  constexpr std::size_t kShort = 12;
  constexpr std::size_t kBefore = 40;
  constexpr std::size_t kShown = 72;
  if (column == 0 || !messages_on_terminal) return;
  const std::string_view all(line.typed != nullptr ? line.typed : line.text);
  if (all.size() <= kShort) return;
  const std::size_t at = static_cast<std::size_t>(column - 1);
  const std::size_t from = at > kBefore ? at - kBefore : 0;
  Text shown;
  Text below;
  for (std::size_t i = from; i < std::min(all.size(), from + kShown); ++i) {
    const char c = is_control(all[i]) ? ' ' : all[i];
    const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;  // within one of UTF-8
    shown.add({&c, 1});
    if (i < at && !continues) below.add(" ");
  }
  put(out, "  ");
  put(out, shown.view());
  put(out, "\n  ");
  put(out, below.view());
  put(out, "^\n");
}

// The messages of one group: those that have been told, and how many were not.
struct Told {
  std::uint64_t key = 0;
  long long times = 0;
  Text text;
};
constexpr std::size_t kTold = 10;
struct Group {
  Told told[kTold];
  std::size_t count = 0;
  long long more = 0;
  int repeats = 0;            // repeats that are running: one group all together
  const char* end = nullptr;  // of a stretch that has been said not to be understood
};
Group group;

// Tells one message from another: by the event, its name and its place in a line of that text.
std::uint64_t key_of(Event event, const Detail& detail, int column) {
  std::uint64_t key = 0xcbf29ce484222325;  // FNV-1a
  const auto mix = [&key](std::string_view bytes) {
    for (const char c : bytes) key = (key ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  };
  constexpr std::size_t kKeyed = 60;  // characters of the line
  const int numbers[] = {static_cast<int>(event), column};
  mix({reinterpret_cast<const char*>(numbers), sizeof numbers});
  mix(detail.name);
  if (line.text != nullptr) mix({line.text, strnlen(line.text, kKeyed)});
  return key;
}

// One misread name makes its letters, and what follows them, look like further mistakes.
bool follows_another(Event event, const Detail& detail) {
  switch (event) {
    case Event::operand_dropped:
    case Event::unknown_name:
    case Event::letters_no_function:
    case Event::digits_missing:
    case Event::count_missing:
    case Event::argument_ends:
      break;
    default:
      return false;
  }
  const std::less_equal<> not_behind;
  const bool follows = group.end != nullptr && not_behind(detail.place, group.end);
  const char* end = detail.place + std::max<std::size_t>(detail.name.size(), 1);
  if (!follows || not_behind(group.end, end)) group.end = end;
  return follows;
}

void tell(Event event, const Detail& detail) {
  const int column = column_of(detail.place);
  if (column > 0 && follows_another(event, detail)) return;
  const std::uint64_t key = key_of(event, detail, column);
  for (std::size_t i = 0; i < group.count; ++i) {
    if (group.told[i].key != key) continue;
    ++group.told[i].times;
    return;
  }
  if (group.count == kTold) {
    ++group.more;
    return;
  }
  Told& told = group.told[group.count++];
  told = {key, 1, compose(event_row(event), detail, column)};
  flush(*answers);
  send(*messages, told.text.view());
  show_place(*messages, column);
  flush(*messages);
}

// Tells what a group left out.
void close_group() {
  if (messages != nullptr && group.count > 0) {
    for (const Told& told : std::span(group.told).first(group.count)) {
      if (told.times == 1) continue;
      Text text;
      text.add(told.times - 1);
      text.add(" times more: ");
      text.add(told.text.view());
      flush(*answers);
      send(*messages, text.view());
    }
    if (group.more > 0) {
      Text text;
      text.add(group.more);
      text.add(" more");
      send(*messages, text.view());
    }
    flush(*messages);
  }
  group.count = 0;
  group.more = 0;
  group.end = nullptr;
}

}  // namespace

void report(Event event, const Detail& detail) {
  const EventRow& row = event_row(event);
  if (row.spoils) spoil(event);
  if (row.kind == EventClass::cut) return;
  if (const int status = exit_status(row.kind); status != 0) {
    if (refusals.count++ == 0) refusals.first_status = status;
  }
  if (messages != nullptr && row.text != nullptr) {
    Detail placed = detail;
    if (placed.place == nullptr) placed.place = place_in_hand;
    tell(event, placed);
  }
  if (!refusals.silent) put(*answers, row.answer);
}

void report_to(Out& out, Event event, const Detail& detail) {
  send(out, compose(event_row(event), detail, 0).view());
  flush(out);
}

void set_line_in_hand(const char* text, const char* typed) {
  line = {text, typed};
  place_in_hand = nullptr;
  group.end = nullptr;
}

void set_origin(const char* name, long long number, Origin kind) { origin = {name, number, kind}; }

const char* line_in_hand() { return line.text; }

int column_of(const char* place) {
  if (line.text == nullptr || place == nullptr) return 0;
  const std::less_equal<> not_behind;
  const char* end = line.text + std::strlen(line.text);
  if (!not_behind(line.text, place) || !not_behind(place, end)) return 0;
  std::ptrdiff_t left = place - line.text;
  if (line.typed == nullptr) return static_cast<int>(left + 1);
  // Cleaning keeps every character, or drops it; behind the first ':' it keeps all.
  const char* typed = line.typed;
  for (bool rest = false; *typed != '\0'; ++typed) {
    const Keep keep = rest ? Keep::rest : classify(*typed);
    if (keep == Keep::drop) continue;
    if (left-- == 0) break;
    rest = keep == Keep::rest;
  }
  return static_cast<int>(typed - line.typed + 1);
}

void begin_messages() {
  if (group.repeats == 0) close_group();
}

void begin_repeat() { ++group.repeats; }

void end_repeat() {
  if (group.repeats > 0) --group.repeats;
}

void end_messages() {
  close_group();
  group.repeats = 0;
  origin = {};
  set_line_in_hand(nullptr, nullptr);
}

}  // namespace tivelo
