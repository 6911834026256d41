// SPDX-License-Identifier: MIT
#include "reading/line_shapes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "calllog/function_names.h"
#include "calllog/log_text.h"
#include "calllog/newer_value_tables.h"

namespace vextrel::program {
namespace {

struct DividedFormat {
  std::array<FormatPiece, kMaxConversions> pieces{};
  std::size_t count = 0;
};

template <std::size_t count>
consteval std::array<DividedFormat, count> DivideAll(
    const std::array<std::string_view, count>& texts) {
  std::array<DividedFormat, count> divided{};
  for (std::size_t i = 0; i < count; ++i) {
    divided[i].count = DivideFormat(texts[i], divided[i].pieces);
  }
  return divided;
}

constexpr auto kDividedCalls = DivideAll(kCallLines);
constexpr auto kDividedReports = DivideAll(kReports);
constexpr auto kDividedTimingLines = DivideAll(kTimingLines);

struct KindOfLabel {
  std::string_view label;
  HandleKind kind;
};
constexpr KindOfLabel kHandleLabels[] = {
    {"hTL", HandleKind::TransportLayer},
    {"pHandle", HandleKind::TransportLayer},
    {"hInterface", HandleKind::Interface},
    {"hDev", HandleKind::Device},
    {"hDS", HandleKind::DataStream},
    {"hBuffer", HandleKind::Buffer},
    {"hB", HandleKind::Buffer},
    {"hEvent", HandleKind::Event},
    {"hE", HandleKind::Event},
    {"pPort", HandleKind::Port},
    {"hPort", HandleKind::Any},
    {"hEventSrc", HandleKind::Any},
};

// "" stands for every function.
struct NamesOfLabel {
  std::string_view function;
  std::string_view label;
  const ValueTable* values;
};
constexpr NamesOfLabel kNameLabels[] = {
    {"", "iType", &names::kInfoDatatype},
    {"", "iEvent", &names::kEventType},
    {"", "QueueType", &names::kAcqQueueType},
    {"", "iOpenFlags", &names::kDeviceAccessFlags},
    {"", "iCommand", &names::kBufferInfoCmd},
    {"GCGetInfo", "iInfoCmd", &names::kTlInfoCmd},
    {"TLGetInfo", "iInfoCmd", &names::kTlInfoCmd},
    {"TLGetInterfaceInfo", "iCmd", &names::kInterfaceInfoCmd},
    {"IFGetInfo", "iID", &names::kInterfaceInfoCmd},
    {"IFGetDeviceInfo", "iID", &names::kDeviceInfoCmd},
    {"DevGetInfo", "iID", &names::kDeviceInfoCmd},
    {"DSStartAcquisition", "Flags", &names::kAcqStartFlags},
    {"DSStopAcquisition", "Flags", &names::kAcqStopFlags},
    {"DSGetInfo", "iCmd", &names::kStreamInfoCmd},
    {"GCGetPortInfo", "iCmd", &names::kPortInfoCmd},
    {"GCGetPortURLInfo", "iCmd", &names::kUrlInfoCmd},
    {"EventGetInfo", "iID", &names::kEventInfoCmd},
    {"DSGetBufferPartInfo", "iCmd", &newer::kBufferPartInfoCmd},
    {"DSGetFlowInfo", "iCmd", &newer::kFlowInfoCmd},
    {"DSGetBufferSegmentInfo", "iCmd", &newer::kSegmentInfoCmd},
};

// All other texts.
struct MeaningOfLabel {
  std::string_view function;
  std::string_view label;
  Meaning meaning;
};
constexpr MeaningOfLabel kTextLabels[] = {
    {"EventGetData", "Buffer", Meaning::Dump},
    {"GCWritePort", "Buffer", Meaning::Dump},
    {"TLGetInterfaceID", "Buffer", Meaning::Text},
    {"IFGetDeviceID", "Buffer", Meaning::Text},
    {"", "Buffer", Meaning::InfoValue},
    {"", "URL", Meaning::Text},
    {"", "pID", Meaning::Text},
    {"", "psDeviceName", Meaning::Text},
    {"", "sDevName", Meaning::Text},
    {"", "sInterfaceName", Meaning::Text},
    {"DevGetDataStreamID", "pBuffer", Meaning::Text},
    {"DSRevokeBuffer", "pBuffer", Meaning::PointerSlot},
    {"DSRevokeBuffer", "pPrivate", Meaning::PointerSlot},
    {"", "Chunks", Meaning::Entries},
    {"", "Segments", Meaning::Entries},
    {"", "Infos", Meaning::Entries},
    {"", "iSize", Meaning::NumberAsText},
    {"", "iNumChunks", Meaning::NumberAsText},
    {"", "iNumParts", Meaning::NumberAsText},
    {"", "iNumFlows", Meaning::NumberAsText},
    {"", "iNumSegments", Meaning::NumberAsText},
};

// Pointers that aren't handles.
constexpr std::string_view kAddressLabels[] = {"pBuffer", "pInBuffer", "pPrivate", "piSizes",
                                               "ppSegments"};

// Inputs that are shown like outputs, with the address that they lie at.
struct PointedInput {
  std::string_view function;
  std::string_view label;
};
constexpr PointedInput kPointedInputs[] = {
    {"TLGetInterfaceInfo", "sInterfaceName"},
    {"TLOpenInterface", "sInterfaceName"},
    {"IFOpenDevice", "sDevName"},
    {"DevOpenDataStream", "pID"},
    {"GCWritePort", "Buffer"},
};

// The irregular lines. The comments in log_text.h say what really stands in each place; what has no
// use beyond that is left out. An empty label keeps the place's own.
struct Irregular {
  std::string_view function;
  std::size_t place;
  std::string_view label;
  Meaning meaning;
};
constexpr Irregular kIrregular[] = {
    {"GCGetLastError", 0, "", Meaning::Nothing},
    {"GCGetLastError", 1, "ErrorText", Meaning::Text},
    {"GCGetLastError", 2, "", Meaning::Nothing},
    {"GCGetLastError", 3, "", Meaning::Nothing},
    {"GCGetLastError", 4, "iSize", Meaning::NumberAsPointer},
    {"GCGetLastError", 5, "", Meaning::Nothing},
    {"TLGetInterfaceInfo", 6, "", Meaning::Nothing},
    {"TLGetInterfaceInfo", 7, "", Meaning::Nothing},
    {"TLGetInterfaceInfo", 8, "iSize", Meaning::NumberAsPointer},
    {"TLGetInterfaceInfo", 9, "", Meaning::Nothing},
    {"GCReadPort", 3, "", Meaning::Nothing},
    {"GCReadPort", 4, "Buffer", Meaning::Dump},
    {"GCGetPortInfo", 7, "iSize", Meaning::Number},
    {"GCReadPortStacked", 1, "", Meaning::Nothing},
    {"GCReadPortStacked", 2, "", Meaning::Address},
    {"GCReadPortStacked", 3, "iNumEntries", Meaning::NumberAsText},
    {"GCReadPortStacked", 4, "", Meaning::Nothing},
    {"GCReadPortStacked", 5, "", Meaning::Nothing},
    {"GCWritePortStacked", 1, "", Meaning::Nothing},
    {"GCWritePortStacked", 2, "", Meaning::Address},
    {"GCWritePortStacked", 3, "iNumEntries", Meaning::NumberAsText},
    {"GCWritePortStacked", 4, "", Meaning::Nothing},
    {"GCWritePortStacked", 5, "", Meaning::Nothing},
    {"EventGetDataInfo", 2, "", Meaning::Nothing},
    {"EventGetDataInfo", 3, "", Meaning::Nothing},
    {"EventGetDataInfo", 4, "", Meaning::Nothing},
    {"EventGetDataInfo", 5, "", Meaning::Nothing},
    {"EventGetDataInfo", 6, "", Meaning::Nothing},
    {"EventGetDataInfo", 7, "", Meaning::Nothing},
    {"EventGetDataInfo", 8, "iSize", Meaning::NumberAsPointer},
    {"EventGetDataInfo", 9, "", Meaning::Nothing},
};

bool IsLetter(char each) {
  return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z');
}

// `label=` or `label=0x` at the end of the text in front of a place.
std::string_view LabelAtEnd(std::string_view literal) {
  if (literal.ends_with("0x")) {
    literal.remove_suffix(2);
  }
  if (!literal.ends_with('=')) {
    return {};
  }
  literal.remove_suffix(1);
  std::size_t begin = literal.size();
  while (begin > 0 && IsLetter(literal[begin - 1])) {
    --begin;
  }
  return literal.substr(begin);
}

void GiveHandleMeaning(Place& place) {
  for (const KindOfLabel& each : kHandleLabels) {
    if (each.label == place.label) {
      place.meaning = Meaning::Handle;
      place.kind = each.kind;
    }
  }
}

void GiveTextMeaning(const LineShape& shape, Place& place) {
  const bool isCall = !shape.function.empty();
  place.meaning = isCall ? Meaning::Unknown : Meaning::Text;
  for (const NamesOfLabel& each : kNameLabels) {
    if (each.label == place.label && (each.function.empty() || each.function == shape.function)) {
      place.meaning = Meaning::Name;
      place.values = each.values;
      return;
    }
  }
  for (const MeaningOfLabel& each : kTextLabels) {
    if (each.label == place.label && (each.function.empty() || each.function == shape.function)) {
      place.meaning = each.meaning;
      return;
    }
  }
  GiveHandleMeaning(place);
}

void GivePointerMeaning(Place& place, std::string_view following) {
  const bool isAddress = place.label.empty() || following.starts_with("->(") ||
                         std::ranges::find(kAddressLabels, place.label) != std::end(kAddressLabels);
  place.meaning = isAddress ? Meaning::Address : Meaning::Unknown;
  if (!isAddress) {
    GiveHandleMeaning(place);
  }
}

void GiveMeaning(const LineShape& shape, Place& place, std::string_view following) {
  switch (place.conversion) {
    case Conversion::Text:
      GiveTextMeaning(shape, place);
      break;
    case Conversion::Pointer:
      GivePointerMeaning(place, following);
      break;
    case Conversion::Hex32:
      place.meaning = place.label == "hDev" ? Meaning::HandleLowHalf : Meaning::Number;
      place.kind = HandleKind::Device;
      break;
    default:
      place.meaning = Meaning::Number;
  }
}

void FindLastText(LineShape& shape) {
  shape.lastText = kNoPlace;
  for (std::size_t i = shape.places.size(); i-- > 0;) {
    if (IsFreeText(shape.places[i])) {
      shape.lastText = i;
      return;
    }
    // A name may have blanks: it isn't found from its end.
    if (shape.places[i].meaning == Meaning::Name) {
      return;
    }
  }
}

LineShape MakeShape(std::string_view text, const DividedFormat& divided, bool isCall) {
  LineShape shape;
  shape.text = text;
  std::string_view rest = text;
  std::vector<std::string_view> literals;
  for (std::size_t i = 0; i < divided.count; ++i) {
    const FormatPiece& piece = divided.pieces[i];
    literals.push_back(rest.substr(0, piece.literalSize));
    rest.remove_prefix(std::size_t{piece.literalSize} + piece.conversionSize);
  }
  shape.tail = rest;
  std::size_t first = 0;
  if (isCall) {
    // `%s=Function(` stands in front of everything else.
    first = 1;
    std::string_view& head = divided.count > 1 ? literals[1] : shape.tail;
    const std::size_t open = head.find('(');
    shape.function = head.substr(1, open - 1);
    head.remove_prefix(open + 1);
  }
  for (std::size_t i = first; i < divided.count; ++i) {
    Place place{};
    place.literal = literals[i];
    place.label = LabelAtEnd(literals[i]);
    place.conversion = divided.pieces[i].conversion;
    place.isOutput = isCall && literals[i].find("->(") != std::string_view::npos;
    place.labelHash = place.label.empty() ? 0 : HashOfLabel(place.label);
    GiveMeaning(shape, place, i + 1 < divided.count ? literals[i + 1] : shape.tail);
    if (!isCall && place.conversion == Conversion::Pointer) {
      place.meaning = Meaning::Handle;
    }
    shape.places.push_back(place);
  }
  for (const Irregular& each : kIrregular) {
    if (isCall && each.function == shape.function && each.place < shape.places.size()) {
      Place& place = shape.places[each.place];
      place.meaning = each.meaning;
      place.values = nullptr;
      place.isOutput = true;
      if (!each.label.empty()) {
        place.label = each.label;
        place.labelHash = HashOfLabel(each.label);
      }
    }
  }
  for (const PointedInput& each : kPointedInputs) {
    const auto place = std::ranges::find_if(shape.places, [&](const Place& other) {
      return other.label == each.label && other.meaning != Meaning::Nothing;
    });
    if (each.function == shape.function && place != shape.places.end()) {
      place->isOutput = false;
    }
  }
  FindLastText(shape);
  return shape;
}

LineShape MakeTimingShape(std::string_view text, const DividedFormat& divided) {
  LineShape shape = MakeShape(text, divided, false);
  shape.places[1].meaning = Meaning::Name;
  if (text == decltype(timing::kLeaves)::Text()) {
    shape.places[2].meaning = Meaning::Duration;
  }
  FindLastText(shape);
  return shape;
}

constexpr std::size_t kSlots = 512;

struct Shapes {
  std::vector<LineShape> calls;
  std::vector<LineShape> reports;
  std::vector<LineShape> timing;
  std::array<std::uint16_t, kSlots> slots{};  // an index into calls and one, or 0
};

std::uint64_t LoadUpTo8(std::string_view text) noexcept {
  std::uint64_t value = 0;
  std::memcpy(&value, text.data(), std::min<std::size_t>(text.size(), 8));
  return value;
}

std::size_t HashName(std::string_view name) noexcept {
  const std::uint64_t first = LoadUpTo8(name);
  const std::uint64_t last = name.size() > 8 ? LoadUpTo8(name.substr(name.size() - 8)) : 0;
  const std::uint64_t mixed = (first ^ (last * 0x9E3779B97F4A7C15U) ^ name.size());
  return static_cast<std::size_t>((mixed * 0xD6E8FEB86659FD93U) >> 55U);
}

Shapes MakeShapes() {
  Shapes shapes;
  for (std::size_t i = 0; i < kCallLines.size(); ++i) {
    LineShape shape = MakeShape(kCallLines[i], kDividedCalls[i], true);
    shape.functionIndex = static_cast<std::uint16_t>(FunctionIndex(shape.function));
    std::size_t slot = HashName(shape.function);
    while (shapes.slots[slot] != 0 &&
           shapes.calls[shapes.slots[slot] - 1U].function != shape.function) {
      slot = (slot + 1) % kSlots;
    }
    if (shapes.slots[slot] == 0) {
      shapes.slots[slot] = static_cast<std::uint16_t>(i + 1);
    } else {
      LineShape* before = &shapes.calls[shapes.slots[slot] - 1U];
      while (before->next != 0) {
        before = &shapes.calls[before->next];
      }
      before->next = static_cast<std::uint16_t>(i);
    }
    shapes.calls.push_back(std::move(shape));
  }
  for (std::size_t i = 0; i < kReports.size(); ++i) {
    shapes.reports.push_back(MakeShape(kReports[i], kDividedReports[i], false));
  }
  for (std::size_t i = 0; i < kTimingLines.size(); ++i) {
    shapes.timing.push_back(MakeTimingShape(kTimingLines[i], kDividedTimingLines[i]));
  }
  return shapes;
}

const Shapes& AllShapes() {
  static const Shapes shapes = MakeShapes();
  return shapes;
}

}  // namespace

bool IsFreeText(const Place& place) noexcept {
  return place.conversion == Conversion::Text && place.meaning != Meaning::Name &&
         place.meaning != Meaning::NumberAsText && place.meaning != Meaning::Handle &&
         place.meaning != Meaning::Duration;
}

std::size_t LineShape::Find(Label label) const noexcept {
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (places[i].labelHash == label.hash && places[i].meaning != Meaning::Nothing) {
      return i;
    }
  }
  return kNoPlace;
}

std::span<const LineShape> CallShapes() {
  return AllShapes().calls;
}

std::span<const LineShape> ReportShapes() {
  return AllShapes().reports;
}

std::span<const LineShape> TimingShapes() {
  return AllShapes().timing;
}

std::span<const std::string_view> FunctionNames() {
  return kFunctionNames;
}

std::size_t FindCallShape(std::string_view function) noexcept {
  const Shapes& shapes = AllShapes();
  for (std::size_t slot = HashName(function); shapes.slots[slot] != 0; slot = (slot + 1) % kSlots) {
    const std::size_t index = shapes.slots[slot] - 1U;
    if (shapes.calls[index].function == function) {
      return index;
    }
  }
  return kNoPlace;
}

}  // namespace vextrel::program
