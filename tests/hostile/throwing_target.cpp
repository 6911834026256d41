// SPDX-License-Identifier: MIT
// A producer that lets C++ exceptions out, as none should.
#include <cstdint>
#include <stdexcept>

#include "exported.h"
#include "gentl/gentl.h"
#include "thrown.h"

// NOLINTBEGIN(readability-identifier-naming): exports are named like functions.
VEXTREL_TEST_EXPORT bool ThrowsInInit;
VEXTREL_TEST_EXPORT bool ThrowsInClose;
bool ThrowsInInit = false;
bool ThrowsInClose = false;
// NOLINTEND(readability-identifier-naming)

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  if (ThrowsInInit) {
    throw std::runtime_error("not today");
  }
  return GC_ERR_SUCCESS;
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  if (ThrowsInClose) {
    throw std::runtime_error("still busy");
  }
  return GC_ERR_SUCCESS;
}

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* /*phTL*/) {
  throw std::runtime_error("no transport layer");
}

GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE /*hTL*/) {
  throw 7;  // NOLINT: anything at all
}

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface) {
  throw vextrel_test::Thrown{hIface, -1010};
}

// An exception of a class that has bases is caught under their names, too.
GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE /*hDevice*/) {
  throw std::out_of_range("no such device");
}

GC_ERROR GC_CALLTYPE DSClose(DS_HANDLE /*hDataStream*/) {
  throw "a text";  // NOLINT: anything at all
}

// Throws it again from a handler.
GC_ERROR GC_CALLTYPE EventGetData(EVENT_HANDLE /*hEvent*/, void* /*pBuffer*/, size_t* piSize,
                                  uint64_t /*iTimeout*/) {
  try {
    throw std::length_error("too much data");
  } catch (const std::length_error&) {
    *piSize = 3;
    throw;
  }
}
