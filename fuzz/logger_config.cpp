// SPDX-License-Identifier: MIT
// Whole configuration files, from the file to the logged line: through the logger setup as
// GCInitLib calls it and on through log4cpp.
#include <fcntl.h>
#include <sanitizer/lsan_interface.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <log4cpp/Category.hh>
#include <log4cpp/HierarchyMaintainer.hh>
#include <log4cpp/Priority.hh>
#include <optional>
#include <sstream>
#include <string>

#include "calllog/line_log.h"
#include "calllog/logger_setup.h"
#include "check.h"
#include "harmless_config.h"
#include "scratch_folder.h"

namespace {

using vextrel_fuzz::Check;
using vextrel_fuzz::CheckText;

constexpr const char* kVariable = "GENICAM_GENTL64_VEXTREL_LOG_CONFIG";
constexpr const char* kFile = "log.properties";

// What the default channel says, without the seconds that each of its lines begins with.
class Channel {
 public:
  Channel() : cerrBuffer_(std::cerr.rdbuf(text_.rdbuf())), coutBuffer_(std::cout.rdbuf(&sink_)) {}
  ~Channel() {
    std::cerr.rdbuf(cerrBuffer_);
    std::cout.rdbuf(coutBuffer_);
  }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  [[nodiscard]] std::string TakeText() {
    std::string text;
    std::istringstream lines(text_.str());
    for (std::string line; std::getline(lines, line);) {
      text += line.substr(std::min(line.find(' '), line.size())) + "\n";
    }
    text_.str({});
    return text;
  }

 private:
  std::ostringstream text_;
  std::stringbuf sink_;
  std::streambuf* cerrBuffer_;
  std::streambuf* coutBuffer_;
};

// The name in the first line with a reference that leads nowhere: the only variables are those that
// the fuzzer has set.
std::optional<std::string> UnresolvableName(const std::string& text) {
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string line = text.substr(begin, end - begin);
    begin = end + 1;
    const std::size_t open = line.find("$(");
    const std::size_t close = open == std::string::npos ? open : line.find(')', open);
    if (line.substr(0, 1) == "#" || close == std::string::npos) {
      continue;
    }
    const std::string name = line.substr(open + 2, close - open - 2).c_str();
    if (name != "SET" && name != kVariable) {
      return name;
    }
  }
  return std::nullopt;
}

std::string Refusal(const std::string& reason) {
  return " ERROR  : Loading logger configuration failed. error = '" + reason + "'\n";
}

// A refused configuration leaves the default appender alone on the root, at ERROR.
void CheckDefault() {
  log4cpp::Category& root = vextrel::GetRootLogger();
  Check(root.getPriority() == 300, "ERROR after a refusal");
  const auto appenders = root.getAllAppenders();
  Check(appenders.size() == 1, "one appender after a refusal");
  CheckText((*appenders.begin())->getName(), "default");
}

void Configure(const std::string& text, Channel& channel) {
  const std::string loading = " INFO  : Loading logger parameter file 'log.properties'\n";
  vextrel::ConfigureLogging();
  const std::string said = channel.TakeText();
  if (const auto name = UnresolvableName(text)) {
    const std::string reason = "Environment variable '" + *name + "' not found";
    CheckText(said, loading + Refusal(reason.substr(0, 255)));
    CheckDefault();
  } else if (said != loading) {
    Check(said.starts_with(loading + " ERROR  : Loading logger configuration failed. error = '"),
          "nothing else is said");
    CheckDefault();
    // And tried again.
    vextrel::ConfigureLogging();
    CheckText(channel.TakeText(), said);
    CheckDefault();
  }
}

// Lines of every priority that the library uses, to its own category and to the root.
void Log() {
  using namespace vextrel::literals;
  constexpr auto line = "%s"_line;
  const std::string message = "a message";
  for (log4cpp::Category* category : {&vextrel::GetLogger("Vextrel"), &vextrel::GetRootLogger()}) {
    vextrel::ReportError(*category, line, message);
    vextrel::ReportWarn(*category, line, message);
    vextrel::ReportInfo(*category, line, message);
  }
}

// The first file descriptor that is free when nothing is configured.
int FirstFreeDescriptor() {
  const int descriptor = ::open(".", O_RDONLY);
  ::close(descriptor);
  return descriptor;
}

// Puts log4cpp back to where a process begins.
void Reset() {
  vextrel::ShutdownLogging();
  log4cpp::Category::shutdownForced();
  log4cpp::HierarchyMaintainer::getDefaultMaintainer().deleteAllCategories();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
  // log4cpp forgets the appenders of a configuration that it refuses.
  __lsan_disable();
  ::clearenv();
  ::setenv("SET", "value", 1);
  ::setenv(kVariable, kFile, 1);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const vextrel_fuzz::ScratchFolder scratch;
  static const int firstFree = FirstFreeDescriptor();
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  if (!vextrel_fuzz::IsHarmless(text)) {
    return -1;
  }
  scratch.Empty();
  std::ofstream(kFile, std::ios::binary) << text;
  {
    Channel channel;
    Configure(text, channel);
    Log();
    Reset();
  }
  // Forgotten appenders keep their files open.
  ::close_range(static_cast<unsigned>(firstFree), UINT_MAX, 0);
  return 0;
}
