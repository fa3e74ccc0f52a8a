// Transcripts as their format (tests/sessions/README.md) has them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tivelo::tests {

namespace fs = std::filesystem;

inline const fs::path kRoot = TIVELO_ROOT;

// One "$ " line and what belongs to it: all that a run printed, or a file holds, and all that was
// typed.
struct Step {
  std::string command, printed, typed;
};

// The steps of a transcript; of a .md file those in the blocks of this fence. In a console nothing
// is typed.
std::vector<Step> read_steps(const fs::path& file, const std::string& fence);

// All that are replayed, in order.
std::vector<fs::path> transcripts();

}  // namespace tivelo::tests
