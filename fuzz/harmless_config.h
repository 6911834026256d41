// SPDX-License-Identifier: MIT
// Which configurations a fuzzer may load.
#ifndef VEXTREL_FUZZ_HARMLESS_CONFIG_H
#define VEXTREL_FUZZ_HARMLESS_CONFIG_H

#include <string>

namespace vextrel_fuzz {

// False for a configuration that reaches outside the working folder (a file name with a slash, the
// network, the system's log), that ends the process as log4cpp promises, or that makes log4cpp do
// what it is known to do badly:
//   - a date of 100 characters or more is read beyond its end (long_date.properties)
//   - a field may have any width, which raises a length error or fills the memory, with every line
//     that is logged (wide_field.properties)
//   - a category has a parent for each dot of its name, which recursion makes
//   - any number of backups is renamed one by one, and a text that doubles with each property kept
[[nodiscard]] bool IsHarmless(const std::string& text);

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_HARMLESS_CONFIG_H
