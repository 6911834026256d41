// A registered event.
#ifndef VEXTREL_SAMPLES_GRAB_EVENT_H
#define VEXTREL_SAMPLES_GRAB_EVENT_H

#include "gentl_functions.h"

namespace grab {

// Registers in the constructor, which throws Error, and unregisters at the end. The functions must
// outlive it, and the source must stay open as long.
class Event {
 public:
  Event(const GenTl& functions, EVENTSRC_HANDLE eventSource, EVENT_TYPE eventType)
      : gentl(functions), source(eventSource), type(eventType) {
    gentl.Do(gentl.GCRegisterEvent, source, type, &handle);
    registered = true;
  }
  ~Event() {
    if (registered) {
      gentl.GCUnregisterEvent(source, type);
    }
  }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  [[nodiscard]] EVENT_HANDLE Get() const { return handle; }

  // Wakes whoever still waits for the event, then unregisters. Throws Error.
  void Unregister() {
    const GC_ERROR killed = gentl.EventKill(handle);
    if (killed != GC_ERR_SUCCESS && !MeansAbsent(killed)) {
      throw Error(gentl.Describe(gentl.EventKill.Name(), killed) + ".");
    }
    registered = false;
    gentl.Do(gentl.GCUnregisterEvent, source, type);
  }

  // Leaves it registered for good.
  void Forget() { registered = false; }

 private:
  const GenTl& gentl;
  EVENTSRC_HANDLE source;
  EVENT_TYPE type;
  EVENT_HANDLE handle = nullptr;
  bool registered = false;
};

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_EVENT_H
