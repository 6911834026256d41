// SPDX-License-Identifier: MIT
#include "reading/value_reading.h"
#include "views/call_text.h"
#include "views/exporter.h"
#include "views/safe_text.h"
#include "views/time_text.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kMostCellText = 4096;

// In quotes if need be. A spreadsheet takes a cell for a formula that starts with one of these
// characters: such a one gets an apostrophe in front.
void AppendCell(std::string& out, std::string_view text, bool isLast = false) {
  std::string safe;
  AppendSafe(safe, text, kMostCellText);
  if (!safe.empty() && std::string_view("=+-@").find(safe[0]) != std::string_view::npos) {
    safe.insert(0, 1, '\'');
  }
  if (safe.find_first_of(",\"") == std::string::npos) {
    out += safe;
  } else {
    out += '"';
    for (const char each : safe) {
      out += each;
      if (each == '"') {
        out += '"';
      }
    }
    out += '"';
  }
  out += isLast ? "\r\n" : ",";
}

class CsvExporter : public Exporter {
 public:
  CsvExporter(const SessionModel& model, const std::vector<std::string>& files, Output& output)
      : model_(model), files_(files), output_(output) {
    output_.Text() +=
        "file,line,session,time,us,thread,kind,function,result,failed,handle,delivered,number,"
        "start_us,duration_us,text\r\n";
  }

  void Take(const Record& record, const Message& message, const Context& context) override {
    TakeNeverReturned();
    if (message.IsTiming()) {
      return;
    }
    std::string& out = output_.Text();
    const bool isWhole = record.kind == RecordKind::Whole;
    AppendCell(out, files_[record.place.file]);
    AppendCell(out, std::to_string(record.place.line));
    AppendCell(out, isWhole ? std::to_string(context.session) : "");
    const bool hasTime = isWhole && context.hasTime;
    AppendCell(out, hasTime ? TimeText(context.time, model_.Time(), model_.Resolution()) : "");
    AppendCell(out, hasTime ? std::to_string(context.time) : "");
    AppendCell(out, isWhole ? record.head.thread : std::string_view());
    std::string text;
    const Handles& handles = model_.AllHandles();
    switch (message.kind) {
      case MessageKind::Call: {
        std::string storage;
        AppendCell(out, "call");
        AppendCell(out, message.shape->function);
        AppendCell(out, ResultName(message.result, storage));
        AppendCell(out, message.Failed() ? "1" : "0");
        AppendCell(out, FirstHandle(message, context));
        AppendCell(out, context.delivered != kNoHandle ? handles.Name(context.delivered) : "");
        AppendTiming(out, context.timing);
        AppendCall(text, record, message, context, handles);
        break;
      }
      case MessageKind::Report:
        out += "report,,";
        AppendCell(out, PriorityName(PriorityOfReport(message.line)));
        out += ",,,,,,";
        text = message.text;
        break;
      case MessageKind::Enters:
      case MessageKind::Leaves:
        break;
      case MessageKind::Other:
        out += context.isOtherLine ? "other" : "unreadable";
        out += ",,,,,,,,,";
        text = record.message.substr(0, kMostCellText);
    }
    AppendCell(out, text, true);
    output_.Commit();
  }

  void Finish() override { TakeNeverReturned(); }

 private:
  static void AppendTiming(std::string& out, const TimedCall* timing) {
    if (timing == nullptr) {
      out += ",,,";
      return;
    }
    AppendCell(out, std::to_string(timing->entered.number));
    AppendCell(out, timing->entered.time.has_value() ? std::to_string(*timing->entered.time) : "");
    AppendCell(out, MicrosecondsText(timing->nanoseconds));
  }

  // Calls that have no line of their own.
  void TakeNeverReturned() {
    const std::vector<EnteredCall>& calls = model_.Timings().NeverReturned();
    for (; neverReturned_ < calls.size(); ++neverReturned_) {
      const EnteredCall& call = calls[neverReturned_];
      std::string& out = output_.Text();
      AppendCell(out, files_[call.place.file]);
      AppendCell(out, std::to_string(call.place.line));
      AppendCell(out, std::to_string(call.session));
      const std::string time = call.time.has_value() ? std::to_string(*call.time) : "";
      AppendCell(out, call.time.has_value()
                          ? TimeText(*call.time, model_.Time(), model_.Resolution())
                          : "");
      AppendCell(out, time);
      AppendCell(out, call.thread == 0 ? "" : model_.Threads()[call.thread - 1]);
      AppendCell(out, "neverReturned");
      AppendCell(out, FunctionNames()[call.function]);
      out += ",1,";
      AppendCell(out, call.handle == kNoHandle ? "" : model_.AllHandles().Name(call.handle));
      out += ',';
      AppendCell(out, std::to_string(call.number));
      AppendCell(out, time);
      out += ',';
      std::string text;
      AppendEntered(text, call, model_.AllHandles());
      AppendCell(out, text, true);
    }
  }

  [[nodiscard]] std::string FirstHandle(const Message& message, const Context& context) const {
    for (std::size_t i = 0; i < message.shape->places.size(); ++i) {
      if (context.Given(i) != kNoHandle) {
        return model_.AllHandles().Name(context.Given(i));
      }
    }
    return "";
  }

  const SessionModel& model_;
  const std::vector<std::string>& files_;
  Output& output_;
  std::size_t neverReturned_ = 0;  // how many have their rows
};

}  // namespace

std::unique_ptr<Exporter> MakeCsvExporter(const SessionModel& model,
                                          const std::vector<std::string>& files, Output& output) {
  return std::make_unique<CsvExporter>(model, files, output);
}

}  // namespace vextrel::program
