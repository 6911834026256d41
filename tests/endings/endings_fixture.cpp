#include "endings/endings_fixture.h"

#include <cstdlib>
#include <ostream>

namespace vextrel_test {

void PrintTo(const Ending& ending, std::ostream* out) {
  switch (ending.kind) {
    case Ending::Kind::kExited:
      *out << "exited with " << ending.code;
      break;
    case Ending::Kind::kKilled:
      *out << "killed by signal " << ending.code;
      break;
    case Ending::Kind::kTooLate:
      *out << "did not end in time";
      break;
    case Ending::Kind::kNotStarted:
      *out << "could not be started";
      break;
  }
}

bool LongTests() {
  const char* value = std::getenv("VEXTREL_LONG_TESTS");
  return value != nullptr && std::string(value) == "1";
}

std::vector<std::string> StartLines() {
  return {"INFO Loading GenTL Producer '" + ScriptedTargetPath().string() + "'",
          "INFO GenTL producer file version: '0.0.0.0'", "INFO GC_ERR_SUCCESS=GCInitLib(void)"};
}

std::string CallLine(std::uintptr_t number) {
  return "INFO GC_ERR_SUCCESS=EventFlush(hEvent=0x" + Hex16(kFirstNumber + number) + ")";
}

std::string BusyLine(int thread) {
  return "INFO GC_ERR_SUCCESS=EventKill(hEvent=0x" +
         Hex16(kBusyHandle + static_cast<std::uintptr_t>(thread)) + ")";
}

std::filesystem::path EndingsFixture::ConsumerProgram() {
  return ProgramFolder() / (kOnWindows ? "ending_consumer.exe" : "ending_consumer");
}

std::filesystem::path EndingsFixture::MakeFolder(const std::string& name) const {
  const std::filesystem::path made = name.empty() ? folder() : folder() / name;
  std::filesystem::create_directories(made);
  WriteFile(made / kConfigFile,
            "rootCategory=INFO, file\n"
            "appender.file=FileAppender\n"
            "appender.file.fileName=" +
                (made / "trace.log").string() +
                "\n"
                "appender.file.layout=PatternLayout\n"
                "appender.file.layout.ConversionPattern=%p %m%n\n");
  return made;
}

Ending EndingsFixture::Run(const std::string& ending, const std::string& company,
                           std::uintptr_t count) const {
  return Child(ConsumerProgram(), {own_.string(), ending, company, std::to_string(count)})
      .WaitFor(kLimit);
}

std::vector<std::string> EndingsFixture::WholeLines(const std::filesystem::path& consumer,
                                                    bool mayBeCut) {
  std::string text = ReadFile(consumer / "trace.log");
  if (text.empty() || text.back() != '\n') {
    EXPECT_TRUE(mayBeCut) << "the last line is not whole: " << text.substr(text.rfind('\n') + 1);
    text.erase(text.rfind('\n') + 1);
  }
  return SplitLines(text);
}

}  // namespace vextrel_test
