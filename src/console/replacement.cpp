// The order of the system's calls, which is all that keeps the old file: write, sync, rename, sync
// the folder.
#include "console/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/interrupt.h"

namespace tivelo {

namespace {

constexpr int kLinks = 40;  // followed, as the system itself does
constexpr int kNames = 100;

Out file_out;

std::size_t folder_of(const char* path) {
  const char* slash = std::strrchr(path, '/');
  return slash != nullptr ? static_cast<std::size_t>(slash - path) + 1 : 0;
}

}  // namespace

// Replaces path_ by the name that its links end at. What is in /proc stands for files that need not
// have a name.
bool Replacement::follow_links() {
  for (int i = 0; i < kLinks; ++i) {
    char to[PATH_MAX];
    if (std::strncmp(path_, "/proc/", 6) == 0) return false;
    const ssize_t size = ::readlink(path_, to, sizeof to - 1);
    folder_ = folder_of(path_);
    if (size < 0) return true;
    const auto length = static_cast<std::size_t>(size);
    const std::size_t kept = to[0] == '/' ? 0 : folder_;
    if (kept + length >= sizeof path_) return false;
    std::memcpy(path_ + kept, to, length);
    path_[kept + length] = '\0';
  }
  return false;
}

Replacement::Replacement(const char* name) {
  const std::size_t size = std::strlen(name);
  if (size == 0 || size >= sizeof path_) return;
  std::memcpy(path_, name, size + 1);
  struct stat status {};
  const bool exists = ::stat(name, &status) == 0;
  if (!exists && errno != ENOENT) return;
  if (exists && !S_ISREG(status.st_mode)) {
    target_ = Target::other;
    return;
  }
  if (!follow_links()) {
    if (exists) target_ = Target::other;
    return;
  }
  if (path_[folder_] == '\0') return;
  if (exists && ::faccessat(AT_FDCWD, path_, W_OK, AT_EACCESS) != 0) return;
  target_ = exists ? Target::file : Target::missing;
  keeps_mode_ = exists;
  mode_ = status.st_mode & 0777;
  owner_ = status.st_uid;
  group_ = status.st_gid;
}

Replacement::~Replacement() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (made_) ::unlink(beside_);
}

bool Replacement::begin() {
  std::memcpy(beside_, path_, folder_);
  for (int i = 0; i < kNames; ++i) {
    const int size = std::snprintf(beside_ + folder_, sizeof beside_ - folder_, ".tivelo-%ld-%d",
                                   static_cast<long>(::getpid()), i);
    if (static_cast<std::size_t>(size) >= sizeof beside_ - folder_) {
      error_ = ENAMETOOLONG;
      return false;
    }
    descriptor_ = ::open(beside_, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666);
    error_ = errno;
    made_ = descriptor_ >= 0;
    if (made_ || error_ != EEXIST) break;
  }
  file_out.drain = drain;
  file_out.context = this;
  file_out.used = 0;
  file_out.failed = false;
  return made_;
}

Out& Replacement::out() { return file_out; }

bool Replacement::drain(void* self, const char* data, std::size_t size) {
  Replacement& file = *static_cast<Replacement*>(self);
  poll();
  if (file.digest_ != nullptr) file.digest_->update({data, size});
  if (drain_descriptor(&file.descriptor_, data, size)) return true;
  file.error_ = errno;
  return false;
}

bool Replacement::sync_and_rename() {
  poll();
  if (keeps_mode_) {
    // Only the owner of the system may give a file away; for others it is the old owner's or not.
    if (owner_ != ::geteuid() || group_ != ::getegid())
      (void)!::fchown(descriptor_, owner_, group_);
    if (::fchmod(descriptor_, mode_) != 0) return false;
  }
  if (::fsync(descriptor_) != 0) return false;
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (::close(descriptor) != 0) return false;
  poll();
  return ::rename(beside_, path_) == 0;
}

bool Replacement::finish() {
  if (!flush(file_out)) return false;
  if (!sync_and_rename()) {
    error_ = errno;
    return false;
  }
  made_ = false;
  path_[folder_] = '\0';
  const int folder = ::open(folder_ > 0 ? path_ : ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return true;
  (void)::fsync(folder);  // a file system without it has no other way either
  ::close(folder);
  return true;
}

bool Replacement::folder_refuses() const {
  constexpr int kRefusals[] = {EACCES, EPERM, EROFS, EBUSY, EXDEV, ENAMETOOLONG};
  return std::ranges::find(kRefusals, error_) != std::end(kRefusals);
}

}  // namespace tivelo
