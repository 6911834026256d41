// SPDX-License-Identifier: MIT
// The module's version resource, which only Windows modules carry.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "support/proxy.h"

namespace vextrel_test {
namespace {

class VersionResource : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string path = ProxyPath().string();
    DWORD ignored = 0;
    block_.resize(::GetFileVersionInfoSizeA(path.c_str(), &ignored));
    ASSERT_FALSE(block_.empty());
    ASSERT_NE(
        ::GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block_.size()), block_.data()),
        0);
  }

  template <typename Value>
  const Value* Query(const std::string& name) {
    void* found = nullptr;
    UINT length = 0;
    return ::VerQueryValueA(block_.data(), name.c_str(), &found, &length) != 0 && length > 0
               ? static_cast<const Value*>(found)
               : nullptr;
  }
  std::string Text(const std::string& name) {
    const char* text = Query<char>("\\StringFileInfo\\040904B0\\" + name);
    return text != nullptr ? text : "(not there)";
  }

 private:
  std::vector<char> block_;
};

TEST_F(VersionResource, FixedInformationIsThatOfADllOfTheProjectsVersion) {
  const auto* fixed = Query<VS_FIXEDFILEINFO>("\\");
  ASSERT_NE(fixed, nullptr);
  constexpr DWORD kHigh = PROJECT_VERSION_MAJOR << 16U | PROJECT_VERSION_MINOR;
  constexpr DWORD kLow = PROJECT_VERSION_PATCH << 16U;
  EXPECT_EQ(fixed->dwFileVersionMS, kHigh);
  EXPECT_EQ(fixed->dwFileVersionLS, kLow);
  EXPECT_EQ(fixed->dwProductVersionMS, kHigh);
  EXPECT_EQ(fixed->dwProductVersionLS, kLow);
  EXPECT_EQ(fixed->dwFileType, DWORD{VFT_DLL});
}

TEST_F(VersionResource, TextsNameTheModule) {
  EXPECT_EQ(Text("ProductName"), "Vextrel");
  EXPECT_EQ(Text("OriginalFilename"), "vextrel.cti");
  const std::string version = std::to_string(PROJECT_VERSION_MAJOR) + "." +
                              std::to_string(PROJECT_VERSION_MINOR) + "." +
                              std::to_string(PROJECT_VERSION_PATCH);
  EXPECT_EQ(Text("FileVersion"), version);
  EXPECT_EQ(Text("ProductVersion"), version);
}

}  // namespace
}  // namespace vextrel_test
