// Text files by the names that commands give them. Names are used as typed. Opening never waits:
// a pipe without a reader cannot be written, one without a writer is empty.
#pragma once

#include <cstddef>

#include "base/stream.h"

namespace tivelo {

// A descriptor, or -1 when the file cannot be opened (a folder counts as such).
int open_to_read(const char* name);
int open_to_write(const char* name);

// Closes a descriptor that is not -1, and makes it -1.
void close_descriptor(int& descriptor);

// Reads at most `size` bytes of the file into `data`. Returns how many, or -1 when it cannot be
// opened or read. *whole is how many bytes the file has, as far as that is known without reading
// it.
[[nodiscard]] long read_text(const char* name, char* data, std::size_t size, long long* whole);

// Writes `size` bytes as the whole file. False when it cannot be opened or written: an older file
// is then as it was, unless it stands in a folder that takes no new files.
[[nodiscard]] bool write_text(const char* name, const char* data, std::size_t size);

// The file that "W." prints to, while it is open.
struct PrintFile {
  int descriptor = -1;
  Out out;
};

// Opens `name` for printing, after closing what is open. A failure has been reported.
void open_print_file(PrintFile& file, const char* name);

// Writes out what is buffered and closes the file if it is open. A failure has been reported.
void close_print_file(PrintFile& file);

}  // namespace tivelo
