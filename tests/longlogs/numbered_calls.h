// SPDX-License-Identifier: MIT
// Numbered calls, whose lines can be told apart, while something happens to the log.
#ifndef VEXTREL_TESTS_LONGLOGS_NUMBERED_CALLS_H
#define VEXTREL_TESTS_LONGLOGS_NUMBERED_CALLS_H

#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/proxy.h"

namespace vextrel_test {

// The line of the call of that number.
[[nodiscard]] std::string CallLine(std::uintptr_t number);
// The lines of the calls [first, end).
[[nodiscard]] std::vector<std::string> CallLines(std::uintptr_t first, std::uintptr_t end);
// The lines as a file holds them.
[[nodiscard]] std::string Text(const std::vector<std::string>& lines);

// A proxy whose target varies the result and the last error from call to call.
class NumberedCalls : public ProxyFiles {
 protected:
  NumberedCalls();
  ~NumberedCalls() override;

  // Logs "PRIORITY message" to this kind of appender with these properties.
  void UseAppender(const std::string& type, const std::filesystem::path& file,
                   const std::vector<std::string>& properties = {}) const;
  // Loads the proxy and initialises it.
  void Start();
  // Closes and unloads it.
  void Stop();

  // Makes the calls [first, end), and expects the target's own result and last error of each.
  void Call(std::uintptr_t first, std::uintptr_t end) const;

 private:
  HeldTarget target_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LONGLOGS_NUMBERED_CALLS_H
