#include "console/completion.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/characters.h"
#include "console/commands.h"
#include "console/own_commands.h"
#include "eval/builtins.h"

namespace tivelo {

namespace {

constexpr std::string_view kFileMarks[] = {"L:", "LC:", "WC:", "#FW:", "#FR:", "#SAVE:", "#LOAD:"};

bool is_small(char c) { return c >= 'a' && c <= 'z'; }
bool is_letter(char c) { return is_small(c) || is_capital(c); }
char as_capital(char c) { return is_small(c) ? static_cast<char>(c - 'a' + 'A') : c; }
char as_small(char c) { return is_capital(c) ? static_cast<char>(c - 'A' + 'a') : c; }

void add(Completion& found, std::string_view name) {
  if (name.size() >= Completion::kRoom) return;
  if (found.count == 0) found.common = name.size();
  if (found.count > 0) {
    const std::string_view first(found.names[0], std::min(found.common, name.size()));
    const auto differ = std::mismatch(first.begin(), first.end(), name.begin()).first;
    found.common = static_cast<std::size_t>(differ - first.begin());
  }
  if (found.count < Completion::kShown) {
    char* to = found.names[found.count];
    std::memcpy(to, name.data(), name.size());
    to[name.size()] = '\0';
  }
  ++found.count;
}

void add_word(Completion& found, std::string_view word, std::string_view name) {
  if (name.size() < word.size() || name.size() >= Completion::kRoom) return;
  if (!std::ranges::all_of(name, [](char c) { return is_letter(c) || c == '#'; })) return;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (as_capital(word[i]) != name[i]) return;
  char cased[Completion::kRoom];
  const bool small = is_small(word.back());
  std::ranges::transform(name, cased, [small](char c) { return small ? as_small(c) : c; });
  std::memcpy(cased, word.data(), word.size());
  add(found, {cased, name.size()});
}

void complete_file(std::string_view typed, Completion& found) {
  const std::size_t slash = typed.rfind('/');
  const std::size_t split = slash == std::string_view::npos ? 0 : slash + 1;
  const std::string_view word = typed.substr(split);
  char path[4096];
  if (split + Completion::kRoom + 2 > sizeof path) return;
  std::snprintf(path, sizeof path, "%.*s", static_cast<int>(split), typed.data());
  DIR* folder = ::opendir(split == 0 ? "." : path);
  if (folder == nullptr) return;
  found.typed = word.size();
  while (const dirent* entry = ::readdir(folder)) {
    const std::string_view name = entry->d_name;
    const bool hidden = name[0] == '.' && !word.starts_with('.');
    if (hidden || name == "." || name == ".." || !name.starts_with(word)) continue;
    char shown[Completion::kRoom + 1];
    std::snprintf(path + split, sizeof path - split, "%s", entry->d_name);
    struct stat status {};
    const bool inside = ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
    std::snprintf(shown, sizeof shown, "%s%s", entry->d_name, inside ? "/" : "");
    add(found, shown);
  }
  ::closedir(folder);
}

// The file name that the line is at, if a command in front of it takes one. Blanks in front of the
// ':' do not count; "WC:" has the last cell and one more character before the name.
bool find_file(std::string_view line, std::string_view& name) {
  char mark[8];
  std::size_t size = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == ' ') continue;
    if (size == sizeof mark) return false;
    mark[size++] = as_capital(line[i]);
    if (line[i] != ':') continue;
    name = line.substr(i + 1);
    const std::string_view whole(mark, size);
    if (std::ranges::find(kFileMarks, whole) == std::end(kFileMarks)) return false;
    if (whole != "WC:") return true;
    if (name.size() < 3) return false;
    name.remove_prefix(3);
    return true;
  }
  return false;
}

int compare_names(const void* a, const void* b) {
  return std::strcmp(static_cast<const char*>(a), static_cast<const char*>(b));
}

}  // namespace

void complete(std::string_view before, Completion& found) {
  found.typed = found.count = found.common = 0;
  if (std::string_view name; find_file(before, name)) {
    complete_file(name, found);
  } else {
    std::size_t start = before.size();
    while (start > 0 && is_letter(before[start - 1])) --start;
    const bool mark = start > 0 && before[start - 1] == '#';
    if (mark) --start;
    const std::string_view word = before.substr(start);
    found.typed = word.size();
    if (mark && before.find_first_not_of(' ') == start) {
      for (std::size_t i = 0; !command_mark(i).empty(); ++i) add_word(found, word, command_mark(i));
      for (std::size_t i = 0; !own_command_word(i).empty(); ++i)
        add_word(found, word, own_command_word(i));
    } else if (!mark && !word.empty()) {
      for (std::size_t i = 0; !builtin_name(i).empty(); ++i) add_word(found, word, builtin_name(i));
    }
  }
  const std::size_t shown = std::min(found.count, Completion::kShown);
  std::qsort(found.names, shown, sizeof found.names[0], compare_names);
}

}  // namespace tivelo
