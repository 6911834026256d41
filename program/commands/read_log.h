// SPDX-License-Identifier: MIT
// Reads a log from its beginning to its end, and has a view look at each record.
#ifndef VEXTREL_PROGRAM_COMMANDS_READ_LOG_H
#define VEXTREL_PROGRAM_COMMANDS_READ_LOG_H

#include <cstdio>
#include <stdexcept>

#include "commands/progress.h"
#include "model/session_model.h"
#include "reading/message.h"
#include "reading/record_reader.h"
#include "views/output.h"

namespace vextrel::program {

// `look` is called as look(record, message, context). Throws std::runtime_error with a sentence if
// the log has no line that can be read.
template <typename Look>
void ReadLog(RecordReader& reader, SessionModel& model, Look look) {
  Record record;
  Message message;
  Output terminal(stderr);
  Progress progress(IsTerminal(true) ? reader.TotalBytes() : 0, terminal);
  bool any = false;
  while (reader.Next(record)) {
    if (record.kind == RecordKind::Whole) {
      ParseMessage(record.message, message);
    } else {
      message.kind = MessageKind::Other;
      message.shape = nullptr;
      message.result = GC_ERR_SUCCESS;
    }
    any = any || message.kind != MessageKind::Other;
    look(record, message, model.Take(record, message));
    progress.Update(reader.BytesRead());
  }
  model.Finish();
  if (!any) {
    throw std::runtime_error(
        "'" + reader.Files().front() + "' has no line of Vextrel's in the layout '" +
        reader.UsedLayout().Name() + "': give a call log, or the layout that it was written in");
  }
}

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_READ_LOG_H
