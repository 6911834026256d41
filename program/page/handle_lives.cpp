// SPDX-License-Identifier: MIT
#include "page/handle_lives.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace vextrel::program {
namespace {

bool EndsHandles(std::string_view function) {
  return function.ends_with("Close") || function == "DSRevokeBuffer" ||
         function == "GCUnregisterEvent" || function == "GCCloseLib";
}

}  // namespace

void HandleLives::Take(const SessionModel& model, const Message& message, const Context& context,
                       std::int64_t time) {
  const Handles& handles = model.AllHandles();
  const std::size_t known = std::min<std::size_t>(handles.Last(), kMostHandles);
  // An opening may end what had the same value.
  bool mayEnd =
      lives_.size() < known || std::exchange(session_, context.session) != context.session;
  while (lives_.size() < known) {
    lives_.push_back({time, std::nullopt});
    open_.push_back(static_cast<HandleId>(lives_.size()));
  }
  mayEnd = mayEnd || (message.IsCall() && EndsHandles(message.shape->function));
  if (mayEnd) {
    std::erase_if(open_, [&](HandleId id) {
      if (handles.At(id).isOpen) {
        return false;
      }
      lives_[id - 1].end = time;
      return true;
    });
  }
}

}  // namespace vextrel::program
