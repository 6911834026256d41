#include "calllog/logger_setup.h"

#include <PropertyConfiguratorImpl.hh>
#include <exception>
#include <log4cpp/BasicLayout.hh>
#include <log4cpp/Priority.hh>
#include <memory>
#include <sstream>

#include "calllog/line_log.h"
#include "lifecycle/environment.h"
#include "platform/platform.h"

namespace vextrel {
namespace {

bool loggingConfigured = false;

// References are tested, not substituted: log4cpp gets the text as it stands in the file.
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
    // A missing variable or file has been reported, and the attempt counts as done.
    [[maybe_unused]] const bool loaded = LoadLogConfigFromEnv();
    loggingConfigured = true;
  } catch (const std::exception& failure) {
    ApplyDefaultLogConfig();
    LogError(GetRootLogger(), "Loading logger configuration failed. error = '%s'", failure.what());
  }
}

void ApplyDefaultLogConfig() {
  auto layout = std::make_unique<log4cpp::BasicLayout>();
  auto appender = platform::MakeDefaultAppender("default");
  appender->setLayout(layout.release());
  log4cpp::Category& root = GetRootLogger();
  root.removeAllAppenders();
  root.addAppender(appender.release());
  root.setPriority(log4cpp::Priority::ERROR);
}

bool LoadLogConfigFromEnv() {
  const std::string path = ReadEnvironmentVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG");
  if (path.empty()) {
    LogError(GetRootLogger(),
             "Vextrel Environment variable GENICAM_GENTL64_VEXTREL_LOG_CONFIG not found!");
    return false;
  }
  return LoadLogConfigFile(ExpandEnvReference(path, false));
}

bool LoadLogConfigFile(const std::string& path) {
  CheckReference(path);
  std::ifstream file = platform::OpenTextFile(path);
  if (!file.is_open()) {
    LogError(GetRootLogger(), "Cannot open logger parameter file '%s'", path);
    return false;
  }
  LogInfo(GetRootLogger(), "Loading logger parameter file '%s'", path);
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
  log4cpp::PropertyConfiguratorImpl().doConfigure(properties);
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
