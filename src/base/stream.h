// Buffered bytes to and from wherever a caller says: a file descriptor in the program, memory in
// a test. Nothing here knows what the bytes mean, and nothing allocates.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace tivelo {

// Where printed text goes. Text is handed to `drain` when the buffer is full and on flush().
struct Out {
  // Takes `size` bytes; false when they cannot be written.
  using Drain = bool (*)(void* context, const char* data, std::size_t size);

  Drain drain = nullptr;
  void* context = nullptr;
  bool failed = false;  // a drain was refused; what is put from then on is dropped
  std::size_t used = 0;
  char buffer[1 << 16];
};

// What does not fit the buffer any more.
void put_beyond(Out& out, std::string_view text);

inline void put(Out& out, std::string_view text) {
  if (out.used + text.size() > sizeof out.buffer) return put_beyond(out, text);
  std::memcpy(out.buffer + out.used, text.data(), text.size());
  out.used += text.size();
}

// Formats at most 255 characters like printf.
void print(Out& out, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Hands over what is buffered; false when the sink has refused text, now or earlier.
bool flush(Out& out);

// Instead of a count of bytes: the person has cancelled the line that was asked for (Ctrl-C). It is
// neither an end nor an error; the next line can be asked for.
inline constexpr long kInterruptedRead = -2;

// Where typed text comes from. `fill` reads at most `size` bytes and returns how many, 0 or less
// at the end or on an error, or kInterruptedRead.
struct In {
  using Fill = long (*)(void* context, char* data, std::size_t size);

  Fill fill = nullptr;
  void* context = nullptr;
  bool ended = false;
  bool terminal = false;     // a person types at one
  bool edited = false;       // ... in an editor, which passes lines of any length
  bool keep = true;          // what is typed is a line to be remembered, no answer to a question
  bool interrupted = false;  // the last line was broken off
  std::size_t next = 0;
  std::size_t end = 0;
  char buffer[1 << 16];
};

// Reads one line into `line` (room for `room` bytes with the terminating zero, at least 1), without
// its line feed; what does not fit is read and dropped. False at the end of the input, or when the
// line was broken off (`in.interrupted`). Before it has to wait for more input it flushes `out`.
bool read_line(In& in, Out& out, char* line, std::size_t room);

// Drain and Fill for a file descriptor, which `context` points at (an int).
bool drain_descriptor(void* context, const char* data, std::size_t size);
long fill_descriptor(void* context, char* data, std::size_t size);

}  // namespace tivelo
