// SPDX-License-Identifier: MIT
// The files that a page consists of beside its data, as the build found them.
#ifndef VEXTREL_PROGRAM_PAGE_PARTS_H
#define VEXTREL_PROGRAM_PAGE_PARTS_H

#include <string_view>

namespace vextrel::program {

// parts/page.html, which has a mark such as /*style*/ where each of the others belongs.
extern const std::string_view kPageFrame;
extern const std::string_view kPageStyle;
extern const std::string_view kCommonScript;
extern const std::string_view kTimelineScript;
extern const std::string_view kTimeScript;
extern const std::string_view kPageScript;
// The library that draws the plots, as its package has it.
extern const std::string_view kPlotStyle;
extern const std::string_view kPlotScript;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_PARTS_H
