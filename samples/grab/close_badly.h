// The other way to end a session.
#ifndef VEXTREL_SAMPLES_GRAB_CLOSE_BADLY_H
#define VEXTREL_SAMPLES_GRAB_CLOSE_BADLY_H

#include <string>

#include "buffers.h"
#include "event.h"
#include "gentl_functions.h"
#include "handle.h"

namespace grab {

// A stream whose acquisition has been stopped, and the way down to it.
struct OpenSession {
  Handle transportLayer;
  Handle interfaceHandle;
  std::string interfaceId;
  Handle device;
  std::string deviceId;
  Handle stream;
  std::string streamId;
};

// Closes with one mistake of every kind, says what it does wrong in a line each, and goes on
// whatever the producer answers. Never throws Error.
void CloseBadly(const GenTl& gentl, OpenSession& session, Buffers& buffers, Event& newBuffer);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_CLOSE_BADLY_H
