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

bool read_line(In& in, Out& out, char* line, std::size_t room) {
  std::size_t kept = 0;
  bool any = false;
  for (;;) {
    if (in.next == in.end) {
      flush(out);
      const long got = in.ended ? 0 : in.fill(in.context, in.buffer, sizeof in.buffer);
      in.interrupted = got == kInterruptedRead;
      if (in.interrupted) return false;
      if (got <= 0) {
        in.ended = true;
        break;
      }
      in.next = 0;
      in.end = static_cast<std::size_t>(got);
    }
    any = true;
    const char* from = in.buffer + in.next;
    const std::size_t left = in.end - in.next;
    const char* feed = static_cast<const char*>(std::memchr(from, '\n', left));
    const std::size_t size = feed ? static_cast<std::size_t>(feed - from) : left;
    const std::size_t taken = std::min(size, room - 1 - kept);
    std::memcpy(line + kept, from, taken);
    kept += taken;
    in.next += size + (feed ? 1 : 0);
    if (feed) break;
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
