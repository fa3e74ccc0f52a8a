// What "#HELP" prints: an index of all words, or what there is to know of one.
#pragma once

#include <span>
#include <string_view>

namespace tivelo {

// One thing of the language. A row of a command is found with and without its '#'.
struct Help {
  std::string_view word;
  const char* syntax;
  const char* does;
  const char* examples[2];
  const char* trap;  // or null
};

// The first words of all rows, those given and those of the language.
void print_index(std::span<const Help> own);

// The row of one word; false when there is none.
[[nodiscard]] bool print_help(std::string_view word, std::span<const Help> own);

}  // namespace tivelo
