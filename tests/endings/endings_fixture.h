// SPDX-License-Identifier: MIT
// Starts a consumer in a process of its own and reads the log that it leaves behind.
#ifndef VEXTREL_TESTS_ENDINGS_ENDINGS_FIXTURE_H
#define VEXTREL_TESTS_ENDINGS_ENDINGS_FIXTURE_H

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "endings/ending_consumer.h"
#include "support/process.h"
#include "support/proxy.h"

namespace vextrel_test {

inline constexpr Ending kDone = {Ending::Kind::Exited, kConsumerDone};
inline constexpr std::chrono::seconds kLimit{60};
inline constexpr const char* kCloseLine = "INFO GC_ERR_SUCCESS=GCCloseLib(void)";

// The line of a consumer's call of that number.
[[nodiscard]] std::string ConsumerLine(std::uintptr_t number);
// The line of a busy thread's call.
[[nodiscard]] std::string BusyLine(int thread);

class EndingsFixture : public ProxyFiles {
 protected:
  EndingsFixture() : EndingsFixture(std::string()) {}

  // A consumer's folder, with a configuration that logs to trace.log in it.
  [[nodiscard]] std::filesystem::path MakeFolder(const std::string& name) const;

  // Runs a consumer in the test's own folder and waits for it.
  [[nodiscard]] Ending Run(const std::string& ending, const std::string& company,
                           std::uintptr_t count) const;

  // Returns the lines of the log in the consumer's folder. A last line without its end is left out,
  // and is an error unless `mayBeCut`.
  [[nodiscard]] static std::vector<std::string> WholeLines(const std::filesystem::path& consumer,
                                                           bool mayBeCut = false);

  [[nodiscard]] static std::filesystem::path ConsumerProgram();

 private:
  explicit EndingsFixture(const std::string& name) : own(MakeFolder(name)) {}

 protected:
  const std::filesystem::path own;  // the folder
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ENDINGS_ENDINGS_FIXTURE_H
