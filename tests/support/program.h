// Runs the program as a person would, in the current folder: with its input from a file, its output
// into files, and a limit in time.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tivelo::tests {

struct Start {
  std::string typed;
  std::vector<std::string> args = {"0"};
  std::function<void()> spoil = [] {};  // in the child, before the program takes over
  std::optional<std::vector<std::string>> environment = {};  // else that of the tests
  bool named = true;  // false: not even a program name as argument 0
};

struct Outcome {
  int status = 0;  // 128 and the signal for a run that a signal ended; 14 tells of a hang
  std::string out, err;
};

Outcome run(const Start& start);
std::string output(const Start& start);  // of a run that must end well and leave no other word

// In the child: makes the file the descriptor's.
void redirect(int descriptor, const char* file, int flags);

}  // namespace tivelo::tests
