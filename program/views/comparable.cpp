// SPDX-License-Identifier: MIT
#include "views/comparable.h"

#include <algorithm>

#include "reading/entries.h"
#include "reading/value_reading.h"
#include "views/call_text.h"

namespace vextrel::program {
namespace {

// FNV-1a. A carriage return isn't part of a text: only Windows writes it.
class Hash {
 public:
  void Add(std::string_view text) {
    for (const char each : text) {
      if (each != '\r') {
        Mix(static_cast<std::uint8_t>(each));
      }
    }
    Mix(0);
  }
  void Add(std::uint64_t number) {
    for (unsigned i = 0; i < 8; ++i) {
      Mix(static_cast<std::uint8_t>(number >> (8 * i)));
    }
  }
  [[nodiscard]] std::uint64_t Value() const noexcept { return value_; }

 private:
  void Mix(std::uint8_t byte) { value_ = (value_ ^ byte) * 0x100000001B3U; }

  std::uint64_t value_ = 0xCBF29CE484222325U;
};

void AddHandle(Hash& hash, HandleId id, const Handles& handles) {
  if (id == kNoHandle) {
    hash.Add("none");
    return;
  }
  const Handle& handle = handles.At(id);
  hash.Add(KindName(handle.kind));
  hash.Add(handle.kind == HandleKind::Buffer ? 0 : handle.number);
}

bool IsTimeOfItsRun(std::string_view command) {
  return command.find("TIMESTAMP") != std::string_view::npos &&
         command.find("FREQUENCY") == std::string_view::npos;
}

// Values that differ from run to run: addresses and times.
bool IsOfItsRun(const Message& message, const Place& place, std::string_view text) {
  if (place.meaning != Meaning::InfoValue) {
    return false;
  }
  if (text.starts_with("0x")) {
    return true;
  }
  for (const Label label : {Label("iCommand"), Label("iID"), Label("iCmd")}) {
    const std::size_t command = message.shape->Find(label);
    if (command != kNoPlace && IsTimeOfItsRun(NewestName(message.values[command].text,
                                                         message.shape->places[command].values))) {
      return true;
    }
  }
  return false;
}

void AddEntries(Hash& hash, std::string_view text) {
  Entries entries;
  if (!ReadEntries(text, entries)) {
    hash.Add(text);
    return;
  }
  hash.Add(entries.shown.size() + entries.more);
  for (const Entry& entry : entries.shown) {
    for (std::size_t i = 0; i < entry.count; ++i) {
      const auto& [label, value] = entry.fields[i];
      const bool isAddress = label == "pBuffer" || (label == "Buffer" && value.starts_with("0x"));
      if (!isAddress && !(label == "Buffer" && IsTimeOfItsRun(entry.Find("iCmd")))) {
        hash.Add(value);
      }
    }
  }
}

}  // namespace

bool IsComparable(const Record& record, const Message& message) {
  if (record.kind != RecordKind::Whole) {
    return false;
  }
  return message.IsCall() ||
         (message.kind == MessageKind::Report && PriorityOfReport(message.line) != Priority::Info);
}

ComparableCall MakeComparable(const Record& record, const Message& message, const Context& context,
                              const Handles& handles) {
  Hash what;
  Hash values;
  const LineShape& shape = *message.shape;
  what.Add(message.IsCall() ? shape.function : shape.text);
  for (std::size_t i = 0; i < shape.places.size(); ++i) {
    const Place& place = shape.places[i];
    const PlaceValue& value = message.values[i];
    switch (place.meaning) {
      case Meaning::Nothing:
      case Meaning::Address:
      case Meaning::PointerSlot:
        break;
      case Meaning::Entries:
        if (!message.Failed()) {
          AddEntries(place.isOutput ? values : what, value.text);
        }
        break;
      case Meaning::Handle:
      case Meaning::HandleLowHalf:
        if (!place.isOutput || !message.Failed()) {
          AddHandle(what, context.Given(i), handles);
        }
        break;
      default: {
        const bool isInput = !place.isOutput && message.IsCall();
        const std::string_view text =
            place.meaning == Meaning::Name ? NewestName(value.text, place.values) : value.text;
        // The data of an event are handles and addresses.
        const bool isEventData = place.meaning == Meaning::Dump && shape.function == "EventGetData";
        if (isInput && place.meaning != Meaning::Dump) {
          what.Add(text);
        } else if (!isEventData && !message.Failed() && !IsOfItsRun(message, place, text)) {
          values.Add(text);
        }
      }
    }
  }
  ComparableCall call;
  call.what = what.Value();
  call.result = static_cast<std::uint64_t>(static_cast<std::int64_t>(message.result));
  call.values = values.Value();
  call.function = message.IsCall() ? shape.functionIndex : ComparableCall::kReport;
  call.place = record.place;
  if (message.IsCall()) {
    AppendCall(call.text, record, message, context, handles);
    if (message.Failed()) {
      std::string storage;
      call.text += " ";
      call.text += ResultName(message.result, storage);
    }
  } else {
    AppendReport(call.text, message, context, handles);
  }
  return call;
}

}  // namespace vextrel::program
