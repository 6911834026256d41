#include <windows.h>

#include "platform/module_entry.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  return vextrel::DllMain(instance, reason, reserved);
}
