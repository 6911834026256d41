// SPDX-License-Identifier: MIT
// Holds a function that another module seems to export.
#include <cstdint>

#include "gentl/gentl.h"

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  *phTL = reinterpret_cast<TL_HANDLE>(std::uintptr_t{0x7A});
  return GC_ERR_SUCCESS;
}
