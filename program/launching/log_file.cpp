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
      throw LaunchFailure(kExitOwnFailure, "the log '" + named + "' isn't a file: give a new name");
    }
    if (fs::file_size(path, error) > 0) {
      throw LaunchFailure(kExitOwnFailure, "the log '" + named +
                                               "' exists already: remove it, or give another name");
    }
  }
  if (const std::string why = WhyNotWritable(path.parent_path()); !why.empty()) {
    throw LaunchFailure(kExitOwnFailure, "the log '" + named + "' can't be written: " + why);
  }
  return {path, ""};
}

}  // namespace

std::uint64_t SpaceIn(const fs::path& folder) {
  std::error_code error;
  const fs::space_info space = fs::space(folder, error);
  return error ? UINT64_MAX : space.available;
}

std::string WhyNotWritable(const fs::path& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    return "there's no folder '" + TextOf(folder) + "'";
  }
  const fs::path probe = folder / (".vextrel-" + std::to_string(OwnProcessId()));
  {
    std::ofstream file(probe, std::ios::binary);
    if (!file.is_open()) {
      return "this user may not write to the folder '" + TextOf(folder) + "'";
    }
  }
  fs::remove(probe, error);
  if (SpaceIn(folder) < kLeastSpace) {
    return "the disk of '" + TextOf(folder) + "' is full";
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
  const std::string why = error ? "the working folder is gone" : WhyNotWritable(here);
  if (why.empty()) {
    return {here / PathOf(name), ""};
  }
  const fs::path data = UserDataFolder(variables);
  const fs::path folder = data / "vextrel";
  fs::create_directories(folder, error);
  if (const std::string other = data.empty() ? "no other folder is known" : WhyNotWritable(folder);
      !other.empty()) {
    throw LaunchFailure(kExitOwnFailure, "no log can be written: " + why + ", and " + other +
                                             "; name a file with --log");
  }
  return {folder / PathOf(name), why};
}

}  // namespace vextrel::program
