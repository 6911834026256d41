// SPDX-License-Identifier: MIT
// A file as it is read here: from its beginning, while another process may still write, rename or
// truncate it.
#ifndef VEXTREL_PROGRAM_READING_BYTE_FILE_H
#define VEXTREL_PROGRAM_READING_BYTE_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace vextrel::program {

class ByteFile {
 public:
  // Paths are UTF-8 on every platform; "-" is standard input. Throws std::runtime_error with a
  // sentence if there's no such file, or it can't be read.
  explicit ByteFile(const std::string& path);
  ~ByteFile();
  ByteFile(ByteFile&& other) noexcept;
  ByteFile& operator=(ByteFile&&) = delete;
  ByteFile(const ByteFile&) = delete;
  ByteFile& operator=(const ByteFile&) = delete;

  // Returns how many bytes were read: 0 at the end of the file as it is now. Throws
  // std::runtime_error with a sentence if it can't be read.
  [[nodiscard]] std::size_t Read(char* bytes, std::size_t size);
  // 0 if the size isn't known, as for a pipe.
  [[nodiscard]] std::uint64_t Size() const;
  // Returns true iff the path now names another file, or this one was cut to less than `position`.
  [[nodiscard]] bool WasReplaced(std::uint64_t position) const;

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }

 private:
  std::string path_;
  std::intptr_t handle_ = -1;
};

[[nodiscard]] bool FileExists(const std::string& path);
// Standard error or standard output.
[[nodiscard]] bool IsTerminal(bool isError);
// Leaves the bytes of standard input and output as they are, and has the console take UTF-8.
void PrepareConsole();

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_BYTE_FILE_H
