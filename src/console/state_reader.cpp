// The file is read whole. Its lines are gone through twice: to see that each can be stored, then to
// store them, which nothing can refuse or break off.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/event_names.h"
#include "base/exactness.h"
#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/sha256.h"
#include "bigint/text.h"
#include "console/files.h"
#include "console/state_file.h"
#include "console/state_format.h"
#include "console/storage.h"
#include "fraction/cells.h"

namespace tivelo {

namespace {

using namespace state;

constexpr std::size_t kClosing = kDigest.size() + Sha256::kHexDigits + 1;

// What is left of a line, word by word.
struct Words {
  std::string_view left;

  std::string_view next() {
    const std::string_view word = left.substr(0, left.find(' '));
    left.remove_prefix(std::min(left.size(), word.size() + 1));
    return word;
  }
  // A number from least to most, and nothing else.
  bool next(std::int32_t* value, std::int32_t least, std::int32_t most) {
    const std::string_view word = next();
    *value = 0;
    const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), *value);
    return fault == std::errc() && end == word.data() + word.size() && *value >= least &&
           *value <= most;
  }
};

bool are_digits(std::string_view text) {
  unsigned other = 0;
  for (const char c : text) other |= static_cast<unsigned char>(c - '0') > 9;
  return other == 0;
}

std::size_t groups(std::string_view digits) { return (digits.size() + 7) / kLimbDigits; }

class Reader {
 public:
  explicit Reader(std::string_view lines) : lines_(lines) {}

  // Can all lines be understood? Only then the others may be called.
  bool understand() { return go_through(); }
  std::size_t limbs_needed() const { return needed_; }
  void store() {
    stores_ = true;
    (void)go_through();
  }
  int display() const { return display_; }

 private:
  bool go_through();
  bool take_settings();
  bool take_line(std::string_view line);
  bool take(Kind kind, Words words);
  bool take_record(Words words);
  bool take_mark(Kind kind, Words words);
  bool take_cells(Words words);
  bool take_cell(Words words);
  bool take_rest(std::string_view digits);
  std::string_view next_line();

  // The record that the line in hand stores.
  num* record() const {
    if (owner_ == kVariables) return kind_ == numerator ? Cn.c : Cn.m;
    return kind_ == numerator ? M[owner_].c : changing(owner_).m;
  }

  std::string_view lines_;
  std::string_view left_;
  bool stores_ = false;
  int display_ = 0;
  int owner_ = -1;
  int kind_ = -1;
  int cells_ = 0;  // how many the owner may have
  int last_cell_ = -1;
  std::size_t length_ = 0;  // limbs of the owner's numerator
  std::size_t needed_ = 0;
};

std::string_view Reader::next_line() {
  const std::size_t size = std::min(left_.find('\n'), left_.size());
  const std::string_view line = left_.substr(0, size);
  left_.remove_prefix(std::min(left_.size(), size + 1));
  return line;
}

bool Reader::take_settings() {
  std::int32_t digit = 0;
  Words precision{next_line()};
  if (precision.next() != "precision" || !precision.next(&digit, 0, kPrecisions - 1)) return false;
  Words display{next_line()};
  if (display.next() != "display" || !display.next(&display_, -1, 0x7fffffff)) return false;
  Words reduction{next_line()};
  if (reduction.next() != "reduction" || (reduction.left != "on" && reduction.left != "off"))
    return false;
  if (stores_) ROF[0] = reduction.left == "off" ? 1 : 0;
  return precision.left.empty() && display.left.empty();
}

bool Reader::go_through() {
  if (!lines_.starts_with(kFirstLine) || !lines_.ends_with('\n')) return false;
  left_ = lines_.substr(kFirstLine.size());
  owner_ = kind_ = -1;
  if (!take_settings()) return false;
  while (!left_.empty()) {
    if (!stores_) poll();
    if (!take_line(next_line())) return false;
  }
  return true;
}

// owner kind content. Owners and kinds come in their order, and but for cells once.
bool Reader::take_line(std::string_view line) {
  Words words{line};
  const std::string_view name = words.next();
  int owner = kVariables;
  if (name != kResult) {
    if (name.size() != 1 || name[0] < 'A' || name[0] > 'Z') return false;
    owner = name[0] - 'A';
  }
  const std::string_view word = words.next();
  const auto kind = static_cast<int>(std::ranges::find(kKinds, word) - std::begin(kKinds));
  if (kind == kinds || owner < owner_ || (owner == kVariables && kind > inexact)) return false;
  if (owner > owner_) {
    owner_ = owner;
    kind_ = last_cell_ = -1;
    cells_ = 0;
    length_ = 0;
  }
  if (kind < kind_ || (kind == kind_ && kind != cell)) return false;
  kind_ = kind;
  return take(static_cast<Kind>(kind), words);
}

