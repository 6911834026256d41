// SPDX-License-Identifier: MIT
#include "reading/entries.h"

#include <charconv>
#include <span>
#include <string>

namespace vextrel::program {
namespace {

constexpr std::string_view kMore = " (and ";
constexpr std::string_view kMoreEnd = " more)";
// How often the end of a value is looked for before the text counts as no list: 64 entries need
// 448.
constexpr int kTries = 4096;
// The only value that may hold anything.
constexpr std::string_view kFreeLabel = "Buffer";

constexpr std::string_view kChunk[] = {"ChunkID", "ChunkOffset", "ChunkLength"};
constexpr std::string_view kSegment[] = {"pBuffer", "iSize"};
constexpr std::string_view kInfo[] = {"iCmd", "iType", "Buffer", "iSize", "iResult"};
constexpr std::string_view kPartInfo[] = {"iPartIndex", "iCmd",    "iType", "Buffer",
                                          "iSize",      "iResult", "Order"};

struct EntryKind {
  std::string_view name;
  std::span<const std::string_view> labels;
};
constexpr EntryKind kKinds[] = {
    {"Chunk", kChunk}, {"Segment", kSegment}, {"Info", kInfo}, {"Info", kPartInfo}};

class Reader {
 public:
  Reader(const EntryKind& kind, std::string_view text) noexcept : kind_(kind), text_(text) {}

  bool Read(Entries& entries) {
    entries.shown.clear();
    entries.more = 0;
    std::size_t at = 0;
    while (StartsEntry(at, entries.shown.size())) {
      Entry entry;
      if (!ReadFields(entry, 0, at, entries.shown.size())) {
        return false;
      }
      entries.shown.push_back(entry);
    }
    return ReadMore(at, entries.more);
  }

 private:
  bool Take(std::string_view literal, std::size_t& at) const noexcept {
    if (!text_.substr(at).starts_with(literal)) {
      return false;
    }
    at += literal.size();
    return true;
  }

  // Takes `Kind[index]=(`.
  bool StartsEntry(std::size_t& at, std::size_t index) const {
    const std::string head = std::string(kind_.name) + "[" + std::to_string(index) + "]=(";
    return Take(head, at);
  }

  // Takes the fields from `field` on and what ends the entry.
  bool ReadFields(Entry& entry, std::size_t field, std::size_t& at, std::size_t index) {
    if (field == kind_.labels.size()) {
      entry.count = field;
      return Take(");", at) && EndsEntry(at, index);
    }
    const std::string_view label = kind_.labels[field];
    if ((field > 0 && !Take(", ", at)) || !Take(label, at) || !Take("=", at)) {
      return false;
    }
    const bool isLast = field + 1 == kind_.labels.size();
    const std::string next = isLast ? ");" : ", " + std::string(kind_.labels[field + 1]) + "=";
    for (std::size_t end = text_.find(next, at); end != std::string_view::npos;
         end = text_.find(next, end + 1)) {
      if (--tries_ < 0) {
        return false;
      }
      std::size_t rest = end;
      if (ReadFields(entry, field + 1, rest, index)) {
        entry.fields[field] = {label, text_.substr(at, end - at)};
        at = rest;
        return true;
      }
      if (label != kFreeLabel) {
        return false;
      }
    }
    return false;
  }

  // Another entry follows, the number of those left out, or nothing.
  [[nodiscard]] bool EndsEntry(std::size_t at, std::size_t index) const {
    return at == text_.size() || StartsEntry(at, index + 1) || text_.substr(at).starts_with(kMore);
  }

  bool ReadMore(std::size_t at, std::uint64_t& more) const noexcept {
    if (at == text_.size()) {
      return true;
    }
    if (!Take(kMore, at)) {
      return false;
    }
    const char* end = text_.data() + text_.size();
    const auto [read, error] = std::from_chars(text_.data() + at, end, more);
    return error == std::errc() &&
           std::string_view(read, static_cast<std::size_t>(end - read)) == kMoreEnd;
  }

  const EntryKind& kind_;
  std::string_view text_;
  int tries_ = kTries;
};

}  // namespace

std::string_view Entry::Find(std::string_view label) const noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    if (fields[i].label == label) {
      return fields[i].value;
    }
  }
  return {};
}

bool ReadEntries(std::string_view text, Entries& entries) {
  for (const EntryKind& kind : kKinds) {
    if (Reader(kind, text).Read(entries)) {
      return true;
    }
  }
  entries.shown.clear();
  entries.more = 0;
  return false;
}

}  // namespace vextrel::program
