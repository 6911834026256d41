// SPDX-License-Identifier: MIT
// Rules that look at the same calls and share what they remember of them.
#ifndef VEXTREL_PROGRAM_RULES_FAMILY_H
#define VEXTREL_PROGRAM_RULES_FAMILY_H

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "rules/call.h"
#include "rules/findings.h"

namespace vextrel::program {

// Which calls of a function a family wants to see.
enum class Interest : std::uint8_t { None, Failures, All };

// Takes the calls in the order of the log. Keeps a bounded amount of memory, whatever the log.
class RuleFamily {
 public:
  RuleFamily() = default;
  virtual ~RuleFamily() = default;
  RuleFamily(const RuleFamily&) = delete;
  RuleFamily& operator=(const RuleFamily&) = delete;

  [[nodiscard]] virtual Interest Wants(Function function) const = 0;
  // The model is as the call found it.
  virtual void Before(const Call& /*call*/) {}
  // The model is as the call left it.
  virtual void After(const Call& /*call*/) {}
  // A session ends at `moment`: with a successful GCCloseLib, before which this is called, or with
  // the beginning of another session or the end of the log.
  virtual void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                          bool /*isClosed*/) {}
  // A report of Vextrel's own. `call` is the finding that the last call of the same thread led to,
  // or null.
  virtual void OnReport(const SessionModel& /*model*/, const Record& /*record*/,
                        const Message& /*message*/, const Context& /*context*/, Finding* /*call*/) {
  }
  [[nodiscard]] virtual bool WantsAny() const { return false; }
  // Every record, in front of what else it is, if it's wanted.
  virtual void OnAny(const Record& /*record*/, const Context& /*context*/) {}
  // A call enters the producer, in a log with timing lines. The model knows it already.
  virtual void OnEnter(const SessionModel& /*model*/, const EnteredCall& /*call*/) {}
  // A line that no call and no report makes, or that can't be read.
  virtual void OnOther(const Record& /*record*/, const Message& /*message*/,
                       const Context& /*context*/) {}
  // The log ends, after the last session.
  virtual void Finish(const SessionModel& /*model*/) {}
};

// What is known of the log as a whole, as far as it was read.
struct LogKnowledge {
  bool beginsWithLibrary = false;  // the first call is GCInitLib, or a producer is loaded before it
  bool anyCall = false;
  bool isCut = false;                 // the last record has no end
  std::uint64_t foundBeforeCall = 0;  // Findings::Count() when the call that is judged came
};

// Each family: its rules, in the order of docs/rules.md, and an object that looks for them.
struct FamilyEntry {
  std::span<const Rule* const> rules;
  std::unique_ptr<RuleFamily> (*make)(Findings& findings, const LogKnowledge& log);
};

[[nodiscard]] FamilyEntry LibraryFamily();
[[nodiscard]] FamilyEntry ModuleFamily();
[[nodiscard]] FamilyEntry HandleFamily();
[[nodiscard]] FamilyEntry ListFamily();
[[nodiscard]] FamilyEntry DeviceFamily();
[[nodiscard]] FamilyEntry BufferFamily();
[[nodiscard]] FamilyEntry BufferMemoryFamily();
[[nodiscard]] FamilyEntry IncompleteFamily();
[[nodiscard]] FamilyEntry StarveFamily();
[[nodiscard]] FamilyEntry QueueFamily();
[[nodiscard]] FamilyEntry AcquisitionFamily();
[[nodiscard]] FamilyEntry EventFamily();
[[nodiscard]] FamilyEntry WaitFamily();
[[nodiscard]] FamilyEntry CloseWaitFamily();
[[nodiscard]] FamilyEntry InfoFamily();
[[nodiscard]] FamilyEntry PortFamily();
[[nodiscard]] FamilyEntry TimeFamily();
[[nodiscard]] FamilyEntry LagFamily();
[[nodiscard]] FamilyEntry SerialFamily();
[[nodiscard]] FamilyEntry ErrorFamily();
[[nodiscard]] FamilyEntry LogFamily();

// All of them, in the order of docs/rules.md.
[[nodiscard]] std::span<const FamilyEntry> Families();

template <typename Family>
[[nodiscard]] std::unique_ptr<RuleFamily> MakeFamily(Findings& findings, const LogKnowledge& log) {
  return std::make_unique<Family>(findings, log);
}

// Whether the log's end isn't the session's: what is open then wasn't left open for that. Says so
// among what isn't judged, for `rule`.
[[nodiscard]] bool EndsInTheMiddle(const SessionModel& model, const LogKnowledge& log,
                                   std::string_view rule, Findings& findings);

// Takes closed handles out of a map by handles once it holds more than `most`: memory stays
// bounded, even if handles are opened and closed for days.
template <typename Map>
void ForgetClosed(Map& map, const Handles& handles, std::size_t most) {
  if (map.size() > most) {
    std::erase_if(map, [&handles](const auto& each) { return !handles.At(each.first).isOpen; });
  }
}

// Tells faults of one rule from each other: by handle, and by whatever else there is.
[[nodiscard]] constexpr std::uint64_t KeyOf(std::uint64_t handle,
                                            std::uint64_t other = 0) noexcept {
  return handle ^ (other + 1) * 0x9E3779B97F4A7C15U;
}
[[nodiscard]] inline std::uint64_t KeyOf(HandleId handle, Function function) noexcept {
  return KeyOf(handle, static_cast<std::uint64_t>(function));
}

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_RULES_FAMILY_H
