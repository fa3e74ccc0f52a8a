// The words of the command line, the table of options and their help.
#include "console/options.h"

#include <string_view>

#include "base/characters.h"
#include "base/report.h"

namespace tivelo {

namespace {

struct Option {
  const char* name;
  Word::Kind kind;
};

constexpr Option kOptions[] = {
    {"-e", Word::Kind::line},           {"-f", Word::Kind::file},
    {"-p", Word::Kind::precision},      {"-q", Word::Kind::quiet},
    {"--explain", Word::Kind::explain}, {"--no-history", Word::Kind::no_history},
    {"-h", Word::Kind::help},           {"--help", Word::Kind::help},
    {"-V", Word::Kind::version},        {"--version", Word::Kind::version},
};

constexpr const char* kHelp =
    "Usage: tivelo [OPTION]... [PRECISION | SCRIPT]\n"
    "An exact calculator. Without -e, -f or -q it asks for lines at a console.\n"
    "\n"
    "  -e LINE         runs the line; may be repeated, in order with -f\n"
    "  -f FILE         runs the lines of the file, - for standard input\n"
    "  -q              runs the lines of standard input: no banner, prompt, echo or help\n"
    "  -p DIGIT        the precision: 0 to 9 for 1584 to 55999984 digits; else 5 (559984)\n"
    "  --explain       messages, also where standard error is no terminal\n"
    "  --no-history    the line editor keeps no file\n"
    "  -h, --help      shows this page\n"
    "  -V, --version   shows name and version\n"
    "\n"
    "With -e, -f and -q a line without a target prints its value alone, as an integer or a\n"
    "fraction, after V.n with n places. Exit status: 0; 1 a result that is not to be had;\n"
    "2 a line that is not understood; 3 a file; 4 storage or standard output.\n"
    "\n"
    "At the console an empty line shows a short help, Q. leaves.\n";

constexpr const char* kVersion = "TIVELO Algebra 2022.10.29\n";

bool takes_value(Word::Kind kind) {
  return kind == Word::Kind::line || kind == Word::Kind::file || kind == Word::Kind::precision;
}

int refuse(Out& errors, Event event, const char* typed) {
  report_to(errors, event, {.name = typed});
  return exit_status(event_row(event).kind);
}

}  // namespace

bool Words::next(Word* word) {
  if (next_ == count_) return false;
  const char* typed = arguments_[next_++];
  *word = {Word::Kind::argument, typed, typed};
  const std::string_view name(typed);
  if (!options_ || name.size() < 2 || name[0] != '-') return true;
  if (name == "--") {
    options_ = false;
    return next(word);
  }
  word->kind = Word::Kind::unknown;
  for (const Option& option : kOptions) {
    const bool valued = takes_value(option.kind);
    if (name != option.name && !(valued && name.starts_with(option.name))) continue;
    word->kind = option.kind;
    if (!valued) return true;
    word->text = name.size() > 2 ? typed + 2 : (next_ < count_ ? arguments_[next_++] : nullptr);
    return true;
  }
  return true;
}

int read_options(Words words, Options* options, Out& to, Out& errors) {
  Word word;
  while (words.next(&word)) {
    if (word.text == nullptr) return refuse(errors, Event::option_without_value, word.typed);
    switch (word.kind) {
      case Word::Kind::argument:
        if (options->count < 2) options->arguments[options->count] = word.text;
        ++options->count;
        break;
      case Word::Kind::line:
      case Word::Kind::file:
      case Word::Kind::quiet:
        options->batch = true;
        break;
      case Word::Kind::precision:
        if (!is_digit(word.text[0]) || word.text[1] != '\0')
          return refuse(errors, Event::option_precision, word.text);
        options->precision = word.text[0] - '0';
        break;
      case Word::Kind::explain:
        options->explain = true;
        break;
      case Word::Kind::no_history:
        options->history = false;
        break;
      case Word::Kind::help:
        put(to, kHelp);
        return flush(to) ? 0 : exit_status(EventClass::storage);
      case Word::Kind::version:
        put(to, kVersion);
        return flush(to) ? 0 : exit_status(EventClass::storage);
      case Word::Kind::unknown:
        return refuse(errors, Event::option_unknown, word.typed);
    }
  }
  return -1;
}

}  // namespace tivelo
