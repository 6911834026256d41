#include <log4cpp/Category.hh>
#include <log4cpp/HierarchyMaintainer.hh>

#include "platform/module_entry.h"

// Stands for the loader's process attach and detach: constructed when the module is loaded,
// destroyed when it is unloaded or the process ends.
namespace {

extern "C" void* __dso_handle;  // NOLINT: the compiler's name for this module

// Unloading a module runs its finalisers first and then destroys its static objects; the end of the
// process does it the other way round.
bool unloading = false;
[[gnu::destructor]] void NoteUnloading() {
  unloading = true;
}

// Reaches the categories of log4cpp's hierarchy, which destroys them with itself.
class Hierarchy : public log4cpp::HierarchyMaintainer {
 public:
  static void ForgetCategories() { (getDefaultMaintainer().*(&Hierarchy::_categoryMap)).clear(); }
};

class ProcessAttachment {
 public:
  ProcessAttachment() {
    // log4cpp's hierarchy must outlive the detach, so it has to be there before the attach.
    log4cpp::Category::getRoot();
    vextrel::DllMain(&__dso_handle, vextrel::kReasonProcessAttach, nullptr);
  }
  ~ProcessAttachment() {
    vextrel::DllMain(&__dso_handle, vextrel::kReasonProcessDetach, nullptr);
    if (!unloading) {
      // Other threads may be in a call, and the consumer's own static objects may yet make some:
      // their lines go nowhere, but the categories that they go to have to stay.
      Hierarchy::ForgetCategories();
    }
  }
  ProcessAttachment(const ProcessAttachment&) = delete;
  ProcessAttachment& operator=(const ProcessAttachment&) = delete;
};

// NOLINTNEXTLINE(cert-err58-cpp): without memory the module cannot be loaded anyway.
const ProcessAttachment processAttachment;

}  // namespace
