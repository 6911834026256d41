// Reading what the producer tells about its modules. Every function here throws Error when a
// query fails, and returns nothing for what the producer does not offer.
#ifndef VEXTREL_SAMPLES_GRAB_INFO_H
#define VEXTREL_SAMPLES_GRAB_INFO_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "gentl_functions.h"

namespace grab {

using InfoQuery = std::function<GC_ERROR(INFO_DATATYPE* type, void* buffer, std::size_t* size)>;

// Asks for the size first, then for the text.
[[nodiscard]] std::optional<std::string> ReadText(const GenTl& gentl, const char* function,
                                                  const InfoQuery& query);

// Asks once, with room for the largest number. Pointers are numbers, too; negative numbers come
// sign-extended.
[[nodiscard]] std::optional<std::uint64_t> ReadNumber(const GenTl& gentl, const char* function,
                                                      const InfoQuery& query);

// The arguments are those of the function but for the last three.
template <typename F, typename... Arguments>
[[nodiscard]] std::optional<std::string> TextInfo(const GenTl& gentl, const F& function,
                                                  Arguments... arguments) {
  return ReadText(gentl, function.Name(),
                  [&](INFO_DATATYPE* type, void* buffer, std::size_t* size) {
                    return function(arguments..., type, buffer, size);
                  });
}

template <typename F, typename... Arguments>
[[nodiscard]] std::optional<std::uint64_t> NumberInfo(const GenTl& gentl, const F& function,
                                                      Arguments... arguments) {
  return ReadNumber(gentl, function.Name(),
                    [&](INFO_DATATYPE* type, void* buffer, std::size_t* size) {
                      return function(arguments..., type, buffer, size);
                    });
}

// An ID or URL, which every producer must have. The arguments are those of the function but for
// the last two.
template <typename F, typename... Arguments>
[[nodiscard]] std::string RequiredText(const GenTl& gentl, const F& function,
                                       Arguments... arguments) {
  const std::optional<std::string> text =
      ReadText(gentl, function.Name(), [&](INFO_DATATYPE*, void* buffer, std::size_t* size) {
        return function(arguments..., static_cast<char*>(buffer), size);
      });
  if (!text) {
    throw Error(std::string(function.Name()) + " is not implemented by the producer.");
  }
  return *text;
}

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_INFO_H
