#include "child_process.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace child_process {
namespace {

#if defined(_WIN32)

// The command processor takes off one pair of quotes around the whole line.
int RunInShell(const std::string& command) {
  return std::system(("\"" + command + "\"").c_str());
}

#else

int RunInShell(const std::string& command) {
  const int status = std::system(command.c_str());
  constexpr int kCrashed = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kCrashed;
}

#endif

[[nodiscard]] std::string Quoted(std::filesystem::path path) {
  return '"' + path.make_preferred().string() + '"';
}

[[nodiscard]] std::string Contents(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

}  // namespace

#if defined(_WIN32)
const char kListSeparator = ';';
void SetVariable(const std::string& name, const std::optional<std::string>& value) {
  _putenv_s(name.c_str(), value.value_or("").c_str());  // an empty value removes the variable
}
#else
const char kListSeparator = ':';
void SetVariable(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}
#endif

Outcome Run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
            const std::filesystem::path& scratch) {
  const std::filesystem::path out = scratch / "out.txt";
  const std::filesystem::path err = scratch / "err.txt";
  std::string command = Quoted(program);
  for (const std::string& argument : arguments) {
    command += " \"" + argument + '"';
  }
  command += " > " + Quoted(out) + " 2> " + Quoted(err);
  Outcome outcome;
  outcome.exitCode = RunInShell(command);
  outcome.out = Contents(out);
  outcome.err = Contents(err);
  return outcome;
}

}  // namespace child_process
