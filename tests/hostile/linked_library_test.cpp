// SPDX-License-Identifier: MIT
// A target that lacks a function which a library that it links has. Only on Linux does the loader
// look further when it is asked for an export.
#include <gtest/gtest.h>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using LinkedLibrary = LibraryFixture;

TEST_F(LinkedLibrary, IsNotCalledInPlaceOfItsTarget) {
  const std::filesystem::path path = TargetPath("odd_target");
  const Module target(path);
  ASSERT_NE(target.FindAddress("TLOpen"), nullptr) << "the loader has to find it";
  Bind(path);
  TL_HANDLE handle = nullptr;
  EXPECT_EQ(proxy.TLOpen(&handle), -1003);
  EXPECT_EQ(handle, nullptr);
}

}  // namespace
}  // namespace vextrel_test
