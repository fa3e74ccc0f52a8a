// What can stand in place of the word that is being typed: a function, a command that begins with
// '#', or a file behind a command that takes one.
#pragma once

#include <cstddef>
#include <string_view>

namespace tivelo {

struct Completion {
  static constexpr std::size_t kShown = 100;
  static constexpr std::size_t kRoom = 256;  // of a name, with its zero

  std::size_t typed = 0;  // characters of the word that are there
  std::size_t count = 0;
  std::size_t common = 0;     // characters at the start in which all names agree
  char names[kShown][kRoom];  // the first so many, in order; a folder ends with '/'

  std::string_view rest() const { return {names[0] + typed, common > typed ? common - typed : 0}; }
};

// Finds what the end of `before`, the line up to the cursor, can become. Names of functions and
// commands come in the case of the letter typed last.
void complete(std::string_view before, Completion& found);

}  // namespace tivelo
