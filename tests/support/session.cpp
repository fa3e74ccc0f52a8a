#include "support/session.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace tivelo::tests {
namespace {

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
// "? " or \> and ends with the line. Nothing is typed into a file.
void part(Step& step) {
  const std::string body = std::exchange(step.printed, "");
  const bool file = step.command.starts_with("cat ");
  bool typing = false;
  std::size_t line = 0;  // where the last typed line begins
  for (std::size_t i = 0; i < body.size();) {
    std::string& to = typing ? step.typed : step.printed;
    if (body.compare(i, 2, "\\\n") == 0) {
      typing = false;
      i += 2;
    } else if (!file && !typing &&
               (body.compare(i, 2, "? ") == 0 || body.compare(i, 2, "\\>") == 0)) {
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

}  // namespace

std::vector<Step> read_steps(const fs::path& file, const std::string& fence) {
  std::ifstream in(file, std::ios::binary);
  bool inside = file.extension() == "." + fence;
  std::vector<Step> steps(1);  // the first one takes what stands before the first command
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("```")) {
      inside = line == "```" + fence;
    } else if (inside && line.starts_with("$ ")) {
      steps.push_back({line.substr(2), "", ""});
    } else if (inside) {
      steps.back().printed += line + "\n";
    }
  }
  steps.erase(steps.begin());
  if (fence == "session") std::ranges::for_each(steps, part);
  return steps;
}

std::vector<fs::path> transcripts() {
  std::vector<fs::path> files{kRoot / "README.md", kRoot / "docs/manual.md"};
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "tests/sessions"))
    if (entry.path().extension() == ".session") files.push_back(entry.path());
  for (const auto& entry : fs::directory_iterator(kRoot / "docs/cookbook"))
    files.push_back(entry.path());
  std::ranges::sort(files);
  return files;
}

}  // namespace tivelo::tests