bool Reader::take(Kind kind, Words words) {
  const bool mark = kind == inexact || kind == cells_inexact;  // a line may end in a blank
  if (!mark && words.left.ends_with(' ')) return false;
  switch (kind) {
    case numerator:
    case denominator:
      return take_record(words);
    case cells:
      return take_cells(words);
    case cell:
      return take_cell(words);
    case rest:
      return take_rest(words.left);
    default:
      return take_mark(kind, words);
  }
}

bool Reader::take_record(Words words) {
  const std::string_view number = words.next();
  if (number.empty() || (number[0] != '+' && number[0] != '-')) return false;
  const std::string_view digits = number.substr(1);
  std::size_t length = groups(digits);
  std::int32_t values[std::size(kFields)];
  for (std::size_t i = 0; i < std::size(kFields); ++i) {
    const Field& field = kFields[i];
    values[i] = field.fresh;
    const bool given = words.left.starts_with(field.name);
    if (given && (words.next() != field.name || !words.next(&values[i], 0, field.most)))
      return false;
  }
  if (values[0] == 1) return false;  // a point before the last group alone
  const bool one_group = words.left == kOneGroup;
  if (one_group) length = 1;
  if (!are_digits(digits) || (one_group ? digits != "100000000" : !words.left.empty()))
    return false;
  // A denominator is a positive integer: all arithmetic relies on it.
  const bool positive = number[0] == '+' && digits.find_first_not_of('0') != digits.npos;
  if (kind_ == denominator && !(positive && values[0] == 0)) return false;
  needed_ = std::max(needed_, length);
  if (kind_ == numerator) length_ = length;
  if (!stores_) return true;
  num* a = record();
  a->len = static_cast<int>(length);
  if (one_group) {
    units(a) = kBase;
  } else {
    read_digits(in_use(a), digits);
  }
  a->sign = number[0] == '-' ? -1 : 1;
  for (std::size_t i = 0; i < std::size(kFields); ++i) a->*kFields[i].field = values[i];
  return true;
}

bool Reader::take_mark(Kind kind, Words words) {
  Mark mark;
  mark.event = event_named(words.next());
  if (mark.exact() || !words.next(&mark.times, 1, 0x7fffffff)) return false;
  if (words.left.size() > Mark::kLine || words.left.find('\0') != words.left.npos) return false;
  words.left.copy(mark.line, Mark::kLine);
  if (!stores_) return true;
  if (owner_ == kVariables) {
    put_mark_of_result(mark);
  } else if (kind == inexact) {
    put_mark(owner_, mark);
  } else {
    put_mark_of_cells(owner_, mark);
  }
  return true;
}

// Those that this precision does not have are 0, or the line of the cell is refused.
bool Reader::take_cells(Words words) {
  if (!words.next(&cells_, 1, kPrecisionTable[kPrecisions - 1] / NN)) return false;
  if (stores_) cells_written[owner_] = std::min(cells_, IS / NN);
  return words.left.empty();
}

bool Reader::take_cell(Words words) {
  std::int32_t k = 0;
  std::int32_t values[NN];
  if (!words.next(&k, last_cell_ + 1, cells_ - 1)) return false;
  // A word is a limb or minus one, but for a low word that came from a table.
  constexpr auto kMost = static_cast<std::int32_t>(kBase);
  for (std::int32_t& value : values)
    if (!words.next(&value, -kMost, &value == &values[NN - 1] ? INT32_MAX : kMost)) return false;
  if (!words.left.empty()) return false;
  last_cell_ = k;
  std::size_t end = 0;
  for (std::size_t i = 0; i < NN; ++i)
    if (values[i] != 0) end = static_cast<std::size_t>(k) * NN + i + 1;
  if (end == 0) return false;
  needed_ = std::max({needed_, end + length_, static_cast<std::size_t>(k + 1) * NN});
  if (!stores_) return true;
  Limb* at = M[owner_].c->limbs;
  for (std::size_t i = static_cast<std::size_t>(k) * NN; i < end; ++i)
    at[i] = static_cast<Limb>(values[i % NN]);
  return true;
}

