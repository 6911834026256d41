// SPDX-License-Identifier: MIT
#include "support/process.h"

#include <ostream>

#include "support/files.h"

namespace vextrel_test {

void PrintTo(const Ending& ending, std::ostream* out) {
  switch (ending.kind) {
    case Ending::Kind::Exited:
      *out << "exited with " << ending.code;
      break;
    case Ending::Kind::Killed:
      *out << "killed by signal " << ending.code;
      break;
    case Ending::Kind::TooLate:
      *out << "did not end in time";
      break;
    case Ending::Kind::NotStarted:
      *out << "could not be started";
      break;
  }
}

Outcome RunProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   const std::filesystem::path& scratch) {
  constexpr std::chrono::minutes limit{5};
  const std::filesystem::path out = scratch / "out.txt";
  const std::filesystem::path err = scratch / "err.txt";
  const Ending ending = Process(program, arguments, out, err).WaitFor(limit);
  return {ending.kind == Ending::Kind::Exited ? ending.code : -1, ReadFile(out), ReadFile(err)};
}

}  // namespace vextrel_test
