// One source after the other, line by line.
#include "console/batch.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/characters.h"
#include "base/report.h"
#include "console/files.h"
#include "console/run.h"

namespace tivelo {

namespace {

// The first line of what is left to read, without its end, as far as it fits the buffer.
std::string_view first_line(In& in) {
  for (;;) {
    const std::string_view left(in.buffer + in.next, in.end - in.next);
    const std::size_t feed = left.find('\n');
    if (feed != left.npos) return left.substr(0, feed);
    const std::size_t room = sizeof in.buffer - in.end;
    const long got = in.ended || room == 0 ? 0 : in.fill(in.context, in.buffer + in.end, room);
    if (got <= 0) {
      in.ended = in.ended || room > 0;
      return left;
    }
    in.end += static_cast<std::size_t>(got);
  }
}

}  // namespace

int Batch::header() {
  if (!any_) (void)open_next();
  return header_;
}

long Batch::fill(void* batch, char* data, std::size_t size) {
  Batch& self = *static_cast<Batch*>(batch);
  for (;;) {
    const long got = self.text_ != nullptr   ? self.from_word(data, size)
                     : self.file_ != nullptr ? self.from_file(data, size)
                                             : 0;
    if (got > 0) return got;
    if (!self.open_next()) return 0;
  }
}

// Opens the next source; false behind the last one.
bool Batch::open_next() {
  Word word;
  while (words_.next(&word)) {
    if (word.kind == Word::Kind::line) {
      any_ = true;
      text_ = word.text;
      set_origin("-e", ++line_words_, Origin::option);
      return true;
    }
    if (word.kind != Word::Kind::file) continue;
    const bool first = !any_;
    any_ = true;
    begin_file(word.text);
    if (file_ == nullptr) continue;
    skip_header();
    if (!first) header_ = -1;
    return true;
  }
  if (any_) return false;
  any_ = true;
  file_ = input_;
  name_ = "-";
  return true;
}

void Batch::begin_file(const char* name) {
  name_ = name;
  line_ = 0;
  at_start_ = true;
  if (std::strcmp(name, "-") == 0) {
    file_ = input_;
    return;
  }
  descriptor_ = open_to_read(name);
  if (descriptor_ < 0) {
    set_origin("-f", 0, Origin::none);
    return report(Event::lines_not_found, {.name = name});
  }
  own_.fill = fill_descriptor;
  own_.context = &descriptor_;
  own_.ended = false;
  own_.next = own_.end = 0;
  file_ = &own_;
}

void Batch::skip_header() {
  const auto skip = [this](std::size_t size) {
    file_->next = std::min(file_->end, file_->next + size + 1);
    ++line_;
  };
  if (const auto line = first_line(*file_); line.starts_with("#!")) skip(line.size());
  const auto line = first_line(*file_);
  if (!line.starts_with("A.") && !line.starts_with("A:")) return;
  if (line.size() > 2 && is_digit(line[2])) header_ = line[2] - '0';
  skip(line.size());
}

long Batch::from_word(char* data, std::size_t size) {
  const std::size_t left = std::strlen(text_);
  const std::size_t taken = std::min(left, size);
  std::memcpy(data, text_, taken);
  text_ += taken;
  outside.clock = true;
  if (taken < size) {
    data[taken] = '\n';
    text_ = nullptr;
    return static_cast<long>(taken) + 1;
  }
  return static_cast<long>(taken);
}

long Batch::from_file(char* data, std::size_t size) {
  In& in = *file_;
  if (in.next == in.end) {
    const long got = in.ended ? 0 : in.fill(in.context, in.buffer, sizeof in.buffer);
    in.ended = got <= 0;
    in.next = 0;
    in.end = in.ended ? 0 : static_cast<std::size_t>(got);
    if (in.ended) {
      // The last line may have no end of its own.
      const bool open = !at_start_;
      at_start_ = true;
      data[0] = '\n';
      if (open) return 1;
      close_descriptor(descriptor_);
      file_ = nullptr;
      return 0;
    }
  }
  if (at_start_) set_origin(name_, ++line_, Origin::file);
  const char* from = in.buffer + in.next;
  const std::size_t left = std::min(in.end - in.next, size);
  const char* feed = static_cast<const char*>(std::memchr(from, '\n', left));
  const std::size_t taken = feed != nullptr ? static_cast<std::size_t>(feed - from) + 1 : left;
  std::memcpy(data, from, taken);
  in.next += taken;
  at_start_ = feed != nullptr;
  outside.clock = in.next == in.end || in.buffer[in.next] == '#' || in.buffer[in.next] == ' ';
  return static_cast<long>(taken);
}

}  // namespace tivelo
