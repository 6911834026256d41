// SPDX-License-Identifier: MIT
// What the page of a log has for its scripts.
#ifndef VEXTREL_TESTS_PROGRAM_PAGE_PAGE_DATA_H
#define VEXTREL_TESTS_PROGRAM_PAGE_PAGE_DATA_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace vextrel_test {

// The page that `vextrel report --html` makes of a log with this text. Empty if it can't.
[[nodiscard]] std::string PageOf(std::string_view log);
// The data in a page.
[[nodiscard]] nlohmann::json DataOf(std::string_view page);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_PAGE_PAGE_DATA_H
