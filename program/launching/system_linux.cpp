// SPDX-License-Identifier: MIT
#include <sys/auxv.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cstdlib>

#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

const bool kNamesIgnoreCase = false;
const char kListSeparator = ':';
const ImageKind kOwnImageKind = ImageKind::Elf;
const std::string_view kSystemName = "Linux";
namespace {
constexpr std::string_view kEndings[] = {""};
}  // namespace
const std::span<const std::string_view> kProgramEndings = kEndings;
const bool kSearchesWorkingFolder = false;

Variables ProcessVariables() {
  Variables variables;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    const std::size_t equals = text.find('=');
    if (equals != std::string_view::npos) {
      variables.Set(std::string(text.substr(0, equals)), std::string(text.substr(equals + 1)));
    }
  }
  return variables;
}

std::optional<StoredVariables> ReadStoredVariables() {
  return std::nullopt;
}

std::vector<std::string> ProgramArguments(int count, char** values) {
  // A program can be started without any arguments, even its own name.
  return count < 1 ? std::vector<std::string>()
                   : std::vector<std::string>(values + 1, values + count);
}

fs::path OwnProgram() {
  std::error_code error;
  fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (!error) {
    return program;
  }
  // Without /proc, there's still what we were started as.
  return fs::absolute(reinterpret_cast<const char*>(::getauxval(AT_EXECFN)), error);
}

std::uint32_t OwnProcessId() {
  return static_cast<std::uint32_t>(::getpid());
}

bool IsElevated() {
  return ::geteuid() == 0;
}

std::vector<fs::path> TemporaryFolders(const Variables& variables) {
  std::vector<fs::path> folders;
  if (const auto folder = variables.Find("TMPDIR")) {
    folders.emplace_back(*folder);
  }
  folders.emplace_back("/tmp");
  if (const auto folder = variables.Find("XDG_RUNTIME_DIR")) {
    folders.emplace_back(*folder);
  }
  if (const auto home = variables.Find("HOME")) {
    folders.push_back(fs::path(*home) / ".cache");
  }
  return folders;
}

fs::path UserDataFolder(const Variables& variables) {
  if (const auto folder = variables.Find("XDG_DATA_HOME")) {
    return *folder;
  }
  const auto home = variables.Find("HOME");
  return home ? fs::path(*home) / ".local" / "share" : fs::path();
}

fs::path MakePrivateFolder(const fs::path& parent) {
  std::string name = (parent / "vextrel-XXXXXX").string();
  return ::mkdtemp(name.data()) != nullptr ? fs::path(name) : fs::path();
}

bool IsExecutable(const fs::path& file) {
  return ::access(file.c_str(), X_OK) == 0;
}

bool CanLoadModulesFrom(const fs::path& folder) {
  struct statvfs status {};
  return ::statvfs(folder.c_str(), &status) != 0 || (status.f_flag & ST_NOEXEC) == 0;
}

bool IsOnNetwork(const fs::path& folder) {
  constexpr unsigned nfs = 0x6969;
  constexpr unsigned cifs = 0xFF534D42;
  constexpr unsigned smb2 = 0xFE534D42;
  struct statfs status {};
  if (::statfs(folder.c_str(), &status) != 0) {
    return false;
  }
  const auto type = static_cast<unsigned>(status.f_type);
  return type == nfs || type == cifs || type == smb2;
}

std::optional<std::string> NarrowPath(const fs::path& path) {
  return path.string();
}

}  // namespace vextrel::program
