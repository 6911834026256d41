#include <windows.h>

#include "platform/default_channel.h"

namespace vextrel_test {
namespace {

// What OutputDebugStringA raises, and debuggers catch.
constexpr DWORD kDebugText = 0x40010006;

std::string* captured = nullptr;

LONG CALLBACK TakeDebugText(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode != kDebugText || captured == nullptr) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  captured->append(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
  return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

std::string CaptureDefaultChannel(const std::function<void()>& action) {
  std::string text;
  captured = &text;
  void* const handler = ::AddVectoredExceptionHandler(1, TakeDebugText);
  action();
  ::RemoveVectoredExceptionHandler(handler);
  captured = nullptr;
  return text;
}

}  // namespace vextrel_test
