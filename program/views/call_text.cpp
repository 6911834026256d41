// SPDX-License-Identifier: MIT
#include "views/call_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "reading/entries.h"
#include "reading/value_reading.h"
#include "views/safe_text.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kMostText = 120;
constexpr std::size_t kMostBytes = 16;
constexpr std::size_t kMostEntries = 16;

bool IsShown(const Place& place) {
  return place.meaning != Meaning::Nothing && place.meaning != Meaning::Address;
}

void AppendHandle(std::string& out, const Record& record, const Place& place,
                  const PlaceValue& value, HandleId id, const Handles& handles) {
  if (id == kNoHandle) {
    out += place.label;
    out += value.number == 0 ? "=NULL" : "=0x";
    if (value.number != 0) {
      out += value.text;
    }
    return;
  }
  const Handle& handle = handles.At(id);
  if (handle.kind == HandleKind::Event) {
    out += handles.FullName(id);
  } else {
    out += KindName(handle.kind);
    out += std::to_string(handle.number);
  }
  const bool closesItself = handle.closedAt.has_value() &&
                            handle.closedAt->line == record.place.line &&
                            handle.closedAt->file == record.place.file;
  if (!handle.isOpen && handle.closedAt.has_value() && !closesItself) {
    out += "(closed)";
  } else if (!handle.isOpen && handle.closedWith != kNoHandle) {
    out += "(closed with " + handles.Name(handle.closedWith) + ")";
  }
}

void AppendValue(std::string& out, const Record& record, const Place& place,
                 const PlaceValue& value, HandleId id, const Handles& handles) {
  if (place.meaning == Meaning::Handle || place.meaning == Meaning::HandleLowHalf) {
    AppendHandle(out, record, place, value, id, handles);
    return;
  }
  if (!place.label.empty()) {
    out += place.label;
    out += '=';
  }
  switch (place.meaning) {
    case Meaning::Name:
      AppendSafe(out, NewestName(value.text, place.values));
      break;
    case Meaning::Dump:
      AppendDump(out, value.text, kMostBytes);
      break;
    case Meaning::Entries:
      AppendEntries(out, value.text);
      break;
    case Meaning::Number:
      out += place.conversion == Conversion::Hex64 ? "0x" : "";
      out += value.text;
      break;
    case Meaning::NumberAsPointer:
      out += std::to_string(value.number);
      break;
    default:
      AppendSafe(out, value.text, kMostText);
  }
}

// What it is, not what it was taken for.
void AppendMisplaced(std::string& out, const Place& place, HandleId id, const Handles& handles) {
  AppendSafe(out, handles.FullName(id));
  out += " (given as ";
  out += KindText(place.kind);
  out += ')';
}

// Of a pointer, and of a value without a type, some lines show where it was stored, and not what it
// is.
bool IsStorage(const LineShape& shape, const Message& message, std::size_t place) {
  const std::string_view text = message.values[place].text;
  return place > 0 && shape.places[place].label == "Buffer" && text.starts_with("0x") &&
         text.substr(2) == message.values[place - 1].text;
}

// What it was when the buffer was announced.
void AppendPointerValue(std::string& out, const Message& message, const Context& context,
                        const Handles& handles) {
  const std::size_t buffer = message.shape->Find("hBuffer");
  const std::size_t command = message.shape->Find("iCommand");
  std::optional<std::uint64_t> value;
  if (buffer != kNoPlace && command != kNoPlace && context.handles[buffer] != kNoHandle) {
    const Handle& handle = handles.At(context.handles[buffer]);
    const std::string_view name = message.values[command].text;
    value = name == "BUFFER_INFO_BASE"       ? handle.memory
            : name == "BUFFER_INFO_USER_PTR" ? handle.userPointer
                                             : std::nullopt;
  }
  out += value.has_value() ? fmt::format("Buffer=0x{:016X}", *value) : "Buffer=(not in the log)";
}

// The type and the size of a value say nothing beside the value itself.
bool IsBesideValue(const LineShape& shape, const Message& message, const Place& place) {
  if (place.label == "iType") {
    return true;
  }
  const std::size_t buffer = shape.Find("Buffer");
  return place.label == "iSize" && buffer != kNoPlace && message.values[buffer].text != "NULL";
}

