// SPDX-License-Identifier: MIT
// Calling the proxy's functions as a consumer does, and judging the lines that the calls write.
#ifndef VEXTREL_TESTS_EXPORTS_EXPORTS_FIXTURE_H
#define VEXTREL_TESTS_EXPORTS_EXPORTS_FIXTURE_H

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "model/log.h"
#include "model/messages.h"
#include "support/proxy.h"

namespace vextrel_test {

using Functions = GenTLFunctions;

// `text` with its first "{}" replaced.
[[nodiscard]] std::string FillFirst(std::string_view text, std::string_view value);

[[nodiscard]] inline std::string Fill(std::string_view text) {
  return std::string(text);
}
// `text` with each "{}" replaced by the next value, which is a text: see Hex16 for addresses.
template <typename... Values>
[[nodiscard]] std::string Fill(std::string_view text, std::string_view value, Values... values) {
  return Fill(FillFirst(text, value), std::string_view(values)...);
}

// Whether a line is the expected one. Digits that no consumer can know are written as
// "<address>" (sixteen upper-case hexadecimal digits), "<hex>" (lower-case ones without padding) or
// "<decimal>", and are not all zero; everything else has to be equal.
[[nodiscard]] bool LineMatches(const std::string& line, const std::string& expected);

MATCHER_P(IsLine, expected, std::string(negation ? "isn't " : "is ") + expected) {
  static_cast<void>(result_listener);
  return LineMatches(arg, expected);
}

// All lines, in that order.
template <typename... Expected>
[[nodiscard]] auto Lines(const Expected&... expected) {
  return ::testing::ElementsAre(IsLine(std::string(expected))...);
}

// A result and the name that the log has for it.
struct NamedResult {
  GC_ERROR result;
  const char* name;
};

// The variables of a consumer's info query, with what an uninitialised one may hold.
struct InfoQuery {
  INFO_DATATYPE type = -1;
  std::array<char, 32> buffer{};
  std::size_t size = 0xCDCDCDCDCDCDCDCD;

  // What the target makes of them.
  void AnswerText(std::string_view text);
  // As for a query of the size alone.
  void AnswerSize(INFO_DATATYPE answeredType, std::size_t answeredSize);
};

inline const std::string kNotOpened = model::Error(model::kNoTransportLayer);

// One call and what the log has to show of it.
struct ExpectedLine {
  // What the target does to the consumer's variables.
  std::function<void()> target = [] {};
  // The line from the function's name on; "{2}" is the second argument's address.
  std::string line;
  // The whole lines that follow when the call succeeds and no transport layer is open.
  std::vector<std::string> after = {};
};

class ExportsTest : public BoundProxy {
 protected:
  ~ExportsTest() override { action_ = nullptr; }

  // The target runs `action` and returns `result` when the function of `slot` is called.
  template <typename... Parameters>
  void TargetDoes(
      GC_ERROR (GC_CALLTYPE* Functions::*slot)(Parameters...), GC_ERROR result,
      std::function<void()> action = [] {}) {
    action_ = std::move(action);
    result_ = result;
    script.functions.*slot = [](Parameters...) -> GC_ERROR {
      action_();
      return result_;
    };
  }

  // Calls the function with one result after the other, a success and failures with and without a
  // name: each call writes the expected line behind the result's name.
  template <typename... Parameters, typename... Arguments>
  void ExpectLine(const ExpectedLine& expected,
                  GC_ERROR (GC_CALLTYPE* Functions::*slot)(Parameters...), Arguments... arguments) {
    std::string line = expected.line;
    int number = 0;
    ((line = FillArgument(line, ++number, arguments)), ...);
    static constexpr NamedResult kResults[] = {
        {0, "GC_ERR_SUCCESS"},
        {-1001, "GC_ERR_ERROR"},
        {-1011, "GC_ERR_TIMEOUT"},
        {-1016, "(Unknown GC_ERROR: -1016)"},
    };
    for (const auto& [result, name] : kResults) {
      SCOPED_TRACE(name);
      TargetDoes(slot, result, expected.target);
      EXPECT_EQ((proxy.*slot)(arguments...), result);
      std::vector<::testing::Matcher<std::string>> lines = {
          IsLine(std::string("INFO ") + name + "=" + line)};
      if (result == 0) {
        lines.insert(lines.end(), expected.after.begin(), expected.after.end());
      }
      EXPECT_THAT(TakeLines(), ::testing::ElementsAreArray(lines));
    }
    script.functions.*slot = nullptr;
  }

 private:
  template <typename Argument>
  [[nodiscard]] static std::string FillArgument(std::string line, int number, Argument argument) {
    if constexpr (std::is_pointer_v<Argument>) {
      const std::string place = "{" + std::to_string(number) + "}";
      for (std::size_t at = line.find(place); at != std::string::npos; at = line.find(place)) {
        line.replace(at, place.size(), Hex16(argument));
      }
    }
    return line;
  }

  static inline std::function<void()> action_;
  static inline GC_ERROR result_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_EXPORTS_EXPORTS_FIXTURE_H
