// SPDX-License-Identifier: MIT
#include "launching/log_file.h"

#include <fmt/format.h>

#include <fstream>

#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

LogFile NamedLogFile(const std::string& named) {
  std::error_code error;
  const fs::path path = fs::absolute(PathOf(named), error);
  if (fs::exists(path, error)) {
    if (!fs::is_regular_file(path, error)) {
      throw LaunchFailure(kExitOwnFailure,
                          Fault{"the log '" + named + "' isn't a file", "give a new name"});
    }
    if (fs::file_size(path, error) > 0) {
      throw LaunchFailure(kExitOwnFailure, Fault{"the log '" + named + "' exists already",
                                                 "remove it, or give another name"});
    }
  }
  if (const std::optional<Fault> fault = FaultOfLog(path)) {
    throw LaunchFailure(kExitOwnFailure, *fault);
  }
  return {path, ""};
}

}  // namespace

std::uint64_t SpaceIn(const fs::path& folder) {
  std::error_code error;
  const fs::space_info space = fs::space(folder, error);
  return error ? UINT64_MAX : space.available;
}

std::optional<Fault> FaultOfFolder(const fs::path& folder) {
  std::error_code error;
  const std::string name = "'" + TextOf(folder) + "'";
  if (!fs::is_directory(folder, error)) {
    return Fault{"there's no folder " + name, "make it, or name another file"};
  }
  const fs::path probe = folder / (".vextrel-" + std::to_string(OwnProcessId()));
  bool takesBytes = true;
  {
    std::ofstream file(probe, std::ios::binary);
    if (!file.is_open()) {
      return Fault{"this user may not write to the folder " + name,
                   "allow it, or name a file in another folder"};
    }
    // A user's share of a disk can be used up while the disk has space.
    constexpr std::size_t block = 4096;
    file << std::string(block, ' ') << std::flush;
    takesBytes = file.good();
  }
  fs::remove(probe, error);
  const std::string remedy = "free some space, or name a file on another disk";
  if (!takesBytes) {
    return Fault{"the disk of " + name + " takes no more from this user", remedy};
  }
  if (SpaceIn(folder) < kLeastSpace) {
    return Fault{"the disk of " + name + " is full", remedy};
  }
  return std::nullopt;
}

std::optional<Fault> FaultOfLog(const fs::path& log) {
  return FaultOfFile("the log", log);
}

std::optional<Fault> FaultOfFile(const std::string& what, const fs::path& file) {
  std::error_code error;
  const std::string text = what + " '" + TextOf(file) + "' can't be written";
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::current_path(error);
  if (!fs::exists(file, error)) {
    std::optional<Fault> fault = FaultOfFolder(folder);
    if (fault) {
      fault->text = text + ": " + fault->text;
    }
    return fault;
  }
  if (fs::is_directory(file, error)) {
    return Fault{text + ", since it's a folder", "name a file in it"};
  }
  // One that's there doesn't need a folder that the user may write to, and a device has no disk.
  if (!std::ofstream(file, std::ios::app).is_open()) {
    return Fault{text + " by this user", "remove it, or allow the user to write it"};
  }
  if (fs::is_regular_file(file, error) && SpaceIn(folder) < kLeastSpace) {
    return Fault{text + ": the disk of '" + TextOf(folder) + "' is full",
                 "free some space, or name a file on another disk"};
  }
  return std::nullopt;
}

std::string WhyCutShort(const fs::path& log) {
  std::error_code error;
  const bool exists = fs::exists(log, error);
  if (exists && !fs::is_regular_file(log, error)) {
    return "";
  }
  if (SpaceIn(log.parent_path()) < kLeastSpace) {
    return "the disk of the log is full: its end may be missing";
  }
  std::ifstream file(log, std::ios::binary | std::ios::ate);
  if (exists && file.tellg() > 0 && file.seekg(-1, std::ios::end).get() != '\n') {
    return "the log ends in the middle of a line: its disk was full, or the application ended "
           "while it wrote";
  }
  return "";
}

std::string LogName(const fs::path& application, const std::tm& time, std::uint32_t process) {
  return fmt::format("{}-{:04}{:02}{:02}-{:02}{:02}{:02}-{}.log", TextOf(application.stem()),
                     time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                     time.tm_sec, process);
}

LogFile ChooseLogFile(const std::string& named, const fs::path& application,
                      const Variables& variables) {
  if (!named.empty()) {
    return NamedLogFile(named);
  }
  const std::time_t now = std::time(nullptr);
  const std::string name = LogName(application, *std::localtime(&now), OwnProcessId());
  std::error_code error;
  const fs::path here = fs::current_path(error);
  const std::optional<Fault> fault =
      error ? Fault{"the working folder is gone", ""} : FaultOfFolder(here);
  if (!fault) {
    return {here / PathOf(name), ""};
  }
  const fs::path data = UserDataFolder(variables);
  const fs::path folder = data / "vextrel";
  fs::create_directories(folder, error);
  const std::optional<Fault> other =
      data.empty() ? Fault{"no other folder is known", ""} : FaultOfFolder(folder);
  if (other) {
    throw LaunchFailure(kExitOwnFailure,
                        Fault{"no log can be written: " + fault->text + ", and " + other->text,
                              "name a file with --log"});
  }
  return {folder / PathOf(name), fault->text};
}

}  // namespace vextrel::program
