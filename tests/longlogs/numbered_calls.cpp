// SPDX-License-Identifier: MIT
#include "longlogs/numbered_calls.h"

#include <array>
#include <cerrno>

namespace vextrel_test {
namespace {

struct NamedResult {
  GC_ERROR result;
  const char* name;
};
constexpr std::array<NamedResult, 5> kResults = {{{0, "GC_ERR_SUCCESS"},
                                                  {-1001, "GC_ERR_ERROR"},
                                                  {-1010, "GC_ERR_IO"},
                                                  {-1011, "GC_ERR_TIMEOUT"},
                                                  {-1012, "GC_ERR_ABORT"}}};

// Handles count up from here.
constexpr std::uintptr_t kFirstHandle = 0x10000;

const NamedResult& ResultOf(std::uintptr_t number) {
  return kResults.at(number % kResults.size());
}
int ErrnoOf(std::uintptr_t number) {
  return static_cast<int>(1 + number % 40);
}
// On Linux that is errno, too.
std::uint32_t LastErrorOf(std::uintptr_t number) {
  return static_cast<std::uint32_t>(kOnWindows ? 1000 + number % 70 : 1 + number % 40);
}

GC_ERROR Answer(EVENT_HANDLE handle) {
  const std::uintptr_t number = reinterpret_cast<std::uintptr_t>(handle) - kFirstHandle;
  errno = ErrnoOf(number);
  SetLastErrorValue(LastErrorOf(number));
  return ResultOf(number).result;
}

}  // namespace

std::string CallLine(std::uintptr_t number) {
  return std::string("INFO ") + ResultOf(number).name + "=EventFlush(hEvent=0x" +
         Hex16(kFirstHandle + number) + ")";
}

std::vector<std::string> CallLines(std::uintptr_t first, std::uintptr_t end) {
  std::vector<std::string> lines;
  for (std::uintptr_t number = first; number < end; ++number) {
    lines.push_back(CallLine(number));
  }
  return lines;
}

std::string Text(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + '\n';
  }
  return text;
}

NumberedCalls::NumberedCalls() {
  UseTarget(ScriptedTargetPath());
  target_.Script().functions.EventFlush = [](EVENT_HANDLE handle) { return Answer(handle); };
}

NumberedCalls::~NumberedCalls() {
  Stop();
}

void NumberedCalls::UseAppender(const std::string& type, const std::filesystem::path& file,
                                const std::vector<std::string>& properties) const {
  UseLog({.file = file, .rootCategory = "INFO, file", .appender = type, .properties = properties});
}

void NumberedCalls::Start() {
  LoadProxy();
  ASSERT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
}

void NumberedCalls::Stop() {
  if (proxy.GCCloseLib != nullptr) {
    proxy.GCCloseLib();
  }
  UnloadProxy();
}

void NumberedCalls::Call(std::uintptr_t first, std::uintptr_t end) const {
  for (std::uintptr_t number = first; number < end; ++number) {
    errno = 0;
    SetLastErrorValue(0);
    const GC_ERROR result = proxy.EventFlush(Handle(kFirstHandle + number));
    // Before anything else changes them.
    const int error = errno;
    const std::uint32_t lastError = LastError();
    ASSERT_EQ(result, ResultOf(number).result) << number;
    ASSERT_EQ(lastError, LastErrorOf(number)) << number;
    ASSERT_EQ(error, ErrnoOf(number)) << number;
  }
}

}  // namespace vextrel_test
