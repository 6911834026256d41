// SPDX-License-Identifier: MIT
#include "endings/endings_fixture.h"

namespace vextrel_test {

std::string ConsumerLine(std::uintptr_t number) {
  return "INFO GC_ERR_SUCCESS=EventFlush(hEvent=0x" + Hex16(kFirstNumber + number) + ")";
}

std::string BusyLine(int thread) {
  return "INFO GC_ERR_SUCCESS=EventKill(hEvent=0x" +
         Hex16(kBusyHandle + static_cast<std::uintptr_t>(thread)) + ")";
}

std::filesystem::path EndingsFixture::ConsumerProgram() {
  return ProgramFolder() / (std::string(kConsumerName) + (kOnWindows ? ".exe" : ""));
}

std::filesystem::path EndingsFixture::MakeFolder(const std::string& name) const {
  const std::filesystem::path made = name.empty() ? Folder() : Folder() / name;
  std::filesystem::create_directories(made);
  WriteFile(made / kConfigFile,
            LogConfig{.file = made / "trace.log", .rootCategory = "INFO, file"}.Text());
  return made;
}

Ending EndingsFixture::Run(const std::string& ending, const std::string& company,
                           std::uintptr_t count) const {
  return Process(ConsumerProgram(), {own.string(), ending, company, std::to_string(count)})
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
