// Included in front of every source that sees log4cpp, and in its own.
//
// log4cpp declares its logging functions noexcept, so that an allocation that fails while a line is
// written would end the process. Without the word the exception reaches whoever logs.
#ifdef __cplusplus
#include <log4cpp/Portability.hh>
#undef LOG4CPP_NOTHROW
#define LOG4CPP_NOTHROW
#endif
