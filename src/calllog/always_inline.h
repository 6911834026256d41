// SPDX-License-Identifier: MIT
// For the few functions that run for each part of a line, where a call would cost more than the
// work.
#ifndef VEXTREL_CALLLOG_ALWAYS_INLINE_H
#define VEXTREL_CALLLOG_ALWAYS_INLINE_H

#if defined(__GNUC__)
#define VEXTREL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define VEXTREL_ALWAYS_INLINE inline
#endif

#endif  // VEXTREL_CALLLOG_ALWAYS_INLINE_H
