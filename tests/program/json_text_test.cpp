// SPDX-License-Identifier: MIT
#include "views/json_text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace vextrel_test {
namespace {

std::string Quoted(std::string_view text) {
  std::string out;
  vextrel::program::AppendJsonText(out, text);
  return out;
}

TEST(JsonText, EscapesWhatJsonWantsEscaped) {
  EXPECT_EQ(Quoted("plain"), "\"plain\"");
  EXPECT_EQ(Quoted("\"\\\n\x1b\x7F"), "\"\\\"\\\\\\n\\u001b\\u007f\"");
  EXPECT_EQ(Quoted("\xC3\xA4"), "\"\xC3\xA4\"");
}

TEST(JsonText, IsReadByOthersWhateverTheBytesAre) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text = {'a', static_cast<char>(byte), 'b'};
    const std::string read = nlohmann::json::parse(Quoted(text)).get<std::string>();
    EXPECT_TRUE(byte < 0x80 ? read == text : read.starts_with("a\\x")) << byte;
  }
}

}  // namespace
}  // namespace vextrel_test
