// SPDX-License-Identifier: MIT
// The scripted targets that a session binds the proxy to.
#ifndef VEXTREL_TESTS_SESSION_TARGET_FILES_H
#define VEXTREL_TESTS_SESSION_TARGET_FILES_H

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "support/system.h"
#include "support/target_script.h"

namespace vextrel_test::session {

// A target's file, loaded as long as the object lives, whatever the proxy does with it.
class TargetFile {
 public:
  enum class Exports { All, None, AllButOne };

  TargetFile(const std::filesystem::path& file, Exports exports, std::string_view missing = {});

  [[nodiscard]] bool Has(std::string_view function) const;

  const std::filesystem::path path;

 private:
  const Exports exports_;
  const std::string missing_;
  const Module module_;

 public:
  TargetScript& script;
};

// Loads what it is asked for, and keeps it.
class TargetFiles {
 public:
  [[nodiscard]] TargetFile& Complete();
  [[nodiscard]] TargetFile& Empty();
  [[nodiscard]] TargetFile& Without(const std::string& function);

 private:
  std::map<std::string, TargetFile> files_;
};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_TARGET_FILES_H
