// SPDX-License-Identifier: MIT
// Traces on a disk that takes no more. A limit of the size of files stands for it: any user can set
// that, and what writes beyond it is refused in the same way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>

#include "launching/log_file.h"
#include "program/trace_fixture.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

// No file of this process grows beyond that, as long as it lives.
class LimitedFiles {
 public:
  explicit LimitedFiles(rlim_t size) : actionBefore_(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{size, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~LimitedFiles() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    static_cast<void>(::signal(SIGXFSZ, actionBefore_));
  }
  LimitedFiles(const LimitedFiles&) = delete;
  LimitedFiles& operator=(const LimitedFiles&) = delete;

 private:
  sighandler_t actionBefore_;
  rlimit before_{};
};

class TraceOnAFullDisk : public Trace {
 protected:
  [[nodiscard]] std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }
  std::size_t leftovers = Leftovers();
};

TEST_F(TraceOnAFullDisk, IsRefusedIfTheLogGetsNoByte) {
  const std::size_t before = Files();
  const LimitedFiles limited(0);
  const ProgramResult run = Run(kTarget, {GRAB_PROGRAM});
  EXPECT_EQ(run.status, 125);
  EXPECT_THAT(run.errors, AllOf(StartsWith("vextrel: the log '"),
                                HasSubstr("trace1.log' can't be written: the disk of '"),
                                HasSubstr("' takes no more from this user: ")));
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(TraceOnAFullDisk, IsRefusedIfTheModuleHasNoRoom) {
  const std::size_t before = Files();
  const LimitedFiles limited(rlim_t{64} << 10U);
  const ProgramResult run = Run(kTarget, {GRAB_PROGRAM});
  EXPECT_EQ(run.status, 125);
  EXPECT_THAT(run.errors, AllOf(StartsWith("vextrel: '"),
                                HasSubstr("' takes no copy of the module: is the disk full?\n")));
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(TraceOnAFullDisk, SaysThatTheLogEndsTooSoonAndKeepsTheStatus) {
  const std::string script =
      "trap '' XFSZ; ulimit -f 8; '" + std::string(GRAB_PROGRAM) + "' --frames 20 && exit 9";
  const ProgramResult run = Run(kTarget, {"/bin/sh", "-c", script});
  EXPECT_EQ(run.status, 9) << run.errors;
  constexpr std::size_t eightBlocks = 4096;
  ASSERT_EQ(Log().size(), eightBlocks);
  EXPECT_NE(Log().back(), '\n');
  EXPECT_THAT(run.errors,
              HasSubstr("vextrel: the log ends in the middle of a line: its disk was full, or the "
                        "application ended while it wrote\n"));
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(TraceOnAFullDisk, SaysThatThePageHasNoRoom) {
  const std::string page = TextOf(folder / "page.html");
  const ProgramResult whole = Run(kTarget, {GRAB_PROGRAM});
  ASSERT_EQ(whole.status, 0) << whole.errors;
  const LimitedFiles limited(rlim_t{4} << 10U);
  const ProgramResult run = RunVextrel({"report", "--html", page, logFile});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.errors, HasSubstr("page.html' can't be written"));
}

}  // namespace
}  // namespace vextrel_test
