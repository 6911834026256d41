// SPDX-License-Identifier: MIT
// What of a record can be compared with a record of another run.
#ifndef VEXTREL_PROGRAM_VIEWS_COMPARABLE_H
#define VEXTREL_PROGRAM_VIEWS_COMPARABLE_H

#include "model/alignment.h"
#include "model/session_model.h"
#include "reading/message.h"

namespace vextrel::program {

// Functions, handles by the order of their opening (buffers without it: which one comes next is
// chance), commands, results and values. Addresses, times, and threads' names aren't part of it.
[[nodiscard]] ComparableCall MakeComparable(const Record& record, const Message& message,
                                            const Context& context, const Handles& handles);

// Returns true iff the record is worth comparing: a call, or a report of a warning or an error.
[[nodiscard]] bool IsComparable(const Record& record, const Message& message);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_COMPARABLE_H
