// SPDX-License-Identifier: MIT
// The expansion of references, against a model that searches the text in its own way.
#include "environment/environment.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>

#include "check.h"

namespace {

using vextrel_fuzz::Check;
using vextrel_fuzz::CheckText;

using Variables = std::map<std::string, std::string>;

struct Outcome {
  std::string text;
  bool raised;
};

std::string WithoutBlanks(const std::string& text) {
  std::string result;
  for (const char letter : text) {
    result += letter == ' ' ? std::string("%20") : std::string(1, letter);
  }
  return result;
}

// Letter by letter, with a state of its own, where the library searches.
Outcome Expand(const std::string& input, bool escapeSpaces, const Variables& variables) {
  std::string before;
  std::string name;
  bool inside = false;
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (!inside) {
      inside = input[i] == '$' && i + 1 < input.size() && input[i + 1] == '(';
      if (inside) {
        ++i;
      } else {
        before += input[i];
      }
    } else if (input[i] != ')') {
      name += input[i];
    } else {
      // The system sees a name up to its first zero byte, and an empty value as none at all.
      const auto found = variables.find(name.c_str());
      if (found != variables.end() && !found->second.empty()) {
        return {before + found->second + input.substr(i + 1), false};
      }
      const std::string message = "Environment variable '" + std::string(name.c_str());
      return {(message + "' not found").substr(0, 255), true};
    }
  }
  return {escapeSpaces ? WithoutBlanks(input) : input, false};
}

Outcome ExpandByLibrary(const std::string& input, bool escapeSpaces) {
  try {
    return {vextrel::ExpandEnvReference(input, escapeSpaces), false};
  } catch (const std::runtime_error& failure) {
    return {failure.what(), true};
  }
}

// A value of up to 1,100 bytes, so that it passes the library's buffers of 256 and 1,024. Without
// "=": Linux finds "A=x" as a name if the value of A begins with "x=".
std::string LongValue(FuzzedDataProvider& data) {
  std::string piece = data.ConsumeRandomLengthString(16).c_str();
  std::replace(piece.begin(), piece.end(), '=', '-');
  const auto size = data.ConsumeIntegralInRange<std::size_t>(0, 1100);
  std::string value;
  while (!piece.empty() && value.size() + piece.size() <= size) {
    value += piece;
  }
  return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const bool escapeSpaces = data.ConsumeBool();
  const Variables variables = {{"A", LongValue(data)}, {"B", LongValue(data)}, {"a b", "c d"}};
  const std::string input = data.ConsumeRemainingBytesAsString();

  ::clearenv();
  for (const auto& [name, value] : variables) {
    ::setenv(name.c_str(), value.c_str(), 1);
  }
  const Outcome expected = Expand(input, escapeSpaces, variables);
  const Outcome actual = ExpandByLibrary(input, escapeSpaces);
  Check(actual.raised == expected.raised, "raises where it must, and only there");
  CheckText(actual.text, expected.text);
  for (const auto& [name, value] : variables) {
    CheckText(vextrel::ReadEnvironmentVariable(name.c_str()), value);
  }
  return 0;
}
