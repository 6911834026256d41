// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "model/session_model.h"
#include "program/model_of.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(SessionOpenings, TellWhoOpenedWhatWhere) {
  const SessionModel model = ModelOf(SmallSession());
  const Handles& handles = model.AllHandles();
  const Handle& device = handles.At(Named(model, "DEV1"));
  EXPECT_EQ(handles.FullName(Named(model, "DEV1")), "DEV1 \"Cam2\"");
  EXPECT_EQ(device.value, 0x00000001000C0DE0U);
  EXPECT_EQ(device.openedAt->line, 8U);
  EXPECT_EQ(device.closedAt->line, 33U);
  EXPECT_EQ(handles.Name(device.parent), "IF1");
  EXPECT_EQ(handles.At(Named(model, "IF1")).id, "If, (0)");
  EXPECT_EQ(handles.FullName(Named(model, "EV1")), "EV1 NEW_BUFFER of DS1");
  // The stream's closing takes them along; nobody closed them.
  EXPECT_FALSE(handles.At(Named(model, "EV1")).closedAt.has_value());
  EXPECT_FALSE(handles.At(Named(model, "EV1")).isOpen);
  EXPECT_EQ(handles.At(Named(model, "EV1")).closedWith, Named(model, "DS1"));
  EXPECT_EQ(handles.At(Named(model, "DS1")).closedWith, kNoHandle);
  EXPECT_FALSE(handles.At(Named(model, "BUF2")).closedAt.has_value());
  EXPECT_EQ(handles.At(Named(model, "BUF1")).closedAt->line, 29U);
  EXPECT_TRUE(handles.OpenOnes().empty());
}

TEST(SessionOpenings, DoNotTrustOutputsOfFailedCalls) {
  const SessionModel model =
      ModelOf(LogLine(0, "GC_ERR_ERROR=TLOpen(0x000000000000F000->(pHandle=0x00000000DEADBEEF))"));
  EXPECT_EQ(model.AllHandles().Last(), 0U);
}

}  // namespace
}  // namespace vextrel_test
