// SPDX-License-Identifier: MIT
#include "bare_line.h"

#include <fstream>
#include <iterator>
#include <log4cpp/PropertyConfigurator.hh>
#include <string_view>

namespace vextrel_bench {
namespace {

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path);  // as text: line ends are one character everywhere
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

std::vector<std::string> MessagesOf(const Case& call, Session& session) {
  constexpr std::string_view begin = "GC_ERR_SUCCESS=";
  EmptyLogFile(session.LogFile());
  Consumer consumer(session, 0);
  consumer.SetPortSize(call.portSize);
  (consumer.*call.run)();
  const std::string text = ReadFile(session.LogFile());
  EmptyLogFile(session.LogFile());

  std::vector<std::string> messages;
  const std::size_t prefix = text.find(begin);
  std::size_t at = prefix;
  while (at != std::string::npos) {
    const std::size_t next = text.find(begin, at + 1);
    const std::size_t end = next == std::string::npos ? text.size() : next - prefix;
    messages.push_back(text.substr(at, end - 1 - at));
    at = next;
  }
  return messages;
}

BareLogger::BareLogger(Mode mode)
    : logFile_(ScratchFolder() / ("bare-" + std::string(ModeName(mode)) + ".log")),
      category_(log4cpp::Category::getInstance(std::string(ModeName(mode)) + ".Vextrel")) {
  std::filesystem::remove(logFile_);
  const std::string parent(ModeName(mode));
  const std::filesystem::path config =
      ScratchFolder() / ("bare-" + std::string(ModeName(mode)) + ".properties");
  std::ofstream(config) << "rootCategory=INFO\ncategory." << parent << "=INFO, file\nadditivity."
                        << parent << "=false\nappender.file=FileAppender\n"
                        << "appender.file.fileName=" << logFile_.string() << '\n'
                        << LayoutOf(mode);
  log4cpp::PropertyConfigurator::configure(config.string());
}

void EmptyLogFile(const std::filesystem::path& file) {
  if (std::filesystem::exists(file)) {
    std::filesystem::resize_file(file, 0);
  }
}

}  // namespace vextrel_bench
