// SPDX-License-Identifier: MIT
// Single mistakes on demand, each of them one that applications make, for a tracing producer and
// for whoever wants to see what its log looks like.
#ifndef VEXTREL_SAMPLES_GRAB_FAULTS_H
#define VEXTREL_SAMPLES_GRAB_FAULTS_H

#include <span>
#include <string_view>

#include "session.h"

namespace grab {

struct Fault {
  // When it's made: with the acquisition running, or when it's stopped, in front of the closing.
  enum class Time { Running, Stopped };

  std::string_view name;
  Time time;
  // Mended, it does the same without the mistake.
  void (*make)(Session& session, bool mended);
};

// All there are, by name.
[[nodiscard]] std::span<const Fault> Faults();
// Null if no fault has this name.
[[nodiscard]] const Fault* FindFault(std::string_view name);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_FAULTS_H
