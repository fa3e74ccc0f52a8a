// Replays every transcript of tests/sessions and the tour of the README, through the program and in
// this process, and compares what is printed, byte for byte, the exit status and the files left. A
// difference is shown as a diff of the two transcripts; with TIVELO_RECORD set the one that came is
// printed.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "console/process.h"
#include "support/session_file.h"

namespace tivelo::tests {
namespace {

namespace fs = std::filesystem;

struct Outcome {
  std::string printed;
  int status = 0;
};

// One way to run the calculator: its arguments, all of its input, the folder it runs in.
using Way = Outcome (*)(const std::vector<std::string>& args, const std::string& typed,
                        const fs::path& folder);

constexpr unsigned kSeconds = 30;  // a run that takes longer hangs; it ends with signal 14

Outcome run_program(const std::vector<std::string>& args, const std::string& typed,
                    const fs::path& folder) {
  std::FILE* in = std::tmpfile();
  std::FILE* out = std::tmpfile();
  std::fwrite(typed.data(), 1, typed.size(), in);
  std::rewind(in);
  const pid_t child = fork();
  if (child == 0) {
    std::vector<char*> argv{const_cast<char*>("tivelo")};
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    dup2(fileno(in), 0);
    dup2(fileno(out), 1);
    dup2(fileno(out), 2);  // a word on standard error is a difference, too
    alarm(kSeconds);
    if (chdir(folder.c_str()) == 0) execv(TIVELO_PROGRAM, argv.data());
    _exit(127);
  }
  int state = 0;
  waitpid(child, &state, 0);
  Outcome outcome;
  outcome.status = WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
  std::rewind(out);
  char block[4096];
  for (std::size_t n; (n = std::fread(block, 1, sizeof block, out)) > 0;) {
    outcome.printed.append(block, n);
  }
  std::fclose(in);
  std::fclose(out);
  return outcome;
}

// Hands the calculator its input line by line, as a terminal does.
long fill_line(void* context, char* data, std::size_t size) {
  auto& left = *static_cast<std::string_view*>(context);
  const std::size_t line = std::min({size, left.find('\n') + 1, left.size()});
  const std::size_t n = line == 0 ? std::min(size, left.size()) : line;
  left.copy(data, n);
  left.remove_prefix(n);
  return static_cast<long>(n);
}

bool drain_text(void* context, const char* data, std::size_t size) {
  static_cast<std::string*>(context)->append(data, size);
  return true;
}

Outcome run_in_process(const std::vector<std::string>& args, const std::string& typed,
                       const fs::path& folder) {
  Outcome outcome;
  std::string_view left = typed;
  const auto in = std::make_unique<In>();
  const auto out = std::make_unique<Out>();
  in->fill = fill_line;
  in->context = &left;
  out->drain = drain_text;
  out->context = &outcome.printed;
  std::vector<const char*> argv;
  for (const std::string& arg : args) argv.push_back(arg.c_str());
  const fs::path before = fs::current_path();
  fs::current_path(folder);
  outcome.status = run_calculator(static_cast<int>(argv.size()), argv.data(),
                                  {in.get(), out.get(), nullptr, out.get()});
  fs::current_path(before);
  return outcome;
}

const std::pair<const char*, Way> kWays[] = {{"program", run_program},
                                             {"in_process", run_in_process}};

// A new empty folder, removed with all that is in it.
struct Folder {
  fs::path path;
  Folder() {
    std::string name = (fs::temp_directory_path() / "tivelo-XXXXXX").string();
    path = mkdtemp(name.data());
  }
  ~Folder() { fs::remove_all(path); }
};

std::string content(const fs::path& file) {
  std::ostringstream out;
  out << std::ifstream(file, std::ios::binary).rdbuf();
  return out.str();
}

void write_file(const fs::path& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

// The session as it went in a new folder. A run that differs is left in one exchange.
Session replay(const Session& wanted, Way way) {
  Folder folder;
  Session came{wanted.name, wanted.header, {}};
  Outcome last;
  for (Step step : wanted.steps) {
    const fs::path file = step.args.empty() ? "" : folder.path / step.args[0];
    if (step.kind == Step::Kind::kRun) {
      last = way(step.args, typed(step), folder.path);
      if (last.printed != printed(step)) step.exchanges = {{last.printed, ""}};
    } else if (step.kind == Step::Kind::kStatus) {
      step.text = std::to_string(last.status) + "\n";
    } else if (step.kind == Step::Kind::kMake) {
      write_file(file, step.text);
    } else {
      step.kind = fs::exists(file) ? Step::Kind::kFile : Step::Kind::kMissing;
      step.text = content(file);
    }
    came.steps.push_back(step);
  }
  return came;
}

// Finds what was printed before each typed line, which the output alone does not tell: a run that
// is given the first k lines only prints as much, and then the line end at the end of its input.
void split_runs(Session& came, const Session& wanted, Way way) {
  for (std::size_t i = 0; i < came.steps.size(); ++i) {
    const std::string all = printed(came.steps[i]);
    if (wanted.steps[i].kind != Step::Kind::kRun || all == printed(wanted.steps[i])) continue;
    Session part = wanted;
    part.steps.resize(i + 1);
    std::vector<Exchange> split;
    std::size_t from = 0;
    std::string input;
    for (const Exchange& next : wanted.steps[i].exchanges) {
      part.steps[i].exchanges = {{"", input}};
      const std::string begun = printed(replay(part, way).steps[i]);
      const bool end = next.typed.empty() || begun == all;
      const std::size_t to = end ? all.size() : std::max(from, begun.size() - !begun.empty());
      split.push_back({all.substr(from, to - from), end ? "" : next.typed});
      if (end) break;
      from = to;
      input += next.typed;
    }
    came.steps[i].exchanges = split;
  }
}

std::string diff(const std::string& wanted, const std::string& came) {
  Folder folder;
  write_file(folder.path / "wanted", wanted);
  write_file(folder.path / "came", came);
  // Blanks at the end of a line show as middle dots.
  const std::string command = "cd '" + folder.path.string() +
                              "' && sed -i -e ':a;s/ \\(\\(\\xc2\\xb7\\)*\\)$/\\xc2\\xb7\\1/;ta' "
                              "wanted came; diff -u wanted came";
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string out;
  for (int c; (c = std::fgetc(pipe)) != EOF;) out += static_cast<char>(c);
  pclose(pipe);
  return out;
}

class SessionTest : public testing::TestWithParam<std::tuple<fs::path, int>> {};

TEST_P(SessionTest, GoesAsWritten) {
  const auto& [file, index] = GetParam();
  Session wanted = read_session(file);
  ASSERT_FALSE(wanted.steps.empty()) << file << " holds no session";
  // Unless a session says otherwise, its last run ends with status 0.
  if (wanted.steps.back().kind != Step::Kind::kStatus) {
    wanted.steps.push_back({Step::Kind::kStatus, "$ echo $?", {"$?"}, "0\n", {}});
  }
  const Way way = kWays[index].second;
  Session came = replay(wanted, way);
  const std::string text = write_session(wanted);
  if (write_session(came) == text && std::getenv("TIVELO_RECORD") == nullptr) return;
  split_runs(came, wanted, way);
  if (std::getenv("TIVELO_RECORD") != nullptr) std::fputs(write_session(came).c_str(), stdout);
  ADD_FAILURE() << file << " went differently:\n" << diff(text, write_session(came));
}

std::vector<fs::path> transcripts() {
  const fs::path root = TIVELO_ROOT;
  std::vector<fs::path> files{root / "README.md"};
  for (const auto& entry : fs::recursive_directory_iterator(root / "tests/sessions")) {
    if (entry.path().extension() == ".session") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string name_of(const testing::TestParamInfo<SessionTest::ParamType>& test) {
  const auto& [file, index] = test.param;
  std::string name = file.lexically_relative(fs::path(TIVELO_ROOT) / "tests/sessions").string();
  if (file.extension() == ".md") name = file.stem().string();
  name = name.substr(0, name.rfind(".session")) + "_" + kWays[index].first;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, SessionTest,
                         testing::Combine(testing::ValuesIn(transcripts()),
                                          testing::Range(0, static_cast<int>(std::size(kWays)))),
                         name_of);

}  // namespace
}  // namespace tivelo::tests
