// The lines of earlier sessions: a plain text file, a line each, the last one newest, under the
// user's folder for state. Without such a folder, or when it cannot be written, nothing is kept and
// nobody is told. Several programs may add to it at once.
#pragma once

#include <cstddef>
#include <string_view>

namespace tivelo {

inline constexpr std::size_t kHistoryLines = 1000;
inline constexpr std::size_t kHistoryLine = 4096;  // characters of a line that is kept, at most

// Finds where the file is and hands its lines to `take`, oldest first. Only after that are lines
// added to it.
void load_history(void (*take)(std::string_view line));

// Is a line kept? Not an empty one, one with a leading blank, a very long one, or the one before
// again; that is remembered here.
bool keep_line(std::string_view line);

// Adds a line to the file, which it makes (0600, its folder 0700) when there is none.
void append_to_history(std::string_view line);

}  // namespace tivelo
