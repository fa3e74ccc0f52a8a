// Files through POSIX descriptors: no stream, no locale, no waiting for the other end of a pipe.
#include "console/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/report.h"
#include "console/replacement.h"

namespace tivelo {

namespace {

// Opens without waiting for the other end of a pipe, then lets reads and writes wait as usual.
int open_now(const char* name, int flags) {
  const int descriptor = ::open(name, flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0666);
  if (descriptor < 0) return -1;
  struct stat status {};
  if (::fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) {
    ::close(descriptor);
    return -1;
  }
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
  return descriptor;
}

}  // namespace

int open_to_read(const char* name) { return open_now(name, O_RDONLY); }

int open_to_write(const char* name) { return open_now(name, O_WRONLY | O_CREAT | O_TRUNC); }

void close_descriptor(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

long read_text(const char* name, char* data, std::size_t size, long long* whole) {
  int descriptor = open_to_read(name);
  if (descriptor < 0) return -1;
  struct stat status {};
  if (::fstat(descriptor, &status) == 0) *whole = status.st_size;
  std::size_t kept = 0;
  long got = 1;
  while (kept < size && got > 0) {
    got = fill_descriptor(&descriptor, data + kept, size - kept);
    if (got > 0) kept += static_cast<std::size_t>(got);
  }
  ::close(descriptor);
  return got < 0 ? -1 : static_cast<long>(kept);
}

bool write_text(const char* name, const char* data, std::size_t size) {
  Replacement file(name);
  if (file.target() == Replacement::Target::file || file.target() == Replacement::Target::missing) {
    if (file.begin()) {
      put(file.out(), {data, size});
      if (file.finish()) return true;
    }
    if (!file.folder_refuses()) return false;
  }
  int descriptor = open_to_write(name);
  if (descriptor < 0) return false;
  const bool written = drain_descriptor(&descriptor, data, size);
  return ::close(descriptor) == 0 && written;
}

void open_print_file(PrintFile& file, const char* name) {
  close_print_file(file);
  file.descriptor = open_to_write(name);
  if (file.descriptor < 0) {
    report(Event::print_file_not_opened, {.name = name});
    return;
  }
  file.out.drain = drain_descriptor;
  file.out.context = &file.descriptor;
  file.out.used = 0;
  file.out.failed = false;
}

void close_print_file(PrintFile& file) {
  if (file.descriptor < 0) return;
  const bool written = flush(file.out);
  if (::close(file.descriptor) != 0 || !written) report(Event::print_file_not_written);
  file.descriptor = -1;
}

}  // namespace tivelo
