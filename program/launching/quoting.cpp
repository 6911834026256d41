// SPDX-License-Identifier: MIT
#include "launching/quoting.h"

namespace vextrel::program {
namespace {

bool NeedsQuotes(std::string_view argument) {
  return argument.empty() || argument.find_first_of(" \t\n\v\"") != std::string_view::npos;
}

void AppendQuoted(std::string& line, std::string_view argument) {
  line += '"';
  std::size_t backslashes = 0;
  for (const char letter : argument) {
    if (letter == '\\') {
      ++backslashes;
    } else {
      if (letter == '"') {
        // Backslashes count as such unless a quote follows.
        line.append(backslashes + 1, '\\');
      }
      backslashes = 0;
    }
    line += letter;
  }
  line.append(backslashes, '\\');
  line += '"';
}

}  // namespace

std::string QuotedCommandLine(const std::vector<std::string>& arguments) {
  std::string line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i == 0) {
      line.append("\"").append(arguments[0]).append("\"");
      continue;
    }
    line += ' ';
    if (NeedsQuotes(arguments[i])) {
      AppendQuoted(line, arguments[i]);
    } else {
      line += arguments[i];
    }
  }
  return line;
}

}  // namespace vextrel::program
