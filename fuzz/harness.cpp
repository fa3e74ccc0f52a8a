#include "harness.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "console/process.h"

namespace tivelo::fuzz {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kKept = 1 << 20;
constexpr std::size_t kPiece = 61;  // bytes that one read of the typed text returns at most

In typed;
Out printed;
Out explained;
Out errors;
volatile std::sig_atomic_t was_cut;

void cut(int) {
  was_cut = 1;
  printed.failed = true;
}

bool keep(void* context, const char* data, std::size_t size) {
  auto& text = *static_cast<std::string*>(context);
  text.append(data, std::min(size, kKept - std::min(kKept, text.size())));
  return true;
}

long give(void* context, char* data, std::size_t size) {
  auto& left = *static_cast<std::string_view*>(context);
  const std::size_t n = std::min({left.size(), size, kPiece});
  std::memcpy(data, left.data(), n);
  left.remove_prefix(n);
  return static_cast<long>(n);
}

void restart(Out& out, std::string& text) {
  out.drain = keep;
  out.context = &text;
  out.failed = false;
  out.used = 0;
}

// The folder that runs happen in; the process comes back out of it after each.
class Folder {
 public:
  Folder() : home_(::open(".", O_RDONLY | O_CLOEXEC)) {
    std::string name = (fs::temp_directory_path() / "tivelo-fuzz-XXXXXX").string();
    demand(::mkdtemp(name.data()) != nullptr, "a folder for the runs");
    path_ = name;
  }
  ~Folder() { fs::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  void enter(const Files& files) {
    demand(::chdir(path_.c_str()) == 0, "entering the folder");
    for (const auto& [name, text] : files) std::ofstream(name, std::ios::binary) << text;
  }

  Files leave() {
    Files files;
    for (const auto& entry : fs::directory_iterator(".")) {
      std::ifstream in(entry.path(), std::ios::binary);
      files[entry.path().filename()].assign(std::istreambuf_iterator<char>(in), {});
      fs::remove(entry.path());
    }
    demand(::fchdir(home_) == 0, "leaving the folder");
    return files;
  }

 private:
  int home_;
  fs::path path_;
};

// Again and again, because a flush under way may overwrite what the handler sets.
void limit_time(int milliseconds) {
  const itimerval timer = {{0, 50 * milliseconds}, {0, 1000 * milliseconds}};
  ::setitimer(ITIMER_PROF, &timer, nullptr);
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
  static Folder folder;
  static const bool timed = std::signal(SIGPROF, cut) != SIG_ERR;
  demand(timed, "a timer");
  folder.enter(run.files);
  Outcome outcome;
  std::string error_text;
  std::string_view left = run.typed;
  restart(printed, outcome.printed);
  restart(explained, outcome.explanations);
  restart(errors, error_text);
  typed.fill = give;
  typed.context = &left;
  typed.ended = false;
  typed.next = typed.end = 0;
  std::vector<const char*> arguments;
  for (const std::string& argument : run.arguments) arguments.push_back(argument.c_str());
  was_cut = 0;
  limit_time(200);
  const Console outside{&typed, &printed, &explained, &errors};
  outcome.status = run_calculator(static_cast<int>(arguments.size()), arguments.data(), outside);
  limit_time(0);
  outcome.cut = was_cut != 0;
  outcome.files = folder.leave();
  demand(outcome.cut || (outcome.status == 0 && error_text.empty()), "status 0");
  return outcome;
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

bool asks_for_time(std::string_view text) {
  std::string letters;
  for (const char c : text)
    if (c != ' ') letters.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
  return letters.find("TIME") != std::string::npos;
}

void demand(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}

}  // namespace tivelo::fuzz
