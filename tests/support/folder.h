// Files of a test: a folder of its own, and their content as text.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

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

inline std::string content(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline void write(const std::string& file, const std::string& text) {
  std::ofstream(file, std::ios::binary) << text;
}

}  // namespace tivelo::tests
