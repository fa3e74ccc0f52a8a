// Transcripts: a session with the calculator written down as a person sees it in a terminal. This
// file owns the format (told to authors in tests/sessions/README.md), its reader and its writer;
// it knows nothing of how a session is run.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tivelo::tests {

// What the program printed up to a line typed by the person, and that line with its Enter (empty
// in the last exchange of a run).
struct Exchange {
  std::string printed;
  std::string typed;
};

// One "$ " line and what belongs to it.
struct Step {
  enum class Kind { kMake, kFile, kMissing, kStatus, kRun };
  Kind kind = Kind::kRun;
  std::string command;              // the line itself, without its end
  std::vector<std::string> args;    // kRun: the arguments; for a file: its name
  std::string text;                 // of a file: the content; kStatus: the number
  std::vector<Exchange> exchanges;  // kRun
};

struct Session {
  std::string name;    // the file's name without its ending
  std::string header;  // the lines before the first step
  std::vector<Step> steps;
};

// Reads a transcript; of a .md file the blocks fenced as "session", one after another.
Session read_session(const std::filesystem::path& file);

// The text of a session. read_session of it gives the same steps.
std::string write_session(const Session& session);

// All that a run printed, and all that was typed in it.
std::string printed(const Step& run);
std::string typed(const Step& run);

}  // namespace tivelo::tests
