// SPDX-License-Identifier: MIT
// Which of the two modules is being compiled.
//
// Both are made of the same sources. The extended module exports the functions of GenTL 1.3 to 1.6,
// times calls, and keeps its target loaded; the other one has 51 functions and a log that is fixed.
#ifndef VEXTREL_LIFECYCLE_EDITION_H
#define VEXTREL_LIFECYCLE_EDITION_H

namespace vextrel {

#if defined(VEXTREL_EXTENDED)
inline constexpr bool kIsExtended = true;
#else
inline constexpr bool kIsExtended = false;
#endif

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_EDITION_H
