// SPDX-License-Identifier: MIT
#include "model/handles.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(Handles, HaveNamesOfTheirKind) {
  Handles handles;
  const HandleId first = handles.Open(HandleKind::Device, 1, kNoHandle);
  const HandleId second = handles.Open(HandleKind::Device, 2, kNoHandle);
  const HandleId stream = handles.Open(HandleKind::DataStream, 3, second);
  const HandleId event = handles.Open(HandleKind::Event, 4, stream);
  handles.At(second).id = "SimCam2";
  handles.At(event).id = "NEW_BUFFER";
  EXPECT_EQ(handles.FullName(first), "DEV1");
  EXPECT_EQ(handles.FullName(second), "DEV2 \"SimCam2\"");
  EXPECT_EQ(handles.Name(second), "DEV2");
  EXPECT_EQ(handles.FullName(event), "EV1 NEW_BUFFER of DS1");
}

TEST(Handles, WithTheSameValueAreOneForEachKindAndGeneration) {
  Handles handles;
  const HandleId device = handles.Open(HandleKind::Device, 5, kNoHandle);
  const HandleId port = handles.Open(HandleKind::Port, 5, device);
  EXPECT_EQ(handles.Find(HandleKind::Device, 5), device);
  EXPECT_EQ(handles.Find(HandleKind::Port, 5), port);
  EXPECT_EQ(handles.Find(HandleKind::Any, 5), port);
  EXPECT_EQ(handles.Find(HandleKind::DataStream, 5), kNoHandle);
  handles.End(device);
  EXPECT_FALSE(handles.At(port).isOpen);
  // What was closed is still known by its value.
  EXPECT_EQ(handles.Find(HandleKind::Device, 5), device);
  const HandleId again = handles.Open(HandleKind::Device, 5, kNoHandle);
  EXPECT_EQ(handles.Find(HandleKind::Device, 5), again);
  EXPECT_EQ(handles.Find(HandleKind::Any, 5), again);
  EXPECT_EQ(handles.Name(again), "DEV2");
}

TEST(Handles, EndWithTheirParents) {
  Handles handles;
  const HandleId device = handles.Open(HandleKind::Device, 1, kNoHandle);
  const HandleId stream = handles.Open(HandleKind::DataStream, 2, device);
  const HandleId buffer = handles.Open(HandleKind::Buffer, 3, stream);
  const HandleId other = handles.Open(HandleKind::Device, 4, kNoHandle);
  handles.End(stream);
  EXPECT_TRUE(handles.At(device).isOpen);
  EXPECT_FALSE(handles.At(stream).isOpen);
  EXPECT_FALSE(handles.At(buffer).isOpen);
  EXPECT_EQ(handles.OpenOnes(), (std::vector<HandleId>{device, other}));
  handles.EndAll();
  EXPECT_TRUE(handles.OpenOnes().empty());
}

TEST(Handles, OfDevicesAreJoinedWithTheirWholeValues) {
  Handles handles;
  const HandleId device = handles.OpenHalf(0x86E2E930, kNoHandle);
  EXPECT_TRUE(handles.At(device).isHalf);
  EXPECT_EQ(handles.Find(HandleKind::Device, 0x000055B586E2E931), kNoHandle);
  EXPECT_EQ(handles.Find(HandleKind::Device, 0x000055B586E2E930), device);
  EXPECT_FALSE(handles.At(device).isHalf);
  EXPECT_EQ(handles.At(device).value, 0x000055B586E2E930U);
  // The same value once more is the next generation.
  handles.End(device);
  const HandleId next = handles.OpenHalf(0x86E2E930, kNoHandle);
  EXPECT_EQ(handles.Find(HandleKind::Any, 0x000055B586E2E930), next);
  EXPECT_EQ(handles.Name(next), "DEV2");
}

TEST(Handles, ThatWereOpenBeforeTheLogAreMadeKnown) {
  Handles handles;
  const HandleId stream = handles.FindOrAdd(HandleKind::DataStream, 9);
  EXPECT_NE(stream, kNoHandle);
  EXPECT_FALSE(handles.At(stream).openedAt.has_value());
  EXPECT_EQ(handles.FindOrAdd(HandleKind::DataStream, 9), stream);
  EXPECT_EQ(handles.FindOrAdd(HandleKind::Buffer, 0), kNoHandle);
}

TEST(Handles, MayBeMany) {
  Handles handles;
  for (std::uint64_t value = 1; value <= 10'000; ++value) {
    handles.Open(HandleKind::Buffer, value << 12U, kNoHandle);
  }
  for (std::uint64_t value = 1; value <= 10'000; ++value) {
    EXPECT_EQ(handles.Find(HandleKind::Buffer, value << 12U), value);
  }
}

}  // namespace
}  // namespace vextrel_test
