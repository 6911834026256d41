// SPDX-License-Identifier: MIT
// Environment variables: those of this process, or those that an application is going to get.
#ifndef VEXTREL_PROGRAM_LAUNCHING_VARIABLES_H
#define VEXTREL_PROGRAM_LAUNCHING_VARIABLES_H

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "launching/fault.h"

namespace vextrel::program {

inline constexpr const char* kPathVariable = "GENICAM_GENTL64_PATH";
inline constexpr const char* kPathVariable32 = "GENICAM_GENTL32_PATH";
inline constexpr const char* kTargetVariable = "GENICAM_GENTL64_VEXTREL_PRODUCER";
inline constexpr const char* kConfigVariable = "GENICAM_GENTL64_VEXTREL_LOG_CONFIG";

// True iff the system takes Path and PATH for the same variable.
extern const bool kNamesIgnoreCase;

class Variables {
 public:
  explicit Variables(bool ignoresCase = kNamesIgnoreCase) : values_(Less{ignoresCase}) {}

  // Empty if there's no such variable. One without a value counts as none, as it does for the
  // module.
  [[nodiscard]] std::optional<std::string> Find(std::string_view name) const;
  void Set(const std::string& name, std::string value);
  void Remove(std::string_view name);

  // "NAME=VALUE", in the order that Windows wants.
  [[nodiscard]] std::vector<std::string> Entries() const;

 private:
  struct Less {
    using is_transparent = void;
    bool operator()(std::string_view one, std::string_view other) const noexcept;
    bool ignoresCase;
  };

  std::map<std::string, std::string, Less> values_;
};

// Replaces the first $(NAME) of a path, as the module does. Empty if there's no such variable;
// `missing` is then its name.
[[nodiscard]] std::optional<std::string> ExpandReference(std::string_view text,
                                                         const Variables& variables,
                                                         std::string* missing = nullptr);

// Why the reference in the value of this variable can't be replaced. Nothing if it can, or there's
// none.
[[nodiscard]] std::optional<Fault> FaultOfReference(std::string_view name,
                                                    const Variables& variables);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_VARIABLES_H
