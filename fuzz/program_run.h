// SPDX-License-Identifier: MIT
// The program that reads logs, run on the bytes of a fuzzer.
#ifndef VEXTREL_FUZZ_PROGRAM_RUN_H
#define VEXTREL_FUZZ_PROGRAM_RUN_H

#include <string>

namespace vextrel_fuzz {

// Has every command read a log with these bytes, and checks what has to hold for any: each ends
// with an exit status of its own, what it refuses is one sentence, its JSON is JSON, pages have no
// markup of the log, no control character reaches a terminal, every record is counted, and a log
// equals itself.
void RunProgramOn(const std::string& bytes);

}  // namespace vextrel_fuzz

#endif  // VEXTREL_FUZZ_PROGRAM_RUN_H
