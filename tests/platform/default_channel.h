// The channel where a log goes that nobody configured.
#ifndef VEXTREL_TESTS_PLATFORM_DEFAULT_CHANNEL_H
#define VEXTREL_TESTS_PLATFORM_DEFAULT_CHANNEL_H

#include <functional>
#include <string>

namespace vextrel_test {

// What the action writes to the debugger output on Windows, to standard error elsewhere.
[[nodiscard]] std::string CaptureDefaultChannel(const std::function<void()>& action);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PLATFORM_DEFAULT_CHANNEL_H
