// SPDX-License-Identifier: MIT
#include "rules/findings.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace vextrel::program {

Finding* Findings::Add(const Rule& rule, Severity severity, std::uint64_t key,
                       const Moment& moment) {
  ++count_;
  OfRule& ofRule = rules_[&rule];
  if (const auto known = ofRule.byKey.find(key); known != ofRule.byKey.end()) {
    last_ = known->second;
    ++last_->count;
    last_->last = moment.place;
    last_->severity = std::max(last_->severity, severity);
    return nullptr;
  }
  if (ofRule.kept == kMostOfARule) {
    ++ofRule.beyond;
    last_ = nullptr;
    return nullptr;
  }
  ++ofRule.kept;
  Finding& finding = all_.emplace_back();
  finding.rule = &rule;
  finding.severity = severity;
  finding.place = moment.place;
  finding.last = moment.place;
  finding.time = moment.time;
  finding.thread = moment.thread;
  ofRule.byKey.emplace(key, &finding);
  last_ = &finding;
  return last_;
}

Finding* Findings::Find(const Rule& rule, std::uint64_t key) {
  const auto ofRule = rules_.find(&rule);
  if (ofRule == rules_.end()) {
    return nullptr;
  }
  const auto known = ofRule->second.byKey.find(key);
  return known == ofRule->second.byKey.end() ? nullptr : known->second;
}

Finding* Findings::AddOrUpdate(const Rule& rule, Severity severity, std::uint64_t key,
                               const Moment& moment) {
  Finding* added = Add(rule, severity, key, moment);
  return added != nullptr ? added : Find(rule, key);
}

void Findings::AddUnknown(std::string rules, std::string why, std::vector<const Rule*> which) {
  for (const Unknown& each : unknowns_) {
    if (each.rules == rules && each.why == why) {
      return;
    }
  }
  unknowns_.push_back({std::move(rules), std::move(why), std::move(which)});
}

bool Findings::Drop(bool (*isDropped)(const Finding& finding)) {
  // Nothing refers to the findings any more.
  rules_.clear();
  last_ = nullptr;
  return std::erase_if(all_, isDropped) != 0;
}

void Findings::Sort() {
  std::stable_sort(all_.begin(), all_.end(), [](const Finding& a, const Finding& b) {
    return std::tie(b.severity, a.place.file, a.place.line) <
           std::tie(a.severity, b.place.file, b.place.line);
  });
}

std::uint64_t Findings::Beyond(const Rule& rule) const {
  const auto ofRule = rules_.find(&rule);
  return ofRule == rules_.end() ? 0 : ofRule->second.beyond;
}

void Relate(Finding& finding, const LogPlace& place, std::string what) {
  if (finding.related.size() < Findings::kMostRelated) {
    finding.related.push_back({place, std::move(what)});
  }
}

void Relate(Finding& finding, const std::optional<LogPlace>& place, std::string what) {
  if (place.has_value()) {
    Relate(finding, *place, std::move(what));
  }
}

}  // namespace vextrel::program
