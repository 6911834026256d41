// Starting a consumer in a process of its own, and judging what it leaves in its log.
#ifndef VEXTREL_TESTS_ENDINGS_ENDINGS_FIXTURE_H
#define VEXTREL_TESTS_ENDINGS_ENDINGS_FIXTURE_H

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "endings/child.h"
#include "endings/ending_consumer.h"
#include "support/proxy.h"

namespace vextrel_test {

inline constexpr Ending kDone = {Ending::Kind::kExited, kConsumerDone};
inline constexpr std::chrono::seconds kLimit{60};
inline constexpr const char* kCloseLine = "INFO GC_ERR_SUCCESS=GCCloseLib(void)";

// Full numbers of rounds where the environment asks for them.
[[nodiscard]] bool LongTests();

// The lines of GCInitLib.
[[nodiscard]] std::vector<std::string> StartLines();
// The line of a consumer's call of that number.
[[nodiscard]] std::string CallLine(std::uintptr_t number);
// The line of a busy thread's call.
[[nodiscard]] std::string BusyLine(int thread);

class EndingsFixture : public ProxyFiles {
 protected:
  EndingsFixture() : EndingsFixture(std::string()) {}

  // A consumer's folder, with a configuration that logs to trace.log in it.
  [[nodiscard]] std::filesystem::path MakeFolder(const std::string& name) const;

  // Runs a consumer to its end in the test's own folder.
  [[nodiscard]] Ending Run(const std::string& ending, const std::string& company,
                           std::uintptr_t count) const;

  // The log of the consumer in `consumer`, line by line. A line that lacks its end is an error
  // unless `mayBeCut`; it is left out then.
  [[nodiscard]] static std::vector<std::string> WholeLines(const std::filesystem::path& consumer,
                                                           bool mayBeCut = false);

  [[nodiscard]] static std::filesystem::path ConsumerProgram();

 private:
  explicit EndingsFixture(const std::string& name) : own_(MakeFolder(name)) {}

 protected:
  const std::filesystem::path own_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ENDINGS_ENDINGS_FIXTURE_H
