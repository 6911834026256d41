// What the tests of the handle registry share.
#ifndef VEXTREL_TESTS_REGISTRY_REGISTRY_FIXTURE_H
#define VEXTREL_TESTS_REGISTRY_REGISTRY_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <string>
#include <utility>
#include <vector>

#include "expected_lines.h"
#include "gentl/gentl.h"
#include "heap_watch.h"
#include "registry/event_registration.h"

// Handles are only compared, so any value will do.
inline void* Handle(std::uintptr_t value) {
  return reinterpret_cast<void*>(value);
}

// Keeps each line as its priority and its message, for example "WARN Event with handle ...".
class LineRecorder : public log4cpp::AppenderSkeleton {
 public:
  LineRecorder() : AppenderSkeleton("lines") {}

  [[nodiscard]] std::vector<std::string> TakeLines() { return std::exchange(lines_, {}); }

  void close() override {}
  [[nodiscard]] bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

 protected:
  void _append(const log4cpp::LoggingEvent& event) override;

 private:
  std::vector<std::string> lines_;
};

// A category of the tests' own, whose lines are kept.
class RegistryTest : public testing::Test {
 protected:
  RegistryTest();
  ~RegistryTest() override;

  // The lines since the last call, oldest first.
  [[nodiscard]] std::vector<std::string> TakeLines() { return recorder_.TakeLines(); }

  log4cpp::Category* const logger;

 private:
  LineRecorder recorder_;
};

// The elements' handles, in the list's order.
template <typename Records>
[[nodiscard]] std::vector<void*> HandlesOf(const Records& records) {
  std::vector<void*> handles;
  for (const auto* record : records) {
    handles.push_back(record->handle);
  }
  return handles;
}

// The registered types, in the list's order.
[[nodiscard]] std::vector<EVENT_TYPE> TypesOf(const vextrel::EventList& events);

// The registered events' handles, in the list's order.
[[nodiscard]] std::vector<void*> EventHandlesOf(const vextrel::EventList& events);

// Registers an event on this very record.
template <typename Node>
void Register(Node& node, EVENT_TYPE eventType, EVENT_HANDLE eventHandle) {
  ASSERT_TRUE(node.AddEvent(node.handle, eventType, eventHandle));
}

#endif  // VEXTREL_TESTS_REGISTRY_REGISTRY_FIXTURE_H
