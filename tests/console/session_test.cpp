// Replays every transcript of tests/sessions and the tour of the README through the program, and
// compares what is printed, byte for byte, the exit status and the files left. The format is told
// to authors in tests/sessions/README.md.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

#include "support/folder.h"
#include "support/program.h"

namespace tivelo::tests {
namespace {

namespace fs = std::filesystem;

// One "$ " line and what belongs to it: all that a run printed and all that was typed in it. Of a
// file both together are the content.
struct Step {
  std::string command, printed, typed;
};

// Reads the escape after the backslash at text[at], appends what it stands for and returns the
// position behind it.
std::size_t unescape(const std::string& text, std::size_t at, std::string& to) {
  const char c = text[at + 1];
  if (c == 'x') {
    to += static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16));
    return at + 4;
  }
  if (c == '{') {  // \{TEXT*COUNT}
    const std::size_t star = text.find('*', at), end = text.find('}', star);
    for (int i = std::stoi(text.substr(star + 1)); i > 0; --i)
      to.append(text, at + 2, star - at - 2);
    return end + 1;
  }
  to += c == 't' ? '\t' : c == 'r' ? '\r' : c;
  return at + 2;
}

// Splits what follows a command, at first all in `printed`, at what was typed: that begins after
// "? " or \> and ends with the line.
void part(Step& step) {
  const std::string body = std::exchange(step.printed, "");
  bool typing = false;
  std::size_t line = 0;  // where the last typed line begins
  for (std::size_t i = 0; i < body.size();) {
    std::string& to = typing ? step.typed : step.printed;
    if (body.compare(i, 2, "\\\n") == 0) {
      typing = false;
      i += 2;
    } else if (!typing && (body.compare(i, 2, "? ") == 0 || body.compare(i, 2, "\\>") == 0)) {
      if (body[i] == '?') to += "? ";
      typing = true;
      line = step.typed.size();
      i += 2;
    } else if (body[i] == '\\') {
      i = unescape(body, i, to);
    } else {
      to += body[i];
      if (body[i++] == '\n') typing = false;
    }
  }
  // The prompt at the very end got no answer: the line end after it is the program's own.
  if (body.ends_with("? \n") && step.typed.substr(line) == "\n") {
    step.typed.pop_back();
    step.printed += "\n";
  }
}

// The steps of a transcript; of a .md file those in the blocks fenced as "session".
std::vector<Step> read_session(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  bool inside = file.extension() == ".session";
  std::vector<Step> steps(1);  // the first one takes what stands before the first command
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("```")) {
      inside = line == "```session";
    } else if (inside && line.starts_with("$ ")) {
      steps.push_back({line.substr(2), "", ""});
    } else if (inside) {
      steps.back().printed += line + "\n";
    }
  }
  steps.erase(steps.begin());
  std::ranges::for_each(steps, part);
  return steps;
}

void replay(const Step& step) {
  SCOPED_TRACE("$ " + step.command);
  std::istringstream words(step.command);
  std::vector<std::string> args;
  for (std::string word; words >> word;) args.push_back(word);
  const bool file = args[0] == "cat";
  args.erase(args.begin());
  if (!file) {
    EXPECT_EQ(output({step.typed, args}), step.printed);
  } else if (args[0] == ">") {
    write(args.at(1), step.printed + step.typed);
  } else {
    EXPECT_EQ(content(args[0]), step.printed + step.typed);
  }
}

class SessionTest : public testing::TestWithParam<fs::path> {};

TEST_P(SessionTest, GoesAsWritten) {
  const std::vector<Step> steps = read_session(GetParam());
  ASSERT_FALSE(steps.empty()) << "no session";
  OwnFolder folder;
  for (const Step& step : steps) replay(step);
}

const fs::path kRoot = TIVELO_ROOT;

std::vector<fs::path> transcripts() {
  std::vector<fs::path> files{kRoot / "README.md"};
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "tests/sessions"))
    if (entry.path().extension() == ".session") files.push_back(entry.path());
  std::ranges::sort(files);
  return files;
}

std::string name_of(const testing::TestParamInfo<fs::path>& test) {
  std::string name = test.param.lexically_relative(kRoot / "tests/sessions").replace_extension();
  std::ranges::replace_if(
      name, [](char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, SessionTest, testing::ValuesIn(transcripts()), name_of);

}  // namespace
}  // namespace tivelo::tests
