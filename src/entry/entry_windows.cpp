// SPDX-License-Identifier: MIT
#include <windows.h>

#include "lifecycle/dll_main.h"

static_assert(DLL_PROCESS_ATTACH == vextrel::kModuleLoaded);
static_assert(DLL_PROCESS_DETACH == vextrel::kModuleUnloaded);

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  return vextrel::DllMain(instance, reason, reserved);
}
