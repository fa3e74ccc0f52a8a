// Lines from the command line and from files: a source that stands where the console's typed lines
// do otherwise. It hands them out one at a time, so that a message can name the line it comes from.
#pragma once

#include "base/stream.h"
#include "console/options.h"

namespace tivelo {

class Batch {
 public:
  // The lines of "-e" and "-f" in their order, or of `input` where there are none; "-f -" is
  // `input`, too. It is the caller's, like the words, and outlives this.
  Batch(Words words, In* input) : words_(words), input_(input) {
    lines_.fill = fill;
    lines_.context = this;
  }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  // The lines, each with a line end.
  In* lines() { return &lines_; }

  // The digit of the header that the first source begins with, when that is a file; or -1. Called
  // before any line is read.
  int header();

 private:
  static long fill(void* batch, char* data, std::size_t size);
  bool open_next();
  void begin_file(const char* name);
  void skip_header();
  long from_word(char* data, std::size_t size);
  long from_file(char* data, std::size_t size);

  Words words_;
  In* input_;
  In lines_;
  bool any_ = false;            // a source has been met
  int line_words_ = 0;          // "-e" so far
  const char* text_ = nullptr;  // what is left of the line of "-e" that is being read
  In* file_ = nullptr;          // the file that is being read, or the input
  In own_;
  int descriptor_ = -1;
  const char* name_ = nullptr;  // of that file
  long long line_ = 0;          // of the file, that was handed out last
  bool at_start_ = true;        // of a line
  int header_ = -1;
};

}  // namespace tivelo
