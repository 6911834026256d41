#include <iostream>
#include <sstream>

#include "platform/default_channel.h"

namespace vextrel_test {

std::string CaptureDefaultChannel(const std::function<void()>& action) {
  std::ostringstream captured;
  std::streambuf* const before = std::cerr.rdbuf(captured.rdbuf());
  action();
  std::cerr.rdbuf(before);
  return captured.str();
}

}  // namespace vextrel_test
