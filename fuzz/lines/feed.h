// The calculator in this process, fed line by line: between two lines a test can look at every
// record. Also a folder of its own for what a test leaves in files.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "console/process.h"

namespace tivelo::tests {

// A new empty folder, removed with all that is in it. While it lives it is the current one.
class OwnFolder {
 public:
  OwnFolder() : home_(std::filesystem::current_path()) {
    std::string name = (std::filesystem::temp_directory_path() / "tivelo-XXXXXX").string();
    path_ = mkdtemp(name.data());
    std::filesystem::current_path(path_);
  }
  ~OwnFolder() {
    std::filesystem::current_path(home_);
    std::filesystem::remove_all(path_);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

 private:
  std::filesystem::path home_, path_;
};

struct Feed {
  // Makes `line` the next to be typed, or returns false at the end. All before it are answered.
  std::function<bool(std::string& line)> next;
  std::string printed;  // the asker clears these as it likes
  std::string explained;
};

// Runs the calculator at precision 0 until it ends by itself or the feed does; returns its status.
inline int run_on(Feed& feed) {
  static In in;
  static Out out, explanations;
  in.fill = [](void* context, char* data, std::size_t size) {
    std::string line;
    if (!static_cast<Feed*>(context)->next(line)) return 0L;
    line += '\n';
    const std::size_t n = std::min(size, line.size());
    std::memcpy(data, line.data(), n);
    return static_cast<long>(n);
  };
  in.context = &feed;
  in.ended = false;
  in.next = in.end = 0;
  const auto restart = [](Out& to, std::string& text) {
    to.drain = [](void* context, const char* data, std::size_t size) {
      static_cast<std::string*>(context)->append(data, size);
      return true;
    };
    to.context = &text;
    to.failed = false;
    to.used = 0;
  };
  restart(out, feed.printed);
  restart(explanations, feed.explained);
  const char* const arguments[] = {"0"};
  return run_calculator(1, arguments, {&in, &out, &explanations, &explanations});
}

}  // namespace tivelo::tests
