// SPDX-License-Identifier: MIT
// The command line that a Windows program gets instead of arguments.
#ifndef VEXTREL_PROGRAM_LAUNCHING_QUOTING_H
#define VEXTREL_PROGRAM_LAUNCHING_QUOTING_H

#include <string>
#include <string_view>
#include <vector>

namespace vextrel::program {

// The command line that CommandLineToArgvW and the C runtimes take apart into exactly these
// arguments. The first one, the program's name, follows rules of its own. REQUIRES: it holds no
// quote.
[[nodiscard]] std::string QuotedCommandLine(const std::vector<std::string>& arguments);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_QUOTING_H
