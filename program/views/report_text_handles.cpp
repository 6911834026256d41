// SPDX-License-Identifier: MIT
#include <map>

#include "views/report_text.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kLeftOpen = 8;

class HandleText {
 public:
  explicit HandleText(const ReportText& text) : text_(text) {}

  void WriteLeftOpen() {
    const Handles& handles = text_.Model().AllHandles();
    std::size_t all = 0;
    std::size_t shown = 0;
    for (HandleId id = 1; id <= handles.Last(); ++id) {
      all += IsLeftOpen(handles.At(id)) ? 1 : 0;
    }
    if (handles.Last() == 0) {
      text_.Add("\nNothing was opened.\n");
      return;
    }
    if (all == 0) {
      text_.Add("\nEverything that was opened was closed.\n");
      return;
    }
    text_.Add("\nNever closed: {}\n", all);
    const std::size_t limit = text_.Options().handles ? all : kLeftOpen;
    // A tree: each handle stands below its parent if that was left open, too.
    std::multimap<HandleId, HandleId> children;
    for (HandleId id = 1; id <= handles.Last(); ++id) {
      const HandleId parent = handles.At(id).parent;
      const bool isTop = parent == kNoHandle || !IsLeftOpen(handles.At(parent));
      if (IsLeftOpen(handles.At(id))) {
        children.emplace(isTop ? kNoHandle : parent, id);
      }
    }
    WriteTree(children, kNoHandle, 1, shown, limit);
    if (shown < all) {
      text_.Add("  ... {} more (--handles)\n", all - shown);
    }
  }

  void WriteHandles() {
    const Handles& handles = text_.Model().AllHandles();
    text_.Add("\nHandles\n");
    for (HandleId id = 1; id <= handles.Last(); ++id) {
      const Handle& handle = handles.At(id);
      std::string closed = ClosedWithText(handle);
      if (handle.closedAt.has_value()) {
        closed = ", closed at " + text_.PlaceText(*handle.closedAt);
      }
      text_.Add("  {}: 0x{:X}, opened {}{}\n", ReportText::Safe(handles.FullName(id)), handle.value,
                handle.openedAt.has_value() ? "at " + text_.PlaceText(*handle.openedAt)
                                            : "in no line of the log",
                closed.empty() ? ", never closed" : closed);
    }
  }

 private:
  [[nodiscard]] static bool IsLeftOpen(const Handle& handle) {
    // A port has no function that closes it.
    return handle.kind != HandleKind::Port && handle.openedAt.has_value() &&
           !handle.closedAt.has_value();
  }

  // ", closed with DS1 at line 30" of a handle that has no closing of its own.
  [[nodiscard]] std::string ClosedWithText(const Handle& handle) const {
    if (handle.closedWith == kNoHandle) {
      return "";
    }
    const std::optional<LogPlace>& place =
        text_.Model().AllHandles().At(handle.closedWith).closedAt;
    return ", closed with " + text_.Model().AllHandles().Name(handle.closedWith) +
           (place.has_value() ? " at " + text_.PlaceText(*place) : "");
  }

  void WriteTree(const std::multimap<HandleId, HandleId>& children, HandleId parent,
                 std::size_t level, std::size_t& shown, std::size_t limit) {
    const Handles& handles = text_.Model().AllHandles();
    const auto [begin, end] = children.equal_range(parent);
    for (auto child = begin; child != end && shown < limit; ++child) {
      ++shown;
      const Handle& handle = handles.At(child->second);
      text_.Add("{}{}, opened at {}{}\n", std::string(2 * level, ' '),
                ReportText::Safe(handles.FullName(child->second)),
                text_.PlaceText(*handle.openedAt), ClosedWithText(handle));
      WriteTree(children, child->second, level + 1, shown, limit);
    }
  }

  const ReportText& text_;
};

}  // namespace

void WriteLeftOpen(const ReportText& text) {
  HandleText(text).WriteLeftOpen();
}

void WriteHandles(const ReportText& text) {
  HandleText(text).WriteHandles();
}

}  // namespace vextrel::program
