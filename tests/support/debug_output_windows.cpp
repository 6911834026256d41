// SPDX-License-Identifier: MIT
#include <windows.h>

#include "support/debug_output.h"

namespace vextrel_test {
namespace {

std::string recorded;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

// OutputDebugStringA raises this exception for a debugger. Its second argument is the text.
constexpr DWORD kDebugText = 0x40010006;

LONG CALLBACK Record(EXCEPTION_POINTERS* exception) {
  const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
  if (record.ExceptionCode != kDebugText) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  recorded += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
  return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

DebugOutput::DebugOutput() : state_(::AddVectoredExceptionHandler(1, Record)) {
  recorded.clear();
}

DebugOutput::~DebugOutput() {
  ::RemoveVectoredExceptionHandler(state_);
}

std::string DebugOutput::Text() const {
  return recorded;
}

}  // namespace vextrel_test
