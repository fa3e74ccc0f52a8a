// What the fuzz targets share: runs of the calculator inside this process, on bytes, in a folder of
// their own. Whatever would let a run leave that folder or ask for endless work is taken out of the
// bytes here, never in the calculator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tivelo::fuzz {

using Files = std::map<std::string, std::string>;  // content by name

struct Run {
  std::vector<std::string> arguments;
  std::string typed;
  Files files = {};  // in the folder at the start
};

struct Outcome {
  bool cut = false;  // ended after a fifth of a second of processor time
  std::string printed, explained;
  Files files;  // in the folder at the end
};

// Runs the calculator in an empty folder that holds `run.files`. A repeat or a recursion of scripts
// that was asked for may go on for ever: after a fifth of a second of processor time the run's
// output counts as failed, which ends it before its next line. A single line without end is the
// fuzzer's to notice.
Outcome run(const Run& run);

// Two runs must print, explain and leave the same, unless one is cut or the clock is asked for.
void run_twice(const Run& run);

// The bytes with no '/' behind a ':' (a name stays in the folder), repeat counts of one digit and
// no repeats inside blocks (these restart the block for ever).
std::string tame(std::string_view bytes);

// The bytes between the separators 0xff, which no accepted line contains; `count` parts.
std::vector<std::string> split(const std::uint8_t* data, std::size_t size, std::size_t count);

// Ends the process, with `what` on standard error, unless `condition` holds.
void demand(bool condition, const char* what);

}  // namespace tivelo::fuzz
