// SPDX-License-Identifier: MIT
// The model of a whole log.
#ifndef VEXTREL_TESTS_PROGRAM_MODEL_OF_H
#define VEXTREL_TESTS_PROGRAM_MODEL_OF_H

#include <string>
#include <string_view>

#include "model/session_model.h"

namespace vextrel_test {

// When all of the text was taken, and the log has ended.
[[nodiscard]] vextrel::program::SessionModel ModelOf(const std::string& text);

// The handle of that name; a failure and kNoHandle if there's none.
[[nodiscard]] vextrel::program::HandleId Named(const vextrel::program::SessionModel& model,
                                               std::string_view name);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_MODEL_OF_H
