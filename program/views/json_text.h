// SPDX-License-Identifier: MIT
// Texts of JSON, written one after the other.
#ifndef VEXTREL_PROGRAM_VIEWS_JSON_TEXT_H
#define VEXTREL_PROGRAM_VIEWS_JSON_TEXT_H

#include <string>
#include <string_view>

namespace vextrel::program {

// A JSON string with its quotes. Bytes that are no UTF-8 become text like \xff.
void AppendJsonText(std::string& out, std::string_view text);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_VIEWS_JSON_TEXT_H
