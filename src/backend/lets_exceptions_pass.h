// SPDX-License-Identifier: MIT
// Included ahead of everything else in each source that uses log4cpp, and in log4cpp's own sources.
//
// log4cpp declares its logging functions LOG4CPP_NOTHROW, that is, noexcept: a failed allocation
// while a line is written would end the process. With the macro empty, the exception reaches the
// caller. Portability.hh defines it in lines 76 to 81, and nothing redefines it.
#ifdef __cplusplus
#include <log4cpp/Portability.hh>
#undef LOG4CPP_NOTHROW
#define LOG4CPP_NOTHROW
#endif
