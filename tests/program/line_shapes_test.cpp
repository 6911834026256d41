// SPDX-License-Identifier: MIT
#include "reading/line_shapes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "calllog/log_text.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;

const LineShape& ShapeOf(std::string_view function) {
  const std::size_t index = FindCallShape(function);
  EXPECT_NE(index, kNoPlace) << function;
  return CallShapes()[index];
}

TEST(LineShapes, LabelTheSizeThatHasNoLabel) {
  const LineShape& shape = ShapeOf("GCGetPortInfo");
  const std::size_t size = shape.Find("iSize");
  ASSERT_NE(size, kNoPlace);
  EXPECT_EQ(shape.places[size].conversion, vextrel::Conversion::Unsigned32);
}

TEST(LineShapes, HaveEveryLineOfTheLog) {
  ASSERT_EQ(CallShapes().size(), vextrel::kCallLines.size());
  ASSERT_EQ(ReportShapes().size(), vextrel::kReports.size());
  ASSERT_EQ(TimingShapes().size(), vextrel::kTimingLines.size());
  for (const LineShape& shape : CallShapes()) {
    // Put together again, they are the writer's formats.
    std::string whole = "%s=" + std::string(shape.function) + "(";
    for (const Place& place : shape.places) {
      whole += place.literal;
      switch (place.conversion) {
        case vextrel::Conversion::Text:
          whole += "%s";
          break;
        case vextrel::Conversion::Pointer:
          whole += "%p";
          break;
        case vextrel::Conversion::Unsigned32:
          whole +=
              std::string_view(shape.text).substr(whole.size()).starts_with("%lu") ? "%lu" : "%u";
          break;
        case vextrel::Conversion::Signed32:
          whole += "%d";
          break;
        case vextrel::Conversion::Hex32:
          whole += "%x";
          break;
        case vextrel::Conversion::Hex64:
          whole += "%llx";
          break;
        case vextrel::Conversion::Unsigned64:
          whole += "%llu";
          break;
      }
    }
    EXPECT_EQ(whole.append(shape.tail), shape.text);
  }
}

TEST(LineShapes, KnowEveryLabel) {
  for (const LineShape& shape : CallShapes()) {
    for (const Place& place : shape.places) {
      EXPECT_TRUE(place.meaning != Meaning::Unknown) << "No table in line_shapes.cpp has the label "
                                                     << place.label << " of " << shape.function;
      if (place.conversion == vextrel::Conversion::Pointer && place.label.starts_with('h')) {
        EXPECT_TRUE(place.meaning == Meaning::Handle)
            << place.label << " of " << shape.function << " is no handle";
      }
    }
  }
}

TEST(LineShapes, HaveLabelsWithDifferentHashes) {
  std::map<std::uint64_t, std::string_view> labels;
  for (const LineShape& shape : CallShapes()) {
    for (const Place& place : shape.places) {
      EXPECT_EQ(labels.emplace(place.labelHash, place.label).first->second, place.label);
    }
  }
}

TEST(LineShapes, AreFoundByTheirFunctions) {
  std::set<std::string_view> functions;
  for (const LineShape& shape : CallShapes()) {
    EXPECT_EQ(FunctionNames()[shape.functionIndex], shape.function);
    EXPECT_EQ(ShapeOf(shape.function).function, shape.function);
    functions.insert(shape.function);
  }
  EXPECT_EQ(functions.size(), FunctionNames().size());
  EXPECT_EQ(FindCallShape("DSQueueBuffers"), kNoPlace);
  EXPECT_EQ(FindCallShape(""), kNoPlace);
}

TEST(LineShapes, LeadFromOneLineOfAFunctionToTheOther) {
  const LineShape& first = ShapeOf("IFOpenDevice");
  EXPECT_EQ(first.places.size(), 6U);
  ASSERT_NE(first.next, 0);
  EXPECT_EQ(CallShapes()[first.next].places.size(), 5U);
}

TEST(LineShapes, KnowHandlesByTheirLabels) {
  const LineShape& shape = ShapeOf("DevOpenDataStream");
  const Place& device = shape.places[shape.Find("hDev")];
  EXPECT_EQ(device.meaning, Meaning::Handle);
  EXPECT_EQ(device.kind, HandleKind::Device);
  EXPECT_FALSE(device.isOutput);
  const Place& stream = shape.places[shape.Find("hDS")];
  EXPECT_EQ(stream.meaning, Meaning::Handle);
  EXPECT_EQ(stream.kind, HandleKind::DataStream);
  EXPECT_TRUE(stream.isOutput);
  const Place& id = shape.places[shape.Find("pID")];
  EXPECT_EQ(id.meaning, Meaning::Text);
  EXPECT_FALSE(id.isOutput);
}

TEST(LineShapes, KnowHandlesWithout0x) {
  const LineShape& info = ShapeOf("TLGetInfo");
  EXPECT_EQ(info.places[0].meaning, Meaning::Handle);
  const LineShape& open = ShapeOf("TLOpenInterface");
  EXPECT_EQ(open.places[open.Find("hInterface")].meaning, Meaning::Handle);
  EXPECT_TRUE(open.places[open.Find("hInterface")].isOutput);
}

TEST(LineShapes, LeaveOutWhatStandsUnderAForeignLabel) {
  const LineShape& lastError = ShapeOf("GCGetLastError");
  EXPECT_EQ(lastError.Find("ErrorCode"), kNoPlace);
  EXPECT_EQ(lastError.Find("ErrorText"), 1U);
  EXPECT_EQ(lastError.places[lastError.Find("iSize")].meaning, Meaning::NumberAsPointer);
  const LineShape& interfaceInfo = ShapeOf("TLGetInterfaceInfo");
  EXPECT_EQ(interfaceInfo.Find("Buffer"), kNoPlace);
  EXPECT_EQ(interfaceInfo.places[interfaceInfo.Find("iSize")].meaning, Meaning::NumberAsPointer);
  const LineShape& stacked = ShapeOf("GCReadPortStacked");
  EXPECT_EQ(stacked.Find("iAddress"), kNoPlace);
  EXPECT_EQ(stacked.Find("Buffer"), kNoPlace);
  EXPECT_EQ(stacked.places[stacked.Find("iNumEntries")].meaning, Meaning::NumberAsText);
  const LineShape& dataInfo = ShapeOf("EventGetDataInfo");
  EXPECT_EQ(dataInfo.Find("iID"), kNoPlace);
  EXPECT_EQ(dataInfo.Find("iType"), kNoPlace);
}

}  // namespace
}  // namespace vextrel_test
