// The options of the command line. An argument of two or more characters that begins with '-' is
// one, up to "--"; what remains keeps the meaning it always had.
#pragma once

#include "base/stream.h"

namespace tivelo {

// One word of the command line.
struct Word {
  enum class Kind {
    argument,
    line,        // -e: `text` is the line
    file,        // -f: the name of the file
    precision,   // -p: the digit
    quiet,       // -q
    explain,     // --explain
    no_history,  // --no-history
    help,        // -h, --help
    version,     // -V, --version
    unknown
  };
  Kind kind = Kind::argument;
  const char* text = nullptr;  // the argument, or the option's value; null where that is missing
  const char* typed = nullptr;
};

// The words of a command line (without the program's name), from the first on. A value follows its
// letter at once, or is the next argument.
class Words {
 public:
  Words(int count, const char* const* arguments) : count_(count), arguments_(arguments) {}

  // The next word; false at the end.
  bool next(Word* word);

 private:
  int count_;
  const char* const* arguments_;
  int next_ = 0;
  bool options_ = true;  // "--" has not been met
};

struct Options {
  int precision = -1;  // -1: not given
  bool batch = false;  // lines are run without a console: no banner, prompt, echo or help
  bool explain = false;
  bool history = true;
  int count = 0;                                  // the arguments that are no options ...
  const char* arguments[2] = {nullptr, nullptr};  // ... of which two at most are looked at
};

// Reads the options. Returns -1 when the calculator is to run, or the status to end with: 0 after
// the help or the version has been printed, 2 after an option that is none has been told.
int read_options(Words words, Options* options, Out& to, Out& errors);

}  // namespace tivelo
