// SPDX-License-Identifier: MIT
// Paths as text, and files as bytes.
#ifndef VEXTREL_PROGRAM_IMAGES_FILE_BYTES_H
#define VEXTREL_PROGRAM_IMAGES_FILE_BYTES_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vextrel::program {

// UTF-16 as UTF-8 and back. A surrogate without its partner, which Windows allows in names, becomes
// three bytes that no other text has, and comes back as it was.
[[nodiscard]] std::string FromUtf16(std::u16string_view text);
[[nodiscard]] std::u16string ToUtf16(std::string_view text);

// Paths are text in UTF-8 on Windows, and whatever bytes they consist of on Linux.
[[nodiscard]] std::filesystem::path PathOf(std::string_view text);
[[nodiscard]] std::string TextOf(const std::filesystem::path& path);

// The first `most` bytes of a file. Empty if it can't be read.
[[nodiscard]] std::optional<std::string> ReadBytes(const std::filesystem::path& path,
                                                   std::uint64_t most = UINT64_MAX);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_IMAGES_FILE_BYTES_H
