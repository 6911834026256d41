// SPDX-License-Identifier: MIT
#include "commands/log_page_file.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "commands/read_log.h"
#include "images/file_bytes.h"
#include "page/log_page.h"
#include "views/safe_text.h"

namespace vextrel::program {

namespace fs = std::filesystem;

void DemandPagePath(const std::vector<std::string>& files, const std::string& path) {
  for (const std::string& file : files) {
    if (file == "-") {
      throw std::runtime_error(
          "a page is made in two readings, and standard input can be read only once: put the log "
          "into a file");
    }
    std::error_code ignored;
    if (fs::equivalent(PathOf(file), PathOf(path), ignored)) {
      throw std::runtime_error("'" + path + "' is the log itself: give the page another name");
    }
  }
}

void WriteLogPage(const ReadingOptions& options, const CheckedLog& checked, const std::string& path,
                  Output& errors) {
  RecordReader reader(options);
  SessionModel model(reader.UsedLayout());
  LogPage page(checked.Log(), checked.Model(), checked.Found());
  ReadLog(reader, model, [&](const Record& record, const Message& message, const Context& context) {
    page.Take(model, record, message, context);
  });
  const std::string text = page.Finish(model);
  WriteTextFile(path, text);
  errors.Text() += "vextrel: wrote '";
  AppendSafe(errors.Text(), path);
  errors.Text() += fmt::format("' ({:.1f} MB)\n", static_cast<double>(text.size()) / 1e6);
  errors.Flush();
}

}  // namespace vextrel::program
