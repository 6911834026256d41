// SPDX-License-Identifier: MIT
#include "reading/property_file.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(PropertyFile, NamesThePattern) {
  EXPECT_EQ(LayoutOfProperties("# appender.x.layout=SimpleLayout\r\n"
                               "rootCategory=INFO, file\r\n"
                               "appender.file.layout = PatternLayout\r\n"
                               "appender.file.layout.ConversionPattern=%d [%t] %m%n\r\n")
                .Name(),
            "%d [%t] %m%n");
  EXPECT_EQ(LayoutOfProperties("log4cpp.appender.a.layout=SimpleLayout").Name(), "SimpleLayout");
  EXPECT_EQ(LayoutOfProperties("appender.a.layout=BasicLayout").Name(), "%R %p %c %x: %m%n");
  EXPECT_TRUE(LayoutOfProperties("appender.a.layout=PassThroughLayout").IsGlued());
  EXPECT_EQ(LayoutOfProperties("appender.a.layout=PatternLayout").Name(), "%m%n");
}

TEST(PropertyFile, IsRefusedWithoutALayout) {
  EXPECT_THROW(static_cast<void>(LayoutOfProperties("rootCategory=INFO")), std::runtime_error);
  EXPECT_THROW(static_cast<void>(LayoutOfProperties("appender.a.layout=MyLayout")),
               std::runtime_error);
  EXPECT_THROW(static_cast<void>(LayoutOfPropertyFile("no such file")), std::runtime_error);
}

TEST(PropertyFile, IsReadFromAFile) {
  const ScratchFile file("appender.a.layout=SimpleLayout\n", "log.properties");
  EXPECT_EQ(LayoutOfPropertyFile(file.Path()).Name(), "SimpleLayout");
}

}  // namespace
}  // namespace vextrel_test
