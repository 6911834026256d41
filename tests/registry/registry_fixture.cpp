// SPDX-License-Identifier: MIT
#include "registry/registry_fixture.h"

namespace vextrel_test {

RecordedLines::RecordedLines() : logger(&log4cpp::Category::getInstance("registry_test")) {
  recorder.Record(*logger);
}

RecordedLines::~RecordedLines() {
  logger->removeAllAppenders();
}

std::vector<EVENT_TYPE> TypesOf(const vextrel::EventList& events) {
  std::vector<EVENT_TYPE> types;
  for (const vextrel::EventRegistration* registration : events.Registrations()) {
    types.push_back(registration->eventType);
  }
  return types;
}

std::vector<void*> EventHandlesOf(const vextrel::EventList& events) {
  std::vector<void*> handles;
  for (const vextrel::EventRegistration* registration : events.Registrations()) {
    handles.push_back(registration->eventHandle);
  }
  return handles;
}

}  // namespace vextrel_test
