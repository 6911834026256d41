// For the few functions whose cost is that of a call for each part of a line.
#ifndef VEXTREL_CALLLOG_ALWAYS_INLINE_H
#define VEXTREL_CALLLOG_ALWAYS_INLINE_H

#if defined(__GNUC__)
#define VEXTREL_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define VEXTREL_ALWAYS_INLINE inline
#endif

#endif  // VEXTREL_CALLLOG_ALWAYS_INLINE_H