void AppendEntry(std::string& out, const Entry& entry) {
  if (const std::string_view id = entry.Find("ChunkID"); !id.empty()) {
    AppendSafe(out, id);
    out += " at ";
    AppendSafe(out, entry.Find("ChunkOffset"));
    out += ", ";
    AppendSafe(out, entry.Find("ChunkLength"));
    out += " bytes";
    return;
  }
  const std::string_view command = entry.Find("iCmd");
  if (command.empty()) {
    AppendSafe(out, entry.Find("iSize"));
    out += " bytes";
    return;
  }
  if (const std::string_view part = entry.Find("iPartIndex"); !part.empty()) {
    out += "part ";
    AppendSafe(out, part);
    out += ' ';
  }
  AppendSafe(out, command);
  out += '=';
  const std::string_view result = entry.Find("iResult");
  const bool failed = result != names::kGcErrorSuccess;
  AppendSafe(out, failed ? result : entry.Find("Buffer"), kMostText);
}

}  // namespace

void AppendEntries(std::string& out, std::string_view text) {
  Entries entries;
  if (!ReadEntries(text, entries)) {
    AppendSafe(out, text, kMostText);
    return;
  }
  out += '[';
  for (std::size_t i = 0; i < entries.shown.size(); ++i) {
    if (i == kMostEntries) {
      break;
    }
    out += i == 0 ? "" : "; ";
    AppendEntry(out, entries.shown[i]);
  }
  const std::uint64_t all = entries.shown.size() + entries.more;
  out += all > kMostEntries ? " ... (" + std::to_string(all) + " entries)]" : "]";
}

void AppendDump(std::string& out, std::string_view dump, std::size_t limit) {
  std::size_t shown = 0;
  for (std::size_t at = dump.find("0x"); at != std::string_view::npos && shown < limit;
       at = dump.find("0x", at + 2)) {
    out += shown == 0 ? "" : " ";
    AppendSafe(out, dump.substr(at + 2, 2));
    ++shown;
  }
  const auto all = static_cast<std::size_t>(std::count(dump.begin(), dump.end(), 'x'));
  if (all > shown) {
    out += " ... (" + std::to_string(all) + " bytes)";
  }
}

void AppendCall(std::string& out, const Record& record, const Message& message,
                const Context& context, const Handles& handles) {
  const LineShape& shape = *message.shape;
  out += shape.function;
  out += '(';
  bool first = true;
  for (std::size_t i = 0; i < shape.places.size(); ++i) {
    const Place& place = shape.places[i];
    if (IsShown(place) && !place.isOutput) {
      out += first ? "" : ", ";
      first = false;
      if (context.misplaced[i] != kNoHandle) {
        AppendMisplaced(out, place, context.misplaced[i], handles);
      } else {
        AppendValue(out, record, place, message.values[i], context.handles[i], handles);
      }
    }
  }
  out += ')';
  if (message.Failed()) {
    return;
  }
  first = true;
  if (context.delivered != kNoHandle) {
    out += " -> ";
    out += handles.Name(context.delivered);
    return;
  }
  for (std::size_t i = 0; i < shape.places.size(); ++i) {
    const Place& place = shape.places[i];
    if (IsShown(place) && place.isOutput && !IsBesideValue(shape, message, place)) {
      out += first ? " -> " : ", ";
      first = false;
      if (IsStorage(shape, message, i)) {
        AppendPointerValue(out, message, context, handles);
      } else {
        AppendValue(out, record, place, message.values[i], context.handles[i], handles);
      }
    }
  }
}

void AppendEntered(std::string& out, const EnteredCall& call, const Handles& handles) {
  out += FunctionNames()[call.function];
  out += '(';
  if (call.handle != kNoHandle) {
    const bool isEvent = handles.At(call.handle).kind == HandleKind::Event;
    AppendSafe(out, isEvent ? handles.FullName(call.handle) : handles.Name(call.handle));
  } else if (call.argumentKind == EnteredCall::Argument::Pointer) {
    fmt::format_to(std::back_inserter(out), "0x{:016X}", call.argument);
  } else if (call.argumentKind == EnteredCall::Argument::Number) {
    out += std::to_string(static_cast<std::int64_t>(call.argument));
  }
  out += ')';
}

void AppendReport(std::string& out, const Message& message, const Context& context,
                  const Handles& handles) {
  for (std::size_t i = 0; i < message.shape->places.size(); ++i) {
    out += message.shape->places[i].literal;
    AppendSafe(out, message.values[i].text);
    if (message.shape->places[i].meaning == Meaning::Handle && context.handles[i] != kNoHandle) {
      out += " (" + handles.Name(context.handles[i]) + ")";
    }
  }
  out += message.shape->tail;
}

}  // namespace vextrel::program
