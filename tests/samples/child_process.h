// Running another program, and the environment that it sees.
#ifndef VEXTREL_TESTS_SAMPLES_CHILD_PROCESS_H
#define VEXTREL_TESTS_SAMPLES_CHILD_PROCESS_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace child_process {

struct Outcome {
  int exitCode = -1;
  std::string out;  // with '\n' line ends
  std::string err;
};

// Runs the program to its end. Its output goes through files in `scratch`, a folder that exists.
// Arguments may hold blanks, but nothing else that a shell would interpret.
[[nodiscard]] Outcome Run(const std::filesystem::path& program,
                          const std::vector<std::string>& arguments,
                          const std::filesystem::path& scratch);

// Sets or, without a value, removes a variable of our own environment, which children inherit.
void SetVariable(const std::string& name, const std::optional<std::string>& value);

// What separates the entries of a search path.
extern const char kListSeparator;

}  // namespace child_process

#endif  // VEXTREL_TESTS_SAMPLES_CHILD_PROCESS_H
