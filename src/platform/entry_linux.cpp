#include <log4cpp/Category.hh>

#include "platform/module_entry.h"

// Stands for the loader's process attach and detach: constructed when the module is loaded,
// destroyed when it is unloaded or the process ends.
namespace {

extern "C" void* __dso_handle;  // NOLINT: the compiler's name for this module

class ProcessAttachment {
 public:
  ProcessAttachment() {
    // log4cpp's hierarchy must outlive the detach, so it has to be there before the attach.
    log4cpp::Category::getRoot();
    vextrel::DllMain(&__dso_handle, vextrel::kReasonProcessAttach, nullptr);
  }
  ~ProcessAttachment() { vextrel::DllMain(&__dso_handle, vextrel::kReasonProcessDetach, nullptr); }
  ProcessAttachment(const ProcessAttachment&) = delete;
  ProcessAttachment& operator=(const ProcessAttachment&) = delete;
};

const ProcessAttachment processAttachment;

}  // namespace
