// SPDX-License-Identifier: MIT
// A call as one readable line, without its time.
#ifndef VEXTREL_PROGRAM_VIEWS_CALL_TEXT_H
#define VEXTREL_PROGRAM_VIEWS_CALL_TEXT_H

#include <string>

#include "model/session_model.h"
#include "reading/message.h"
#include "reading/record_reader.h"

namespace vextrel::program {

// `Function(inputs) -> outputs`; the result isn't part of it. Handles have their names.
void AppendCall(std::string& out, const Record& record, const Message& message,
                const Context& context, const Handles& handles);

// `Function(first argument)` of a call whose own line isn't there.
void AppendEntered(std::string& out, const EnteredCall& call, const Handles& handles);

// A report with the names of its handles behind their values.
void AppendReport(std::string& out, const Message& message, const Context& context,
                  const Handles& handles);

// A list of entries: "[BUFFER_INFO_WIDTH=640; BUFFER_INFO_HEIGHT=480]", "[0x1 at 16, 8 bytes]".
void AppendEntries(std::string& out, std::string_view text);

// The bytes of a dump: "01 00 00 00", no more than `limit` of them.
void AppendDump(std::string& out, std::string_view dump, std::size_t limit);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_CALL_TEXT_H
