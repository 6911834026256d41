// SPDX-License-Identifier: MIT
#include <algorithm>
#include <charconv>

#include "reading/entries.h"
#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/exporter.h"
#include "views/json_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

// A dump's bytes beyond these are left out; their number is there.
constexpr std::size_t kMostRowBytes = 64;
constexpr std::size_t kMostRowText = 4096;

template <typename Number>
void AppendNumber(std::string& out, Number number) {
  char digits[24];
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number);
  out.append(digits, static_cast<std::size_t>(end - digits));
}

class JsonLinesExporter : public Exporter {
 public:
  JsonLinesExporter(const SessionModel& model, const std::vector<std::string>& files,
                    Output& output)
      : model_(model), files_(files), output_(output) {}

  void Take(const Record& record, const Message& message, const Context& context) override {
    TakeNeverReturned();
    if (message.IsTiming()) {
      return;
    }
    std::string& out = output_.Text();
    out += "{\"file\":";
    AppendJsonText(out, files_[record.place.file]);
    out += ",\"line\":";
    AppendNumber(out, record.place.line);
    if (record.kind == RecordKind::Whole) {
      AppendWhen(out, record, context);
    }
    switch (message.kind) {
      case MessageKind::Call:
        AppendCallFields(out, message, context);
        break;
      case MessageKind::Report:
        out += R"(,"kind":"report","priority":")";
        out += PriorityName(PriorityOfReport(message.line));
        out += R"(","text":)";
        AppendJsonText(out, message.text);
        break;
      case MessageKind::Enters:
      case MessageKind::Leaves:
        break;
      case MessageKind::Other:
        out += R"(,"kind":")";
        out += context.isOtherLine ? "other" : "unreadable";
        out += R"(","text":)";
        AppendJsonText(out, record.message.substr(0, kMostRowText));
    }
    out += "}\n";
    output_.Commit();
  }

  void Finish() override { TakeNeverReturned(); }

 private:
  void AppendWhen(std::string& out, const Record& record, const Context& context) const {
    out += ",\"session\":";
    AppendNumber(out, context.session);
    if (context.hasTime) {
      AppendTime(out, context.time);
    }
    if (context.thread != 0) {
      out += ",\"thread\":";
      AppendJsonText(out, record.head.thread);
    }
  }

  void AppendTime(std::string& out, std::int64_t time) const {
    out += R"(,"time":")";
    // The day changes seldom.
    if (model_.Time() == TimeKind::Date) {
      constexpr std::int64_t day = 24LL * 60 * 60 * 1'000'000;
      const std::int64_t number = time / day;
      if (number != day_ || dayText_.empty()) {
        day_ = number;
        dayText_ = TimeText(time, TimeKind::Date, 1'000).substr(0, 11);
      }
      out += dayText_;
    }
    AppendTimeOfDay(out, time, model_.Time(), model_.Resolution());
    out += R"(","us":)";
    AppendNumber(out, time);
  }

  // Calls that have no line of their own.
  void TakeNeverReturned() {
    const std::vector<EnteredCall>& calls = model_.Timings().NeverReturned();
    for (; neverReturned_ < calls.size(); ++neverReturned_) {
      const EnteredCall& call = calls[neverReturned_];
      std::string& out = output_.Text();
      out += "{\"file\":";
      AppendJsonText(out, files_[call.place.file]);
      out += ",\"line\":";
      AppendNumber(out, call.place.line);
      out += ",\"session\":";
      AppendNumber(out, call.session);
      if (call.time.has_value()) {
        AppendTime(out, *call.time);
      }
      if (call.thread != 0) {
        out += ",\"thread\":";
        AppendJsonText(out, model_.Threads()[call.thread - 1]);
      }
      out += R"(,"kind":"neverReturned","function":")";
      out += FunctionNames()[call.function];
      out += R"(","number":)";
      AppendNumber(out, call.number);
      out += ",\"text\":";
      std::string text;
      AppendEntered(text, call, model_.AllHandles());
      AppendJsonText(out, text);
      out += "}\n";
    }
  }

  static void AppendTiming(std::string& out, const TimedCall& timing) {
    out += ",\"number\":";
    AppendNumber(out, timing.entered.number);
    if (timing.entered.time.has_value()) {
      out += ",\"start_us\":";
      AppendNumber(out, *timing.entered.time);
    }
    out += ",\"duration_us\":";
    out += MicrosecondsText(timing.nanoseconds);
  }

  void AppendCallFields(std::string& out, const Message& message, const Context& context) const {
    std::string storage;
    out += R"(,"kind":"call","function":")";
    out += message.shape->function;
    out += R"(","result":")";
    out += ResultName(message.result, storage);
    out += R"(","code":)";
    AppendNumber(out, message.result);
    if (context.timing != nullptr) {
      AppendTiming(out, *context.timing);
    }
    if (context.delivered != kNoHandle) {
      out += R"(,"delivered":")";
      out += model_.AllHandles().Name(context.delivered);
      out += '"';
    }
    out += ",\"args\":{";
    bool first = true;
    const std::vector<Place>& places = message.shape->places;
    for (std::size_t i = 0; i < places.size(); ++i) {
      const bool isKnown = places[i].meaning != Meaning::Nothing &&
                           places[i].meaning != Meaning::Address && !places[i].label.empty() &&
                           !(places[i].isOutput && message.Failed());
      if (!isKnown) {
        continue;
      }
      out += first ? "\"" : ",\"";
      first = false;
      out += places[i].label;
      out += "\":";
      AppendValue(out, places[i], message.values[i], context.Given(i));
    }
    out += '}';
  }

  void AppendValue(std::string& out, const Place& place, const PlaceValue& value,
                   HandleId id) const {
    switch (place.meaning) {
      case Meaning::Handle:
      case Meaning::HandleLowHalf:
        if (id != kNoHandle) {
          out += '"';
          out += KindName(model_.AllHandles().At(id).kind);
          AppendNumber(out, model_.AllHandles().At(id).number);
          out += '"';
        } else if (value.number == 0) {
          out += "null";
        } else {
          out += "\"0x";
          out += value.text;
          out += '"';
        }
        break;
      case Meaning::Number:
      case Meaning::NumberAsText:
      case Meaning::NumberAsPointer:
        if (value.text == "NULL") {
          out += "null";
        } else if (place.conversion == Conversion::Signed32) {
          AppendNumber(out, static_cast<std::int64_t>(value.number));
        } else {
          AppendNumber(out, value.number);
        }
        break;
      case Meaning::Name:
        AppendJsonText(out, NewestName(value.text, place.values));
        break;
      case Meaning::Dump: {
        std::string dump;
        AppendDump(dump, value.text, kMostRowBytes);
        AppendJsonText(out, dump);
        break;
      }
      case Meaning::Entries:
        AppendEntries(out, value.text);
        break;
      default:
        AppendJsonText(out, value.text.substr(0, kMostRowText));
    }
  }

  // An array of objects.
  void AppendEntries(std::string& out, std::string_view text) const {
    Entries entries;
    if (!ReadEntries(text, entries)) {
      AppendJsonText(out, text.substr(0, kMostRowText));
      return;
    }
    out += '[';
    for (std::size_t i = 0; i < entries.shown.size(); ++i) {
      out += i == 0 ? "{" : ",{";
      const Entry& entry = entries.shown[i];
      for (std::size_t field = 0; field < entry.count; ++field) {
        const auto& [label, value] = entry.fields[field];
        out += field == 0 ? "\"" : ",\"";
        out += label;
        out += "\":";
        std::int64_t number = 0;
        const char* end = value.data() + value.size();
        const auto [read, error] = std::from_chars(value.data(), end, number);
        if (error == std::errc() && read == end && label != "Buffer") {
          AppendNumber(out, number);
        } else {
          AppendJsonText(out, value.substr(0, kMostRowText));
        }
      }
      out += '}';
    }
    out += ']';
  }

  const SessionModel& model_;
  const std::vector<std::string>& files_;
  Output& output_;
  mutable std::int64_t day_ = 0;
  mutable std::string dayText_;
  std::size_t neverReturned_ = 0;  // how many have their objects
};

}  // namespace

std::unique_ptr<Exporter> MakeJsonLinesExporter(const SessionModel& model,
                                                const std::vector<std::string>& files,
                                                Output& output) {
  return std::make_unique<JsonLinesExporter>(model, files, output);
}

}  // namespace vextrel::program
