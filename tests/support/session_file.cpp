#include "support/session_file.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tivelo::tests {
namespace {

// Reads the escape after the backslash at text[at], appends what it stands for and returns the
// position after it. The escapes \> and backslash at a line end concern the caller alone.
std::size_t unescape(const std::string& text, std::size_t at, std::string& to) {
  const char c = text[at + 1];
  if (c == 't' || c == 'r') {
    to += c == 't' ? '\t' : '\r';
  } else if (c == 'x') {
    to += static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16));
    return at + 4;
  } else if (c == '{') {  // \{TEXT*COUNT}
    const std::size_t star = text.find('*', at), end = text.find('}', star);
    if (end == std::string::npos) throw std::invalid_argument("\\{ without its * or }");
    for (int i = std::atoi(text.c_str() + star + 1); i > 0; --i) {
      to.append(text, at + 2, star - at - 2);
    }
    return end + 1;
  } else {
    to += c;
  }
  return at + 2;
}

// Splits the text after a run's command at what was typed: it begins after "? " or \> and ends
// with the line.
std::vector<Exchange> read_exchanges(const std::string& text) {
  std::vector<Exchange> all(1);
  bool typing = false;
  for (std::size_t i = 0; i < text.size();) {
    std::string& to = typing ? all.back().typed : all.back().printed;
    const bool joined = text.compare(i, 2, "\\\n") == 0;
    if (!typing && (text.compare(i, 2, "? ") == 0 || text.compare(i, 2, "\\>") == 0)) {
      if (text[i] == '?') to += "? ";
      typing = true;
      i += 2;
    } else if (text[i] == '\\' && !joined) {
      i = unescape(text, i, to);
    } else {
      if (!joined) to += text[i];
      if (text[i + joined] == '\n' && typing) {
        all.emplace_back();
        typing = false;
      }
      i += 1 + joined;
    }
  }
  // The prompt at the very end got no answer: the line end after it is the program's own.
  if (all.size() > 1 && all.back().printed.empty() && all[all.size() - 2].typed == "\n") {
    all.pop_back();
    all.back().printed += "\n";
    all.back().typed.clear();
  }
  return all;
}

void fill_step(Step& step, const std::string& body) {
  std::istringstream words(step.command.substr(2));
  std::string program, word;
  words >> program;
  while (words >> word) {
    std::string plain;
    for (std::size_t i = 0; i < word.size();) {
      if (word[i] == '\\') {
        i = unescape(word, i, plain);
      } else {
        plain += word[i++];
      }
    }
    step.args.push_back(plain);
  }
  if (program == "echo") {
    step.kind = Step::Kind::kStatus;
    step.text = body;
  } else if (program != "cat") {
    step.exchanges = read_exchanges(body);
  } else if (step.args[0] != ">" &&
             body == "cat: " + step.args[0] + ": No such file or directory\n") {
    step.kind = Step::Kind::kMissing;
  } else {
    const bool make = step.args[0] == ">";
    step.kind = make ? Step::Kind::kMake : Step::Kind::kFile;
    if (make) step.args.erase(step.args.begin());
    for (const Exchange& part : read_exchanges(body)) step.text += part.printed + part.typed;
  }
}

// `prompts`: a question mark and a blank would be read as a prompt here.
std::string escape(const std::string& text, bool prompts) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    char code[8];
    std::snprintf(code, sizeof code, "\\x%02x", c);
    const bool line = i == 0 || text[i - 1] == '\n';
    if (c == '\\' || (prompts && text.compare(i, 2, "? ") == 0) ||
        (line && text.compare(i, 2, "$ ") == 0)) {
      out += '\\';
    }
    out += (c < ' ' && c != '\n') || c > '~' ? code : std::string(1, text[i]);
  }
  return out;
}

std::string closed(const std::string& text) {
  return text.empty() || text.back() == '\n' ? text : text + "\\\n";
}

std::string write_exchange(const Exchange& part, bool last) {
  std::string mark = last ? "? \n" : "? ";
  const std::size_t at = part.printed.size() - std::min(mark.size(), part.printed.size());
  if (part.printed.substr(at) != mark) mark = last ? "" : "\\>";
  const std::size_t plain = part.printed.size() - (mark == "\\>" ? 0 : mark.size());
  const std::string out = escape(part.printed.substr(0, plain), true) + mark;
  return last ? closed(out) : out + closed(escape(part.typed, false));
}

}  // namespace

Session read_session(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  Session session{file.stem().string(), "", {}};
  const bool fenced = file.extension() == ".md";
  bool inside = !fenced;
  std::string body;
  const auto finish = [&] {
    if (!session.steps.empty()) fill_step(session.steps.back(), body);
    body.clear();
  };
  for (std::string line; std::getline(in, line);) {
    if (fenced && line.starts_with("```")) {
      inside = line == "```session";
    } else if (inside && line.starts_with("$ ")) {
      finish();
      session.steps.emplace_back().command = line;
    } else if (inside) {
      (session.steps.empty() ? session.header : body) += line + "\n";
    }
  }
  finish();
  return session;
}

std::string write_session(const Session& session) {
  std::string out = session.header;
  for (const Step& step : session.steps) {
    out += step.command + "\n";
    if (step.kind == Step::Kind::kMissing) {
      out += "cat: " + step.args[0] + ": No such file or directory\n";
    } else if (step.kind != Step::Kind::kRun) {
      out += closed(escape(step.text, true));
    }
    for (const Exchange& part : step.exchanges) {
      out += write_exchange(part, &part == &step.exchanges.back());
    }
  }
  return out;
}

std::string printed(const Step& run) {
  std::string out;
  for (const Exchange& part : run.exchanges) out += part.printed;
  return out;
}

std::string typed(const Step& run) {
  std::string out;
  for (const Exchange& part : run.exchanges) out += part.typed;
  return out;
}

}  // namespace tivelo::tests
