// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"
#include "commands/command_line.h"
#include "page/log_page.h"
#include "scratch_folder.h"

namespace vextrel_fuzz {
namespace {

struct Result {
  int status;
  std::string output;
  std::string errors;
};

Result Run(const std::vector<std::string>& arguments) {
  vextrel::program::Output output;
  vextrel::program::Output errors;
  const int status = vextrel::program::RunProgram(arguments, output, errors);
  if (status == vextrel::program::kExitUnusable) {
    Check(std::count(errors.Text().begin(), errors.Text().end(), '\n') == 1,
          "a refusal is one sentence");
  }
  return {status, output.Text(), errors.Text()};
}

bool HasControls(const std::string& text) {
  return std::any_of(text.begin(), text.end(), [](char each) {
    return (static_cast<unsigned char>(each) < 0x20 && each != '\n') || each == 0x7F;
  });
}

// What has to hold for a page of any log: its data is JSON, and nothing in it is markup.
void CheckPage(const std::string& page) {
  constexpr std::string_view front = "id=\"data\">";
  constexpr std::string_view back = "</script>";
  const std::size_t begin = page.find(front) + front.size();
  const std::size_t end = page.find(back, begin);
  Check(nlohmann::json::accept(page.substr(begin, end - begin)), "a page's data is JSON");
  static const auto markup = std::count(page.begin(), page.end(), '<');
  Check(std::count(page.begin(), page.end(), '<') == markup, "a page has no markup of the log");
  Check(page.size() <= vextrel::program::kMostOfAPage, "a page is bounded");
}

}  // namespace

void RunProgramOn(const std::string& bytes) {
  // It becomes the working folder.
  static const ScratchFolder folder;
  const std::string path = "app.log";
  std::ofstream(path, std::ios::binary) << bytes;
  const Result shown = Run({"show", "--all", path});
  Check(!HasControls(shown.output) && !HasControls(shown.errors),
        "no control character reaches a terminal");
  const Result report = Run({"report", "--json", path});
  Check(report.status == shown.status, "two commands agree on whether a log can be used");
  const Result text = Run({"report", "--functions", "--handles", "--histogram", "--slowest", path});
  Check(!HasControls(text.output), "no control character reaches a terminal in a report");
  const Result lines = Run({"export", "--to", "jsonl", path});
  static_cast<void>(Run({"export", "--to", "csv", path}));
  const Result trace = Run({"export", "--to", "chrome", path});
  const std::string page = "page.html";
  const Result made = Run({"report", "--html", page, path});
  Check(made.status == report.status, "a page is made of any log that can be used");
  if (made.status == 0) {
    std::ifstream file(page, std::ios::binary);
    CheckPage({std::istreambuf_iterator<char>(file), {}});
  }
  const Result difference = Run({"diff", path, path});
  if (report.status == 0) {
    const nlohmann::json figures = nlohmann::json::parse(report.output);
    Check(figures["log"]["bytes"] == bytes.size(), "every byte is read");
    const auto records = std::count(shown.output.begin(), shown.output.end(), '\n');
    Check(records == std::count(lines.output.begin(), lines.output.end(), '\n'),
          "every record is shown and exported");
    Check(difference.status == 0, "a log equals itself");
    std::size_t begin = 0;
    for (std::size_t end = lines.output.find('\n'); end != std::string::npos;
         end = lines.output.find('\n', begin)) {
      Check(nlohmann::json::accept(lines.output.substr(begin, end - begin)), "a line is JSON");
      begin = end + 1;
    }
  }
  if (trace.status == 0) {
    Check(nlohmann::json::accept(trace.output), "a trace is JSON");
  }
}

}  // namespace vextrel_fuzz
