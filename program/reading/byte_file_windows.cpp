// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "reading/byte_file.h"

namespace vextrel::program {
namespace {

HANDLE AsHandle(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

std::wstring Wide(const std::string& text) {
  const int size =
      MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), size);
  return wide;
}

[[noreturn]] void Fail(const std::string& path, DWORD error) {
  throw std::runtime_error("'" + path + "' can't be read (" +
                           std::system_category().message(static_cast<int>(error)) +
                           "): give the path of a call log");
}

// All sharing is allowed, so that whoever writes the log may go on, and rename it.
HANDLE Open(const std::string& path) {
  return CreateFileW(Wide(path).c_str(), GENERIC_READ,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

ByteFile::ByteFile(const std::string& path) : path_(path) {
  if (path == "-") {
    handle_ = reinterpret_cast<std::intptr_t>(GetStdHandle(STD_INPUT_HANDLE));
    return;
  }
  if (IsFolder(path)) {
    throw std::runtime_error("'" + path + "' is a folder: give the path of a call log in it");
  }
  HANDLE file = Open(path);
  if (file == INVALID_HANDLE_VALUE) {
    Fail(path, GetLastError());
  }
  handle_ = reinterpret_cast<std::intptr_t>(file);
}

ByteFile::~ByteFile() {
  if (path_ != "-" && handle_ != -1) {
    CloseHandle(AsHandle(handle_));
  }
}

ByteFile::ByteFile(ByteFile&& other) noexcept
    : path_(std::move(other.path_)), handle_(std::exchange(other.handle_, -1)) {}

std::size_t ByteFile::Read(char* bytes, std::size_t size) {
  DWORD count = 0;
  if (ReadFile(AsHandle(handle_), bytes, static_cast<DWORD>(size), &count, nullptr) == 0) {
    const DWORD error = GetLastError();
    if (error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF) {
      return 0;
    }
    Fail(path_, error);
  }
  return count;
}

std::uint64_t ByteFile::Size() const {
  LARGE_INTEGER size{};
  return GetFileType(AsHandle(handle_)) == FILE_TYPE_DISK &&
                 GetFileSizeEx(AsHandle(handle_), &size) != 0
             ? static_cast<std::uint64_t>(size.QuadPart)
             : 0;
}

bool ByteFile::WasReplaced(std::uint64_t position) const {
  if (path_ == "-" || GetFileType(AsHandle(handle_)) != FILE_TYPE_DISK) {
    return false;
  }
  if (Size() < position) {
    return true;
  }
  HANDLE named = Open(path_);
  if (named == INVALID_HANDLE_VALUE) {
    return false;
  }
  BY_HANDLE_FILE_INFORMATION mine{};
  BY_HANDLE_FILE_INFORMATION other{};
  const bool known = GetFileInformationByHandle(AsHandle(handle_), &mine) != 0 &&
                     GetFileInformationByHandle(named, &other) != 0;
  CloseHandle(named);
  return known &&
         (mine.nFileIndexLow != other.nFileIndexLow || mine.nFileIndexHigh != other.nFileIndexHigh);
}

bool FileExists(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool IsTerminal(bool isError) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(isError ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE), &mode) != 0;
}

void PrepareConsole() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  // Colours are escape sequences.
  HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(output, &mode) != 0) {
    SetConsoleMode(output, mode | 0x0004);
  }
}

}  // namespace vextrel::program
