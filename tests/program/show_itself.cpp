// SPDX-License-Identifier: MIT
// A program that writes its arguments to the file that SHOW_ITSELF_IN names, each with a line feed
// behind it, and behind them the variables of a consumer and its own number. Then it does what
// other variables ask for:
//   SHOW_ITSELF_CHILD            starts itself once more, with this file to write to, and ends
//   SHOW_ITSELF_CRASHES          writes where nothing is
//   SHOW_ITSELF_SECONDS          waits, and writes "END" after the rest
//   SHOW_ITSELF_STATUS           ends with this exit status
//   SHOW_ITSELF_STATUS_AT_CTRL_C  or with this one, if Ctrl-C comes first
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "images/file_bytes.h"
#include "launching/process.h"
#include "launching/system.h"

namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)

volatile std::sig_atomic_t statusAtCtrlC = 0;

void EndAtCtrlC(int /*signal*/) {
  std::_Exit(statusAtCtrlC);
}

void StartChild(Variables variables, const std::string& file) {
  variables.Set("SHOW_ITSELF_IN", file);
  variables.Remove("SHOW_ITSELF_CHILD");
  StartRequest request;
  request.file = OwnProgram();
  request.arguments = {"child"};
  request.variables = variables;
  const Process child(request);
}

void Crash() {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 0;
}

}  // namespace

int main(int count, char** values) {
  const Variables variables = ProcessVariables();
  if (const auto status = variables.Find("SHOW_ITSELF_STATUS_AT_CTRL_C")) {
    statusAtCtrlC = std::stoi(*status);
    static_cast<void>(std::signal(SIGINT, EndAtCtrlC));
  }
  std::ofstream file(PathOf(variables.Find("SHOW_ITSELF_IN").value_or("")), std::ios::binary);
  for (const std::string& argument : ProgramArguments(count, values)) {
    file << argument << '\n';
  }
  file << "PATH " << variables.Find(kPathVariable).value_or("") << '\n';
  file << "PROCESS " << OwnProcessId() << std::endl;
  if (variables.Find("SHOW_ITSELF_CRASHES")) {
    Crash();
  }
  if (const auto child = variables.Find("SHOW_ITSELF_CHILD")) {
    StartChild(variables, *child);
  } else {
    std::this_thread::sleep_for(std::chrono::duration<double>(
        std::stod(variables.Find("SHOW_ITSELF_SECONDS").value_or("0"))));
  }
  file << "END\n";
  file.close();
  return std::stoi(variables.Find("SHOW_ITSELF_STATUS").value_or("0"));
}