// What has no place at this precision is left out: no value, and no cell that was stored.
bool Reader::take_rest(std::string_view digits) {
  if (digits.empty() || digits.size() % kLimbDigits != 0 || !are_digits(digits)) return false;
  if (!stores_) return true;
  num* c = M[owner_].c;
  const auto used = static_cast<std::size_t>(cells_written[owner_] * NN) + length_;
  const auto places = static_cast<std::size_t>(c->end);
  const std::size_t count = std::min(groups(digits), places - std::min(places, used));
  read_digits(Limbs(c->limbs + (places - length_ - count), count),
              digits.substr(digits.size() - count * kLimbDigits));
  limbs_written[owner_] = static_cast<int>(length_ + count);
  return true;
}

// As at the start, all words of cells included.
void clear_state() {
  mclear(&Cn);
  for (int v = 0; v < kVariables; ++v) {
    rclear(M[v].c);
    M[v].m = &shared_one;
    const num* c = M[v].c;
    std::fill_n(c->limbs, std::min(cells_written[v] * NN, c->end), Limb{0});
    std::fill_n(c->limbs + (c->end - limbs_written[v]), limbs_written[v], Limb{0});
    cells_written[v] = 0;
    limbs_written[v] = 1;
  }
  clear_marks();
}

// The content of a file, for as long as it is looked at.
class Content {
 public:
  explicit Content(const char* name) : descriptor_(open_to_read(name)) {}
  ~Content() {
    close_descriptor(descriptor_);
    release(region_);
  }
  Content(const Content&) = delete;
  Content& operator=(const Content&) = delete;

  bool opened() const { return descriptor_ >= 0; }
  // All of it, or nothing where that cannot be read.
  std::string_view read();

 private:
  int descriptor_;
  Region region_;
};

std::string_view Content::read() {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0 || status.st_size <= 0) return {};
  const auto size = static_cast<std::size_t>(status.st_size);
  region_ = reserve(size);
  char* data = reinterpret_cast<char*>(region_.data);
  if (data == nullptr) return {};
  constexpr std::size_t kPiece = 1 << 20;
  std::size_t kept = 0;
  while (kept < size) {
    poll();
    const long got = fill_descriptor(&descriptor_, data + kept, std::min(kPiece, size - kept));
    if (got <= 0) return {};
    kept += static_cast<std::size_t>(got);
  }
  return {data, size};
}

// Is the last line the digest of all others?
bool is_whole(std::string_view text) {
  if (text.size() < kFirstLine.size() + kClosing) return false;
  const std::string_view closing = text.substr(text.size() - kClosing);
  text.remove_suffix(kClosing);
  constexpr std::size_t kPiece = 1 << 20;
  Sha256 digest;
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), kPiece))) {
    poll();
    digest.update(text.substr(0, kPiece));
  }
  char hex[Sha256::kHexDigits];
  digest.finish(hex);
  return closing.starts_with(kDigest) && closing.ends_with('\n') &&
         closing.substr(kDigest.size(), sizeof hex) == std::string_view(hex, sizeof hex);
}

}  // namespace

bool load_state(const char* name, int* display_digits) {
  Content content(name);
  if (!content.opened()) {
    report(Event::state_not_found, {.name = name});
    return false;
  }
  const std::string_view text = content.read();
  if (!is_whole(text)) {
    report(Event::state_damaged, {.name = name});
    return false;
  }
  Reader reader(text.substr(0, text.size() - kClosing));
  const bool understood = reader.understand();
  const auto fits = std::ranges::find_if(kPrecisionTable, [&reader](int limbs) {
    return static_cast<std::size_t>(limbs) >= reader.limbs_needed();
  });
  if (!understood || fits == std::end(kPrecisionTable)) {
    report(Event::state_damaged, {.name = name});
    return false;
  }
  if (reader.limbs_needed() > static_cast<std::size_t>(IS)) {
    report(Event::state_misfit, {.needed = fits - std::begin(kPrecisionTable), .name = name});
    return false;
  }
  clear_state();
  reader.store();
  for (int v = 0; v < kVariables; ++v) note_length(v);
  *display_digits = reader.display();
  return true;
}

}  // namespace tivelo
