// SPDX-License-Identifier: MIT
#include "session/target_files.h"

#include "support/proxy.h"

namespace vextrel_test::session {

TargetFile::TargetFile(const std::filesystem::path& file, Exports exports, std::string_view missing)
    : path(file),
      exports_(exports),
      missing_(missing),
      module_(file),
      script(*module_.Find<GetTargetScriptFunction>("GetTargetScript")()) {}

bool TargetFile::Has(std::string_view function) const {
  return exports_ != Exports::None && function != missing_;
}

TargetFile& TargetFiles::Complete() {
  return files_.try_emplace("complete", ScriptedTargetPath(), TargetFile::Exports::All)
      .first->second;
}

TargetFile& TargetFiles::Empty() {
  return files_.try_emplace("empty", EmptyTargetPath(), TargetFile::Exports::None).first->second;
}

TargetFile& TargetFiles::Without(const std::string& function) {
  return files_
      .try_emplace(function, ScriptedTargetWithout(function), TargetFile::Exports::AllButOne,
                   function)
      .first->second;
}

}  // namespace vextrel_test::session
