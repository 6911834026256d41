// SPDX-License-Identifier: MIT
#include "launching/variables.h"

#include <algorithm>

namespace vextrel::program {
namespace {

unsigned char Upper(char letter) {
  return static_cast<unsigned char>(letter >= 'a' && letter <= 'z' ? letter - 'a' + 'A' : letter);
}

}  // namespace

bool Variables::Less::operator()(std::string_view one, std::string_view other) const noexcept {
  if (!ignoresCase) {
    return one < other;
  }
  return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end(),
                                      [](char a, char b) { return Upper(a) < Upper(b); });
}

std::optional<std::string> Variables::Find(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end() || found->second.empty()) {
    return std::nullopt;
  }
  return found->second;
}

void Variables::Set(const std::string& name, std::string value) {
  values_.insert_or_assign(name, std::move(value));
}

void Variables::Remove(std::string_view name) {
  if (const auto found = values_.find(name); found != values_.end()) {
    values_.erase(found);
  }
}

std::vector<std::string> Variables::Entries() const {
  std::vector<std::string> entries;
  entries.reserve(values_.size());
  for (const auto& [name, value] : values_) {
    entries.push_back(std::string(name).append("=").append(value));
  }
  return entries;
}

std::optional<std::string> ExpandReference(std::string_view text, const Variables& variables,
                                           std::string* missing) {
  const std::size_t begin = text.find("$(");
  const std::size_t end =
      begin == std::string_view::npos ? std::string_view::npos : text.find(')', begin);
  if (end == std::string_view::npos) {
    return std::string(text);
  }
  const std::string_view name = text.substr(begin + 2, end - begin - 2);
  const std::optional<std::string> value = variables.Find(name);
  if (!value) {
    if (missing != nullptr) {
      *missing = name;
    }
    return std::nullopt;
  }
  return std::string(text.substr(0, begin)).append(*value).append(text.substr(end + 1));
}

std::optional<Fault> FaultOfReference(std::string_view name, const Variables& variables) {
  std::string missing;
  if (ExpandReference(variables.Find(name).value_or(std::string()), variables, &missing)) {
    return std::nullopt;
  }
  return Fault{"$(" + missing + ") in " + std::string(name) + " can't be replaced",
               "set " + missing + ", or write the path itself"};
}

}  // namespace vextrel::program
