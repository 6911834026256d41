// All functions of a producer that does nothing, so that what is measured is the way to it.
#include <cstdint>

#if defined(__GNUC__) && !defined(_WIN32)
#pragma GCC visibility push(default)
#endif
// Takes any arguments: on x86-64 the caller puts them where they do not hurt, and takes them away.
extern "C" std::int32_t DoNothing();
extern "C" std::int32_t DoNothing() {
  return 0;
}
