// SPDX-License-Identifier: MIT
// Comparing a call log with an expected one ("golden log"), byte by byte but for what differs from
// run to run.
//
// A golden log has one line for each message. Lines that begin with '#' are comments, \xHH is the
// byte of that number, and these marks stand for parts of a message:
//   <ADDRESS>                   any address but null, sixteen upper-case digits
//   <ADDRESS IN LOWER CASE>     any address but null, in lower case and without leading zeros
//   <TIME>                      any decimal number of 32 bits
//   <LOW HALF OF name>          the low 32 bits of that address, in lower case
//   <EVENT DATA OF name AND name>  the dump of sixteen bytes that are these two addresses, with the
//                               line feed that ends it
//   <name>                      an address that is the same wherever the name stands; a name in
//                               lower case is valid within one line
// and those for which a text is given.
#ifndef VEXTREL_TESTS_GOLDEN_COMPARISON_H
#define VEXTREL_TESTS_GOLDEN_COMPARISON_H

#include <map>
#include <string>
#include <string_view>

namespace vextrel_test {

// The texts that marks stand for, by what stands between the brackets.
using Texts = std::map<std::string, std::string, std::less<>>;

// Empty if the logs agree, otherwise a description of the first difference. A name that stands only
// once proves nothing and counts as a difference. `actual` has '\n' line ends.
[[nodiscard]] std::string FindDifference(std::string_view expected, std::string_view actual,
                                         const Texts& texts);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_GOLDEN_COMPARISON_H
