// Transcripts as their format (tests/sessions/README.md) has them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tivelo::tests {

namespace fs = std::filesystem;

inline const fs::path kRoot = TIVELO_ROOT;

// One "$ " line and what belongs to it: all that a run printed and all that was typed in it. Of a
// file both together are the content.
struct Step {
  std::string command, printed, typed;
};

// The steps of a transcript; of a .md file those in the blocks fenced as "session".
std::vector<Step> read_session(const fs::path& file);

// All that are replayed, in order.
std::vector<fs::path> transcripts();

}  // namespace tivelo::tests
