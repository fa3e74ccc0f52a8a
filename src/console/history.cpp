#include "console/history.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tivelo {

namespace {

// The file may grow to so many lines before it is cut to kHistoryLines.
constexpr std::size_t kMostLines = 2 * kHistoryLines;

constexpr std::size_t kPath = 4096;
char path[kPath];         // of the file; empty: there is none
std::size_t given = 0;    // of the path: what has to be there already
std::size_t in_file = 0;  // lines in the file, as far as this program knows
char before[kHistoryLine + 1];

constexpr char kSuffix[] = ".XXXXXX";  // of the new file while it is written

// Writes the file's name into `path`.
void find_path() {
  path[0] = '\0';
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  int size = 0;
  if (state != nullptr && state[0] == '/') {
    given = 0;
    size = std::snprintf(path, sizeof path, "%s/tivelo/history", state);
  } else if (home != nullptr && home[0] == '/') {
    given = std::strlen(home);
    size = std::snprintf(path, sizeof path, "%s/.local/state/tivelo/history", home);
  }
  if (size >= static_cast<int>(sizeof path)) path[0] = '\0';
}

// Makes the folders of the path that are missing.
void make_folders() {
  for (char* slash = path + given + 1; (slash = std::strchr(slash, '/')) != nullptr; ++slash) {
    *slash = '\0';
    ::mkdir(path, 0700);
    *slash = '/';
  }
}

// A descriptor of the file, or -1; of a plain file only, since a pipe would have to be waited for.
int open_plain(int flags) {
  const int descriptor = ::open(path, flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0600);
  struct stat status {};
  if (descriptor < 0 || (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)))
    return descriptor;
  ::close(descriptor);
  return -1;
}

std::FILE* open_to_look() {
  const int descriptor = path[0] != '\0' ? open_plain(O_RDONLY) : -1;
  return descriptor >= 0 ? ::fdopen(descriptor, "r") : nullptr;
}

// Reads the next line that can have been kept. False at the end.
bool read_kept(std::FILE* file, char (&line)[kHistoryLine + 2]) {
  bool whole = true;
  while (std::fgets(line, sizeof line, file) != nullptr) {
    const std::size_t size = std::strcspn(line, "\n");
    const bool ends = line[size] == '\n' || std::feof(file) != 0;
    const bool fits = whole && ends;
    whole = ends;
    line[size] = '\0';
    if (fits && size > 0) return true;
  }
  return false;
}

// Puts the last lines of the file, whoever added them, in its place. A line that another program
// adds between the last look and the change of names is lost, never more.
void shorten() {
  std::FILE* file = open_to_look();
  if (file == nullptr) return;
  char line[kHistoryLine + 2];
  std::size_t lines = 0;
  while (read_kept(file, line)) ++lines;
  std::rewind(file);
  char fresh[kPath + sizeof kSuffix];
  std::snprintf(fresh, sizeof fresh, "%s%s", path, kSuffix);
  const int descriptor = ::mkstemp(fresh);
  std::FILE* to = descriptor >= 0 ? ::fdopen(descriptor, "w") : nullptr;
  if (to != nullptr) {
    for (std::size_t i = 0; read_kept(file, line); ++i)
      if (i + kHistoryLines >= lines) std::fprintf(to, "%s\n", line);
    const bool written = std::ferror(to) == 0;
    const bool closed = std::fclose(to) == 0;
    if (!written || !closed || std::rename(fresh, path) != 0) ::unlink(fresh);
  }
  std::fclose(file);
  in_file = kHistoryLines;
}

}  // namespace

void load_history(void (*take)(std::string_view line)) {
  find_path();
  std::FILE* file = open_to_look();
  if (file == nullptr) return;
  char line[kHistoryLine + 2];
  for (in_file = 0; read_kept(file, line); ++in_file) {
    take(line);
    std::strcpy(before, line);
  }
  std::fclose(file);
}

bool keep_line(std::string_view line) {
  if (line.empty() || line.size() > kHistoryLine || line[0] == ' ' || line == before) return false;
  std::memcpy(before, line.data(), line.size());
  before[line.size()] = '\0';
  return true;
}

void append_to_history(std::string_view line) {
  if (path[0] == '\0') return;
  int descriptor = open_plain(O_WRONLY | O_APPEND | O_CREAT);
  if (descriptor < 0) {
    make_folders();
    descriptor = open_plain(O_WRONLY | O_APPEND | O_CREAT);
  }
  if (descriptor < 0) return;
  // In one piece, so that lines of several programs do not mix.
  char text[kHistoryLine + 1];
  std::memcpy(text, line.data(), line.size());
  text[line.size()] = '\n';
  const bool written = ::write(descriptor, text, line.size() + 1) > 0;
  ::close(descriptor);
  if (written && ++in_file > kMostLines) shorten();
}

}  // namespace tivelo
