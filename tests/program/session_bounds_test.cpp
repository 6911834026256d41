// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "model/session_model.h"
#include "program/model_of.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(SessionBounds, BeginWithEachInitialization) {
  const SessionModel model =
      ModelOf(SmallSession() + SmallSession() + LogLine(2000, "GC_ERR_SUCCESS=GCInitLib(void)"));
  ASSERT_EQ(model.Sessions().size(), 3U);
  EXPECT_EQ(model.Sessions()[0].producer, "/opt/camera.cti");
  EXPECT_EQ(model.Sessions()[0].producerVersion, "1.2.3.4");
  EXPECT_TRUE(model.Sessions()[1].wasClosed);
  EXPECT_EQ(model.Sessions()[1].begin.line, 37U);
  EXPECT_EQ(model.Sessions()[2].begin.line, 73U);
  EXPECT_FALSE(model.Sessions()[2].wasClosed);
  // The same values are other handles.
  EXPECT_EQ(model.AllHandles().At(Named(model, "DEV2")).session, 2U);
}

// The thread id says nothing then: the second one may be another process's.
TEST(SessionBounds, DoNotBeginWithAnInitializationThatIsRefused) {
  const std::string loading = LogLine(1, "Loading GenTL Producer '/opt/other.cti'") +
                              LogLine(1, "GenTL producer file version: '9.9.9.9'");
  const std::string opened =
      LogLine(0, "Loading GenTL Producer '/opt/camera.cti'") +
      LogLine(0, "GC_ERR_SUCCESS=GCInitLib(void)") +
      LogLine(1, "GC_ERR_SUCCESS=TLOpen(0x000000000000F000->(pHandle=0x0000000000000A10))");
  const SessionModel refused =
      ModelOf(opened + loading + LogLine(2, "GC_ERR_RESOURCE_IN_USE=GCInitLib(void)"));
  ASSERT_EQ(refused.Sessions().size(), 1U);
  EXPECT_EQ(refused.Sessions()[0].producer, "/opt/camera.cti");
  EXPECT_TRUE(refused.AllHandles().At(Named(refused, "TL1")).isOpen);
  const SessionModel another =
      ModelOf(opened + loading + LogLine(2, "GC_ERR_SUCCESS=GCInitLib(void)"));
  ASSERT_EQ(another.Sessions().size(), 2U);
  EXPECT_EQ(another.Sessions()[1].begin.line, 4U);
  EXPECT_EQ(another.Sessions()[1].producer, "/opt/other.cti");
  EXPECT_EQ(another.Sessions()[1].producerVersion, "9.9.9.9");
  EXPECT_FALSE(another.AllHandles().At(Named(another, "TL1")).isOpen);
  // It hangs, or the process has ended in it.
  const SessionModel unknown = ModelOf(opened + loading);
  EXPECT_EQ(unknown.Sessions().size(), 2U);
}

TEST(SessionBounds, GiveReportsTheWritersPriorities) {
  int warnings = 0;
  int infos = 0;
  for (std::size_t i = 0; i < ReportShapes().size(); ++i) {
    warnings += PriorityOfReport(i) == Priority::Warn ? 1 : 0;
    infos += PriorityOfReport(i) == Priority::Info ? 1 : 0;
  }
  EXPECT_EQ(warnings, 5);
  EXPECT_EQ(infos, 4);
}

}  // namespace
}  // namespace vextrel_test
