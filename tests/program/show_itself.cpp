// SPDX-License-Identifier: MIT
// A program that writes its arguments to the file that SHOW_ITSELF_IN names, each with a line feed
// behind it, and the variables of a consumer behind them. Ends with the exit status in
// SHOW_ITSELF_STATUS.
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "images/file_bytes.h"
#include "launching/system.h"

int main(int count, char** values) {
  using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
  const Variables variables = ProcessVariables();
  std::ofstream file(PathOf(variables.Find("SHOW_ITSELF_IN").value_or("")), std::ios::binary);
  for (const std::string& argument : ProgramArguments(count, values)) {
    file << argument << '\n';
  }
  file << "PATH " << variables.Find(kPathVariable).value_or("") << '\n';
  file.close();
  std::this_thread::sleep_for(
      std::chrono::seconds(std::stoi(variables.Find("SHOW_ITSELF_SECONDS").value_or("0"))));
  return std::stoi(variables.Find("SHOW_ITSELF_STATUS").value_or("0"));
}
