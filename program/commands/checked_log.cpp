// SPDX-License-Identifier: MIT
#include "commands/checked_log.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "commands/read_log.h"
#include "images/file_bytes.h"

namespace vextrel::program {

CheckedLog::CheckedLog(const ReadingOptions& options) {
  RecordReader reader(options);
  model_ = std::make_unique<SessionModel>(reader.UsedLayout());
  checker_ = std::make_unique<Checker>(*model_);
  ReadLog(reader, *model_,
          [this](const Record& record, const Message& message, const Context& context) {
            checker_->Take(record, message, context);
          });
  checker_->Finish();
  log_ = {reader.Files(), reader.UsedLayout().Name(), reader.BytesRead(), reader.Lines()};
}

void WriteTextFile(const std::string& path, std::string_view text) {
  std::ofstream file(PathOf(path), std::ios::binary | std::ios::trunc);
  file.write(text.data(), static_cast<std::streamsize>(text.size()));
  file.close();
  if (!file) {
    throw std::runtime_error("'" + path + "' can't be written");
  }
}

}  // namespace vextrel::program
