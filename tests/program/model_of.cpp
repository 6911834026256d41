// SPDX-License-Identifier: MIT
#include "program/model_of.h"

#include <gtest/gtest.h>

#include "program/small_log.h"

namespace vextrel_test {

using namespace vextrel::program;

SessionModel ModelOf(const std::string& text) {
  const ScratchFile log(text);
  ReadingOptions options;
  options.files = {log.Path()};
  RecordReader reader(std::move(options));
  SessionModel model(reader.UsedLayout());
  Record record;
  Message message;
  while (reader.Next(record)) {
    ParseMessage(record.message, message);
    static_cast<void>(model.Take(record, message));
  }
  model.Finish();
  return model;
}

HandleId Named(const SessionModel& model, std::string_view name) {
  for (HandleId id = 1; id <= model.AllHandles().Last(); ++id) {
    if (model.AllHandles().Name(id) == name) {
      return id;
    }
  }
  ADD_FAILURE() << name;
  return kNoHandle;
}

}  // namespace vextrel_test
