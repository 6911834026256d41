#include "registry_fixture.h"

#include <log4cpp/LoggingEvent.hh>
#include <log4cpp/Priority.hh>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// What the registry forgets stays allocated, which a leak detector is not to mind.
#if defined(__SANITIZE_ADDRESS__)
void AllowLeaks() {
  __lsan_disable();
}
void ForbidLeaks() {
  __lsan_enable();
}
#else
void AllowLeaks() {}
void ForbidLeaks() {}
#endif

// The exact values that lines may have; any other shows as its number.
std::string PriorityText(int priority) {
  switch (priority) {
    case 300:
      return "ERROR";
    case 400:
      return "WARN";
    default:
      return std::to_string(priority);
  }
}

}  // namespace

void LineRecorder::_append(const log4cpp::LoggingEvent& event) {
  lines_.push_back(PriorityText(event.priority) + " " + event.message);
}

RegistryTest::RegistryTest() : logger(&log4cpp::Category::getInstance("registry_test")) {
  logger->setAdditivity(false);
  logger->setPriority(log4cpp::Priority::DEBUG);
  logger->addAppender(recorder_);
  AllowLeaks();
}

RegistryTest::~RegistryTest() {
  ForbidLeaks();
  logger->removeAllAppenders();
}

std::vector<EVENT_TYPE> TypesOf(const vextrel::EventList& events) {
  std::vector<EVENT_TYPE> types;
  for (const vextrel::EventRegistration* registration : events.registrations()) {
    types.push_back(registration->eventType);
  }
  return types;
}

std::vector<void*> EventHandlesOf(const vextrel::EventList& events) {
  std::vector<void*> handles;
  for (const vextrel::EventRegistration* registration : events.registrations()) {
    handles.push_back(registration->eventHandle);
  }
  return handles;
}
