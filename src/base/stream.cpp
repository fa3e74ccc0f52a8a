// Buffers in front of whatever takes or gives the bytes.
#include "base/stream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/interrupt.h"

namespace tivelo {

void put_beyond(Out& out, std::string_view text) {
  flush(out);
  while (text.size() >= sizeof out.buffer && !out.failed) {
    poll();
    out.failed = !out.drain(out.context, text.data(), sizeof out.buffer);
    text.remove_prefix(sizeof out.buffer);
  }
  if (out.failed) return;
  std::memcpy(out.buffer, text.data(), text.size());
  out.used = text.size();
}

void print(Out& out, const char* format, ...) {
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (length > 0) put(out, {text, std::min(static_cast<std::size_t>(length), sizeof text - 1)});
}

bool flush(Out& out) {
  if (out.used > 0 && !out.failed) out.failed = !out.drain(out.context, out.buffer, out.used);
  out.used = 0;
  return !out.failed;
}

namespace {

// What a reading of the source came to: bytes at `to`, or none for good (`in.ended`) or for now
// (`in.interrupted`).
std::size_t fill(In& in, Out& out, char* to) {
  flush(out);
  const long got = in.ended ? 0 : in.fill(in.context, to, sizeof in.buffer);
  in.interrupted = got == kInterruptedRead;
  if (got <= 0 && !in.interrupted) in.ended = true;
  return got <= 0 ? 0 : static_cast<std::size_t>(got);
}

// The length of the text up to its line feed, or all of it.
std::size_t line_length(const char* text, std::size_t size) {
  const char* feed = static_cast<const char*>(std::memchr(text, '\n', size));
  return feed != nullptr ? static_cast<std::size_t>(feed - text) : size;
}

}  // namespace

bool read_line(In& in, Out& out, char* line, std::size_t room) {
  std::size_t kept = 0;
  bool any = false;
  for (;;) {
    // What goes on beyond the buffer is read where it belongs, and what follows the line put back.
    const bool directly = kept > 0 && in.next == in.end && room - 1 - kept >= sizeof in.buffer;
    if (in.next == in.end) {
      const std::size_t got = fill(in, out, directly ? line + kept : in.buffer);
      if (in.interrupted) return false;
      if (got == 0) break;
      in.next = 0;
      in.end = got;
    }
    any = true;
    const char* from = directly ? line + kept : in.buffer + in.next;
    const std::size_t left = in.end - in.next;
    const std::size_t size = line_length(from, left);
    const std::size_t taken = std::min(size, room - 1 - kept);
    if (!directly) std::memcpy(line + kept, from, taken);
    kept += taken;
    in.next += std::min(size + 1, left);
    if (directly) std::memcpy(in.buffer + in.next, from + in.next, in.end - in.next);
    if (size < left) break;
  }
  if (any) line[kept] = '\0';
  return any;
}

bool drain_descriptor(void* context, const char* data, std::size_t size) {
  const int descriptor = *static_cast<int*>(context);
  while (size > 0) {
    const ssize_t written = ::write(descriptor, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

long fill_descriptor(void* context, char* data, std::size_t size) {
  const int descriptor = *static_cast<int*>(context);
  for (;;) {
    const ssize_t got = ::read(descriptor, data, size);
    if (got >= 0 || errno != EINTR) return static_cast<long>(got);
  }
}

}  // namespace tivelo
