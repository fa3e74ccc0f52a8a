// A file that is written whole or not at all: its bytes go into a new file in the same folder,
// which takes the place of the old one once they are on the disk. A crash, a full disk and a limit
// of size leave the old file.
#pragma once

#include <climits>
#include <cstddef>

#include "base/sha256.h"
#include "base/stream.h"

namespace tivelo {

class Replacement {
 public:
  // What stands under the name, symbolic links followed.
  enum class Target {
    missing,
    file,
    other,   // a device, a pipe, a folder: no file could take its place
    refused  // a file that may not be written, or a name that none can have
  };

  // Looks at the name, and changes nothing. `name` is copied.
  explicit Replacement(const char* name);
  // Removes what was written, unless finish() has put it in place.
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  Target target() const { return target_; }
  const char* path() const { return path_; }

  // Makes the new file. False when the folder takes none.
  [[nodiscard]] bool begin();

  // Where its bytes go; polls before each piece. With a digest, that follows what is handed over.
  // One replacement at a time has it.
  Out& out();
  void set_digest(Sha256* digest) { digest_ = digest; }

  // Writes the rest, and puts the new file in place with the mode of the old one; polls before, so
  // that an interruption leaves the old one. False when anything could not be written.
  [[nodiscard]] bool finish();

  // Of a begin() or finish() that failed: is it the folder that takes no new file, while the old
  // one could be written over?
  bool folder_refuses() const;

 private:
  static bool drain(void* self, const char* data, std::size_t size);
  bool follow_links();
  bool sync_and_rename();

  Target target_ = Target::refused;
  char path_[PATH_MAX] = {};
  char beside_[PATH_MAX] = {};
  std::size_t folder_ = 0;  // characters of path_ and beside_ up to the last '/' and with it
  int descriptor_ = -1;
  int error_ = 0;
  bool made_ = false;
  bool keeps_mode_ = false;
  unsigned mode_ = 0, owner_ = 0, group_ = 0;  // of the old file
  Sha256* digest_ = nullptr;
};

}  // namespace tivelo
