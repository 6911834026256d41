// SPDX-License-Identifier: MIT
// The layout that a log4cpp property file asks for.
#ifndef VEXTREL_PROGRAM_READING_PROPERTY_FILE_H
#define VEXTREL_PROGRAM_READING_PROPERTY_FILE_H

#include <string>
#include <string_view>

#include "reading/layout.h"

namespace vextrel::program {

// That of the first appender of the file. Throws std::runtime_error with a sentence if the file
// can't be read or names no layout.
[[nodiscard]] Layout LayoutOfPropertyFile(const std::string& path);

// The same of the file's text.
[[nodiscard]] Layout LayoutOfProperties(std::string_view text);

// Returns true iff the text looks like a property file rather than a log.
[[nodiscard]] bool LooksLikeProperties(std::string_view text) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_PROPERTY_FILE_H
