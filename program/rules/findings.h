// SPDX-License-Identifier: MIT
// What the rules found: each fault once, with its evidence and with how often it came.
#ifndef VEXTREL_PROGRAM_RULES_FINDINGS_H
#define VEXTREL_PROGRAM_RULES_FINDINGS_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "reading/record_reader.h"
#include "rules/rule.h"

namespace vextrel::program {

// Another line that explains a finding, or belongs to it.
struct Related {
  LogPlace place;
  std::string what;
};

struct Finding {
  const Rule* rule = nullptr;
  Severity severity = Severity::Info;
  std::string message;  // one sentence or two; names handles as all of the program does
  LogPlace place;       // of the first time
  LogPlace last;
  std::optional<std::int64_t> time;  // in microseconds, as the log shows it
  std::uint32_t thread = 0;          // from 1; 0 if it isn't known
  std::vector<std::string> handles;
  std::vector<Related> related;
  std::uint64_t count = 1;
};

// What couldn't be judged, and why.
struct Unknown {
  std::string rules;  // their ids, or what they have in common
  std::string why;
  std::vector<const Rule*> which = {};  // empty: any
};

// Where and when something is found.
struct Moment {
  LogPlace place;
  std::optional<std::int64_t> time;
  std::uint32_t thread = 0;
};

class Findings {
 public:
  // So many different ones of each rule are kept; the rest are counted only.
  static constexpr std::uint64_t kMostOfARule = 50;
  static constexpr std::size_t kMostRelated = 12;

  // A fault was found. `key` tells it from other faults of its rule. Returns it, to be described,
  // if it's new; otherwise null, and it's counted.
  [[nodiscard]] Finding* Add(const Rule& rule, Severity severity, std::uint64_t key,
                             const Moment& moment);
  // As Add, but returns it when it's counted, too: to be described anew. Null if it isn't kept.
  [[nodiscard]] Finding* AddOrUpdate(const Rule& rule, Severity severity, std::uint64_t key,
                                     const Moment& moment);
  // The finding of that rule and key, or null.
  [[nodiscard]] Finding* Find(const Rule& rule, std::uint64_t key);
  // So often something was found: tells a caller whether anything was found since.
  [[nodiscard]] std::uint64_t Count() const noexcept { return count_; }
  // The one that was found or counted last, or null.
  [[nodiscard]] Finding* Last() noexcept { return last_; }

  // Says once why rules stay silent.
  void AddUnknown(std::string rules, std::string why, std::vector<const Rule*> which = {});
  // Takes away what these rules found. Returns true iff there was anything.
  bool Drop(bool (*isDropped)(const Finding& finding));
  // From the first line to the last. Findings at the same line stay in their order.
  void Sort();

  [[nodiscard]] const std::deque<Finding>& All() const noexcept { return all_; }
  [[nodiscard]] const std::vector<Unknown>& Unknowns() const noexcept { return unknowns_; }
  // How many different ones of the rule there are beyond those in All().
  [[nodiscard]] std::uint64_t Beyond(const Rule& rule) const;

 private:
  struct OfRule {
    std::uint64_t kept = 0;
    std::uint64_t beyond = 0;
    std::unordered_map<std::uint64_t, Finding*> byKey;
  };

  std::deque<Finding> all_;
  std::unordered_map<const Rule*, OfRule> rules_;
  std::vector<Unknown> unknowns_;
  std::uint64_t count_ = 0;
  Finding* last_ = nullptr;
};

// Adds a related line unless there are many already.
void Relate(Finding& finding, const LogPlace& place, std::string what);
void Relate(Finding& finding, const std::optional<LogPlace>& place, std::string what);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_RULES_FINDINGS_H
