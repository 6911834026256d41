// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <stdexcept>

#include "platform/platform.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

using vextrel::platform::LastErrorGuard;

// Every call may change the last-error values, so they are read at once and compared later.
struct LastErrors {
  int errnoValue = errno;
  std::uint32_t systemValue = LastError();

  bool operator==(const LastErrors&) const = default;
};

// On Linux both are the same value.
void SetLastErrors(int errnoValue, std::uint32_t systemValue) {
  SetLastErrorValue(systemValue);
  errno = errnoValue;
}

LastErrors Errors(int errnoValue, std::uint32_t systemValue) {
  return {errnoValue, kOnWindows ? systemValue : static_cast<std::uint32_t>(errnoValue)};
}

TEST(LastErrorGuard, UndoesWhatHappenedDuringItsLife) {
  SetLastErrors(ENOENT, 1234);
  {
    const LastErrorGuard guard;
    SetLastErrors(ERANGE, 5678);
  }
  EXPECT_EQ(LastErrors(), Errors(ENOENT, 1234));
}

TEST(LastErrorGuard, ChangesNothingAtItsBeginning) {
  SetLastErrors(EINVAL, 87);
  std::optional<LastErrorGuard> guard;
  guard.emplace();
  EXPECT_EQ(LastErrors(), Errors(EINVAL, 87));
}

TEST(LastErrorGuard, KeepsSuccess) {
  SetLastErrors(0, 0);
  {
    const LastErrorGuard guard;
    SetLastErrors(ERANGE, 5);
  }
  EXPECT_EQ(LastErrors(), Errors(0, 0));
}

TEST(LastErrorGuard, KeepsTheLargestValues) {
  SetLastErrors(0x7FFFFFFF, 0xFFFFFFFF);
  {
    const LastErrorGuard guard;
    SetLastErrors(0, 0);
  }
  EXPECT_EQ(LastErrors(), Errors(0x7FFFFFFF, 0xFFFFFFFF));
}

TEST(LastErrorGuard, NestsWithOthers) {
  SetLastErrors(1, 11);
  LastErrors inside;
  {
    const LastErrorGuard outer;
    SetLastErrors(2, 22);
    {
      const LastErrorGuard inner;
      SetLastErrors(3, 33);
    }
    inside = LastErrors();
    SetLastErrors(4, 44);
  }
  const LastErrors outside;
  EXPECT_EQ(inside, Errors(2, 22));
  EXPECT_EQ(outside, Errors(1, 11));
}

TEST(LastErrorGuard, WorksWhenAnExceptionPassesIt) {
  SetLastErrors(EACCES, 5);
  LastErrors caught;
  try {
    const LastErrorGuard guard;
    SetLastErrors(ERANGE, 1);
    throw std::runtime_error("passes");
  } catch (const std::runtime_error&) {
    caught = LastErrors();
  }
  EXPECT_EQ(caught, Errors(EACCES, 5));
}

}  // namespace
}  // namespace vextrel_test
