// Calls that a consumer numbers, so that their lines can be told apart, while something happens to
// the log that they go to.
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

// The lines of GCInitLib.
[[nodiscard]] std::vector<std::string> StartLines();
// The line of the call of that number.
[[nodiscard]] std::string CallLine(std::uintptr_t number);
// Those of the calls from `first` up to, but without, `end`.
[[nodiscard]] std::vector<std::string> CallLines(std::uintptr_t first, std::uintptr_t end);

// A proxy whose target answers each numbered call with another result and last error.
class NumberedCalls : public ProxyFiles {
 protected:
  NumberedCalls();
  ~NumberedCalls() override;

  // Logs with this appender and these properties of it, for example "maxFileSize=1000", and "%p
  // %m%n".
  void UseAppender(const std::string& type, const std::filesystem::path& file,
                   const std::vector<std::string>& properties = {}) const;
  // Loads the proxy and initialises it.
  void Start();
  // Closes it and gives it back to the loader.
  void Stop();

  // Makes the calls from `first` up to, but without, `end`, and expects of each the target's own
  // result and last error.
  void Call(std::uintptr_t first, std::uintptr_t end) const;

 private:
  Module target_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_LONGLOGS_NUMBERED_CALLS_H
