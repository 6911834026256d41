// SPDX-License-Identifier: MIT
#include "launching/trace_folder.h"

#include <fstream>

#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

std::string Readable(const fs::path& path) {
  if (const std::optional<Fault> fault = FaultOfLetters(path)) {
    throw LaunchFailure(kExitOwnFailure, *fault);
  }
  return *NarrowPath(path);
}

// A folder that modules can be loaded from, and that a search path can name.
fs::path MakeFolder(const Variables& variables) {
  std::error_code ignored;
  for (const fs::path& parent : TemporaryFolders(variables)) {
    if (!fs::is_directory(parent, ignored) || !CanLoadModulesFrom(parent) ||
        TextOf(parent).find(kListSeparator, 0) != std::string::npos ||
        TextOf(parent).find("$(") != std::string::npos) {
      continue;
    }
    if (fs::path folder = MakePrivateFolder(fs::absolute(parent, ignored)); !folder.empty()) {
      return folder;
    }
  }
  throw LaunchFailure(kExitOwnFailure,
                      "no folder for the module can be made: is the disk of the temporary files "
                      "full, or forbidden to run programs?");
}

}  // namespace

std::string PropertyText(const LogStyle& style) {
  const std::string appender = "appender.file";
  std::string text =
      std::string("rootCategory=") + (style.misuseOnly ? "WARN" : "INFO") + ", file\n";
  if (style.withTiming) {
    text += "category.Vextrel.Timing=DEBUG\n";
  }
  text += appender + (style.rollingSize > 0 ? "=RollingFileAppender\n" : "=FileAppender\n");
  text += appender + ".fileName=${" + kLogVariable + "}\n";
  text += appender + ".append=true\n";
  if (style.rollingSize > 0) {
    text += appender + ".maxFileSize=" + std::to_string(style.rollingSize) + "\n";
    text += appender + ".maxBackupIndex=" + std::to_string(kRolledFiles) + "\n";
  }
  text += appender + ".layout=PatternLayout\n";
  text += appender + ".layout.ConversionPattern=";
  text += style.isFast ? "%r [%t] %p %m%n\n" : "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n\n";
  return text;
}

TraceFolder::TraceFolder(const fs::path& module, const std::string& properties,
                         const Variables& variables)
    : folder_(MakeFolder(variables)),
      producers_(folder_ / "producer"),
      properties_(folder_ / "trace.properties") {
  std::error_code error;
  fs::create_directory(producers_, error);
  if (!error) {
    fs::copy_file(module, producers_ / module.filename(), error);
  }
  std::ofstream file(properties_, std::ios::binary);
  file << properties;
  file.close();
  if (error || file.fail()) {
    Remove();
    throw LaunchFailure(kExitOwnFailure,
                        "'" + TextOf(folder_) + "' takes no copy of the module: is the disk full?");
  }
}

TraceFolder::~TraceFolder() {
  Remove();
}

bool TraceFolder::Remove() noexcept {
  std::error_code error;
  fs::remove_all(folder_, error);
  return !error;
}

std::optional<Fault> FaultOfLetters(const fs::path& path) {
  if (NarrowPath(path)) {
    return std::nullopt;
  }
  return Fault{"'" + TextOf(path) + "' has letters that the module can't read",
               "use a path in the letters of the system's code page"};
}

Variables TracedVariables(Variables variables, const TraceFolder& folder, const fs::path& target,
                          const fs::path& config, const fs::path& log) {
  constexpr const char* targetInReserve = "VEXTREL_TRACE_TARGET";
  variables.Set(kPathVariable, Readable(folder.ProducerFolder()));
  const std::string targetText = Readable(target);
  if (targetText.find("$(") == std::string::npos) {
    variables.Set(kTargetVariable, targetText);
  } else {
    // The module replaces one reference, and leaves alone what comes of it.
    variables.Set(targetInReserve, targetText);
    variables.Set(kTargetVariable, std::string("$(") + targetInReserve + ")");
  }
  variables.Set(kConfigVariable, Readable(config));
  if (!log.empty()) {
    variables.Set(kLogVariable, Readable(log));
  }
  return variables;
}

}  // namespace vextrel::program
