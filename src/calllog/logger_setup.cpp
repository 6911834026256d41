// SPDX-License-Identifier: MIT
#include "calllog/logger_setup.h"

#include <exception>
#include <log4cpp/BasicLayout.hh>
#include <log4cpp/Priority.hh>
#include <memory>
#include <sstream>

#include "backend/default_appender.h"
#include "backend/log4cpp_internals.h"
#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "environment/environment.h"
#include "platform/platform.h"

namespace vextrel {
namespace {

bool loggingConfigured = false;

// Kept: 8. References are checked, not expanded: log4cpp gets the text as it is in the file.
void CheckReference(const std::string& text) {
  [[maybe_unused]] const std::string expanded = ExpandEnvReference(text, false);
}

}  // namespace

void ConfigureLogging() {
  if (loggingConfigured) {
    return;
  }
  try {
    ApplyDefaultLogConfig();
    GetRootLogger().setPriority(log4cpp::Priority::INFO);
    // Kept: 9. A missing variable or file is reported, and counts as configured.
    [[maybe_unused]] const bool loaded = LoadLogConfigFromEnv();
    loggingConfigured = true;
  } catch (const std::exception& failure) {
    ApplyDefaultLogConfig();
    ReportError(GetRootLogger(), report::kConfigurationFailed, failure.what());
  }
}

void ApplyDefaultLogConfig() {
  auto layout = std::make_unique<log4cpp::BasicLayout>();
  auto appender = backend::MakeDefaultAppender("default");
  appender->setLayout(layout.release());
  log4cpp::Category& root = GetRootLogger();
  root.removeAllAppenders();
  root.addAppender(appender.release());
  root.setPriority(log4cpp::Priority::ERROR);
}

bool LoadLogConfigFromEnv() {
  const std::string path = ReadEnvironmentVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG");
  if (path.empty()) {
    ReportError(GetRootLogger(), report::kConfigVariableNotFound);
    return false;
  }
  return LoadLogConfigFile(ExpandEnvReference(path, false));
}

bool LoadLogConfigFile(const std::string& path) {
  CheckReference(path);
  std::ifstream file = platform::OpenTextFile(path);
  if (!file.is_open()) {
    ReportError(GetRootLogger(), report::kConfigFileNotOpened, path);
    return false;
  }
  ReportInfo(GetRootLogger(), report::kLoadingConfigFile, path);
  std::string text;
  std::string line;
  while (file.good()) {
    std::getline(file, line);
    if (!line.starts_with('#')) {
      CheckReference(line);
    }
    text.append(line).append("\n");
  }
  std::istringstream properties(text);
  backend::ApplyProperties(properties);
  return true;
}

log4cpp::Category& GetLogger(const char* name) {
  return log4cpp::Category::getInstance(name);
}

log4cpp::Category& GetRootLogger() {
  return log4cpp::Category::getRoot();
}

void ShutdownLogging() {
  if (loggingConfigured) {
    log4cpp::Category::shutdown();
    loggingConfigured = false;
  }
}

}  // namespace vextrel
