// SPDX-License-Identifier: MIT
// A log that rolls while calls go on.
#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <thread>

#include "longlogs/numbered_calls.h"
#include "longlogs/rolling_files.h"

namespace vextrel_test {
namespace {

struct Limits {
  std::size_t maxFileSize;
  std::size_t maxBackupIndex;
};

class Rolling : public NumberedCalls {
 protected:
  void UseLimits(const Limits& limits) const {
    UseAppender("RollingFileAppender", LogFile(),
                {"maxFileSize=" + std::to_string(limits.maxFileSize),
                 "maxBackupIndex=" + std::to_string(limits.maxBackupIndex)});
  }

  // The names behind "trace.log", and what the files hold.
  [[nodiscard]] std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    const std::string name = LogFile().filename().string();
    for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
      const std::string found = entry.path().filename().string();
      if (found.starts_with(name)) {
        files[found.substr(name.size())] = ReadFile(entry.path());
      }
    }
    return files;
  }
};

class RollingAt : public Rolling, public ::testing::WithParamInterface<Limits> {};

TEST_P(RollingAt, KeepsTheLastLinesWholeAndInOrder) {
  constexpr std::uintptr_t calls = 2000;
  UseLimits(GetParam());
  Start();
  Call(0, calls);
  RollingFiles expected(GetParam().maxFileSize, GetParam().maxBackupIndex);
  expected.Write(StartLines());
  expected.Write(CallLines(0, calls));
  EXPECT_EQ(expected.Contents().size(), GetParam().maxBackupIndex + 1);
  EXPECT_EQ(Files(), expected.Contents());
}

INSTANTIATE_TEST_SUITE_P(All, RollingAt,
                         ::testing::Values(Limits{20000, 3}, Limits{1000, 12}, Limits{300, 1},
                                           Limits{1, 2}),
                         [](const auto& each) {
                           return std::to_string(each.param.maxFileSize) + "_" +
                                  std::to_string(each.param.maxBackupIndex);
                         });

// The limit is reached by the very line, or missed by one byte.
TEST_F(Rolling, RollsAsSoonAsTheLimitIsReached) {
  const std::size_t lineEnd = kOnWindows ? 2 : 1;
  std::size_t size = 0;
  for (const std::string& line : StartLines()) {
    size += line.size() + lineEnd;
  }
  for (const std::string& line : CallLines(0, 10)) {
    size += line.size() + lineEnd;
  }
  for (const std::size_t limit : {size, size + 1}) {
    for (const auto& [suffix, content] : Files()) {
      std::filesystem::remove(LogFile().string() + suffix);
    }
    UseLimits({limit, 1});
    Start();
    Call(0, 10);
    EXPECT_EQ(Files().size(), limit == size ? 2U : 1U);
    Stop();
  }
}

TEST_F(Rolling, ContinuesTheFilesOfAnEarlierDay) {
  const Limits limits = {3000, 2};
  RollingFiles expected(limits.maxFileSize, limits.maxBackupIndex);
  UseLimits(limits);
  for (std::uintptr_t day = 0; day < 4; ++day) {
    Start();
    Call(70 * day, 70 * (day + 1));
    Stop();
    expected.Write(StartLines());
    expected.Write(CallLines(70 * day, 70 * (day + 1)));
    expected.Write("INFO GC_ERR_SUCCESS=GCCloseLib(void)");
    EXPECT_EQ(Files(), expected.Contents());
  }
}

TEST_F(Rolling, LosesNothingWhenThreadsCallAtTheSameTime) {
  constexpr std::uintptr_t calls = 500;
  constexpr std::size_t maxFileSize = 8000;
  UseLimits({maxFileSize, 99});
  Start();
  std::array<std::thread, 4> threads;
  for (std::uintptr_t index = 0; index < threads.size(); ++index) {
    threads[index] = std::thread([this, index] { Call(index * calls, (index + 1) * calls); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }

  std::vector<std::string> lines;
  const auto files = Files();
  EXPECT_GT(files.size(), 10U);
  // The oldest has the highest number, the newest none.
  for (auto file = files.rbegin(); file != files.rend(); ++file) {
    std::ranges::copy(SplitLines(file->second), std::back_inserter(lines));
    EXPECT_TRUE(file->second.empty() || file->second.back() == '\n') << file->first;
  }
  for (std::uintptr_t index = 0; index < threads.size(); ++index) {
    const std::vector<std::string> expected = CallLines(index * calls, (index + 1) * calls);
    const std::set<std::string> theirs(expected.begin(), expected.end());
    std::vector<std::string> found;
    std::ranges::copy_if(lines, std::back_inserter(found),
                         [&](const std::string& line) { return theirs.contains(line); });
    EXPECT_EQ(found, expected);
  }
  EXPECT_EQ(lines.size(), StartLines().size() + threads.size() * calls);
}

}  // namespace
}  // namespace vextrel_test
