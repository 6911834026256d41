// SPDX-License-Identifier: MIT
#include "commands/progress.h"

#include <fmt/format.h>

#include <exception>
#include <iterator>

namespace vextrel::program {
namespace {

// Smaller logs are read before anybody could look.
constexpr std::uint64_t kLarge = std::uint64_t{256} << 20U;
constexpr std::uint64_t kStep = std::uint64_t{64} << 20U;

}  // namespace

Progress::Progress(std::uint64_t total, Output& terminal) noexcept
    : total_(total), next_(total >= kLarge ? kStep : UINT64_MAX), terminal_(terminal) {}

Progress::~Progress() {
  if (shown_) {
    try {
      terminal_.Text() += "\r                    \r";
      terminal_.Flush();
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): nobody to tell.
    }
  }
}

void Progress::Show(std::uint64_t bytesRead) {
  shown_ = true;
  next_ = bytesRead + kStep;
  fmt::format_to(std::back_inserter(terminal_.Text()), "\r{} of {} MB", bytesRead >> 20U,
                 total_ >> 20U);
  terminal_.Flush();
}

}  // namespace vextrel::program
