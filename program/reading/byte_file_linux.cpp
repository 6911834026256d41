// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "reading/byte_file.h"

namespace vextrel::program {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
  throw std::runtime_error("'" + path + "' can't be read (" +
                           std::generic_category().message(error) +
                           "): give the path of a call log");
}

}  // namespace

ByteFile::ByteFile(const std::string& path) : path_(path) {
  if (path == "-") {
    handle_ = STDIN_FILENO;
    return;
  }
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) {
    Fail(path, errno);
  }
  struct stat status {};
  if (fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
    close(file);
    throw std::runtime_error("'" + path + "' is a folder: give the path of a call log in it");
  }
  handle_ = file;
}

ByteFile::~ByteFile() {
  if (handle_ > STDERR_FILENO) {
    close(static_cast<int>(handle_));
  }
}

ByteFile::ByteFile(ByteFile&& other) noexcept
    : path_(std::move(other.path_)), handle_(std::exchange(other.handle_, -1)) {}

std::size_t ByteFile::Read(char* bytes, std::size_t size) {
  while (true) {
    const ssize_t count = read(static_cast<int>(handle_), bytes, size);
    if (count >= 0) {
      return static_cast<std::size_t>(count);
    }
    if (errno != EINTR) {
      Fail(path_, errno);
    }
  }
}

std::uint64_t ByteFile::Size() const {
  struct stat status {};
  return fstat(static_cast<int>(handle_), &status) == 0 && S_ISREG(status.st_mode)
             ? static_cast<std::uint64_t>(status.st_size)
             : 0;
}

bool ByteFile::WasReplaced(std::uint64_t position) const {
  struct stat mine {};
  struct stat named {};
  if (path_ == "-" || fstat(static_cast<int>(handle_), &mine) != 0 || !S_ISREG(mine.st_mode)) {
    return false;
  }
  if (static_cast<std::uint64_t>(mine.st_size) < position) {
    return true;
  }
  return stat(path_.c_str(), &named) == 0 &&
         (named.st_ino != mine.st_ino || named.st_dev != mine.st_dev);
}

bool FileExists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool IsTerminal(bool isError) {
  return isatty(isError ? STDERR_FILENO : STDOUT_FILENO) == 1;
}

void PrepareConsole() {}

}  // namespace vextrel::program
