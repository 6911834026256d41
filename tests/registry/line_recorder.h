// SPDX-License-Identifier: MIT
// Keeps what a category logs.
#ifndef VEXTREL_TESTS_REGISTRY_LINE_RECORDER_H
#define VEXTREL_TESTS_REGISTRY_LINE_RECORDER_H

#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/LoggingEvent.hh>
#include <log4cpp/Priority.hh>
#include <string>
#include <utility>
#include <vector>

namespace vextrel_test {

// Each line as its priority and its message, for example "WARN Event with handle ...".
class LineRecorder : public log4cpp::AppenderSkeleton {
 public:
  LineRecorder() : AppenderSkeleton("lines") {}

  // Makes it the category's only appender; the category's lines go nowhere else.
  void Record(log4cpp::Category& category) {
    category.setAdditivity(false);
    category.setPriority(log4cpp::Priority::DEBUG);
    category.addAppender(*this);
  }
  // Returns the lines since the last call, oldest first.
  [[nodiscard]] std::vector<std::string> TakeLines() { return std::exchange(lines_, {}); }

  void close() override {}
  [[nodiscard]] bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

 protected:
  void _append(const log4cpp::LoggingEvent& event) override {
    lines_.push_back(PriorityText(event.priority) + " " + event.message);
  }

 private:
  // The exact values that lines may have; any other shows as its number.
  static std::string PriorityText(int priority) {
    return priority == 300 ? "ERROR" : priority == 400 ? "WARN" : std::to_string(priority);
  }

  std::vector<std::string> lines_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_REGISTRY_LINE_RECORDER_H
