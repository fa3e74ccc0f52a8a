#include "harness.h"

#include <sys/time.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "support/calculator.h"
#include "support/folder.h"

namespace tivelo::fuzz {
namespace {

constexpr std::size_t kPiece = 61;  // bytes that one read of the typed text returns at most

tests::Feed* running;
volatile std::sig_atomic_t was_cut;

void cut(int) {
  was_cut = 1;
  running->printed.failed = true;
}

// Again and again, because a flush under way may overwrite what the handler sets.
void limit_time(int milliseconds) {
  const itimerval timer = {{0, 50 * milliseconds}, {0, 1000 * milliseconds}};
  ::setitimer(ITIMER_PROF, &timer, nullptr);
}

bool asks_for_time(std::string text) {
  std::erase(text, ' ');
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text.find("TIME") != std::string::npos;
}

bool is_control(char c) { return (c >= 0 && c < ' ') || c == 127; }

// Tames the repeat whose 'R' is text[at].
void tame_repeat(std::string& text, std::size_t at, bool in_block) {
  std::size_t i = at + 1;
  while (i < text.size() && text[i] == ' ') ++i;
  if (i < text.size() && text[i] == '=') return;
  if (in_block) text[at] = 'S';
  if (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
  for (; !in_block && i < text.size() && !is_control(text[i]); ++i) text[i] = ' ';
}

}  // namespace

Outcome run(const Run& run) {
  static const bool timed = std::signal(SIGPROF, cut) != SIG_ERR;
  demand(timed, "a timer");
  const tests::OwnFolder folder;
  for (const auto& [name, text] : run.files) tests::write(name, text);
  tests::Feed feed;
  std::string_view left = run.typed;
  feed.next = [&left](std::string& text) {
    text = left.substr(0, kPiece);
    left.remove_prefix(text.size());
    return !text.empty();
  };
  was_cut = 0;
  running = &feed;
  limit_time(200);
  const int status = feed.run(run.arguments);
  limit_time(0);
  Outcome outcome{was_cut != 0, feed.printed.text, feed.explained.text, {}};
  for (const auto& entry : std::filesystem::directory_iterator("."))
    outcome.files[entry.path().filename()] = tests::content(entry.path());
  demand(outcome.cut || (status == 0 && feed.errors.text.empty()), "status 0");
  return outcome;
}

void run_twice(const Run& wanted) {
  const Outcome first = run(wanted);
  if (first.cut) return;
  const Outcome second = run(wanted);
  std::string all = wanted.typed;
  for (const auto& [name, text] : wanted.files) all += text;
  if (second.cut || asks_for_time(all)) return;
  demand(first.printed == second.printed, "two runs print the same");
  demand(first.explained == second.explained, "two runs explain the same");
  demand(first.files == second.files, "two runs leave the same files");
}

std::string tame(std::string_view bytes) {
  std::string text(bytes);
  bool at_start = true;  // of a line, or of a piece of one behind a comma
  bool named = false;
  bool in_block = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == ' ') continue;
    if (c == '\n') named = false;
    if (c == ':') named = true;
    if (c == '/' && named) text[i] = '_';
    if (at_start && (c == 'R' || c == 'r')) tame_repeat(text, i, in_block);
    if (at_start && c == '{') in_block = true;
    // Any other line may be refused, or not end where it seems to: the block could go on.
    if (c == '}' && text.substr(i - std::min<std::size_t>(i, 1), 3) == "\n}\n") in_block = false;
    at_start = is_control(c) || c == ',';
  }
  return text;
}

std::vector<std::string> split(const std::uint8_t* data, std::size_t size, std::size_t count) {
  std::vector<std::string> parts(count);
  std::size_t part = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] != 0xff) {
      parts[part].push_back(static_cast<char>(data[i]));
    } else if (++part == count) {
      break;
    }
  }
  return parts;
}

void demand(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}

}  // namespace tivelo::fuzz
