// SPDX-License-Identifier: MIT
// LIB: the library is initialized before it's used, and closed.
#include <fmt/format.h>

#include <functional>
#include <optional>
#include <string>

#include "calllog/log_text.h"
#include "reading/line_shapes.h"
#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kInit{
    .id = "LIB-INIT",
    .severity = Severity::Error,
    .sentence = "The library was used while it wasn't initialized",
    .explanation =
        "A call came before GCInitLib, after GCCloseLib, or after a GCInitLib that "
        "failed. The producer answers GC_ERR_NOT_INITIALIZED and does nothing. If the "
        "library was initialized and a call is refused like this nevertheless, that's a "
        "warning: it's likely the producer's own state.",
    .remedy =
        "Call GCInitLib first and look at its result. Close the library only when no part of "
        "the application uses it any more.",
    .section = "6.3.1",
    .harmless = "",
    .needs = "the beginning of the session"};

constexpr Rule kLoad{
    .id = "LIB-LOAD",
    .severity = Severity::Error,
    .sentence = "The producer couldn't be loaded",
    .explanation =
        "GENICAM_GENTL64_VEXTREL_PRODUCER isn't set, or leads to Vextrel itself, or to something "
        "that couldn't be loaded. "
        "GCInitLib succeeds nevertheless, and every other call answers GC_ERR_NOT_IMPLEMENTED.",
    .remedy =
        "Let 'vextrel doctor --target FILE' look at the producer: it names a library that is "
        "missing, a module for another machine, and mistakes in the variables.",
    .section = "",
    .harmless = "",
    .needs = ""};

constexpr Rule kLibraryPair{
    .id = "LIB-PAIR",
    .severity = Severity::Warning,
    .sentence = "GCInitLib and GCCloseLib don't come in pairs",
    .explanation =
        "GCInitLib was called again without a GCCloseLib in between, or the session ends "
        "with everything closed but the library.",
    .remedy =
        "Let one part of the application initialize the library, and close it when the last "
        "user is done.",
    .section = "3.1",
    .harmless =
        "Two libraries of one application may share the producer. A process that was ended "
        "from outside can't close anything.",
    .needs = "the beginning of the session"};

constexpr const Rule* kLibraryRules[] = {&kLoad, &kInit, &kLibraryPair};

// What Windows means by the number, on Linux, too.
std::string_view MeaningOf(std::uint64_t error) {
  switch (error) {
    case 5:
      return "this user may not read it";
    case 126:
      return "it isn't there, or a library that it needs is missing";
    case 127:
      return "a library that it needs lacks a function";
    case 193:
      return "it isn't a 64-bit module for this system";
    case 1114:
      return "it refused to start";
    default:
      return "";
  }
}

class Library : public RuleFamily {
 public:
  Library(Findings& findings, const LogKnowledge& log) : findings_(findings), log_(log) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    return function == Function::GCInitLib || function == Function::GCCloseLib ||
                   function == Function::GCGetLastError
               ? Interest::All
               : Interest::Failures;
  }

  void After(const Call& call) override {
    switch (call.Which()) {
      case Function::GCInitLib:
        OnInit(call);
        return;
      case Function::GCCloseLib:
        OnClose(call);
        return;
      case Function::GCGetLastError:
        if (!call.Failed() && closedAt_.has_value()) {
          Report(call, Severity::Error);
        }
        break;
      default:
        break;
    }
    // Of an event this means that it isn't registered.
    if (call.Result() == GC_ERR_NOT_INITIALIZED && call.Which() != Function::GCUnregisterEvent) {
      Report(call, isInitialized_ ? Severity::Warning : Severity::Error);
    } else if (call.Result() == GC_ERR_NOT_IMPLEMENTED && closedAt_.has_value() &&
               !isInitialized_ && call.Name() != "GCGetInfo" &&
               findings_.Count() == log_.foundBeforeCall) {
      // The module has let the producer go.
      Report(call, Severity::Error);
    }
  }

  void OnReport(const SessionModel& /*model*/, const Record& record, const Message& message,
                const Context& context, Finding* /*call*/) override {
    const std::string_view text = message.shape->text;
    std::string why;
    if (text == FormatOf(report::kProducerVariableNotFound)) {
      why = "No producer is loaded: GENICAM_GENTL64_VEXTREL_PRODUCER isn't set.";
    } else if (text == FormatOf(report::kProducerIsVextrel)) {
      why = fmt::format("GENICAM_GENTL64_VEXTREL_PRODUCER leads to Vextrel itself: '{}'.",
                        message.values[0].text);
    } else if (text == FormatOf(report::kProducerNotLoaded)) {
      const std::string_view meaning = MeaningOf(message.values[0].number);
      why = fmt::format("The producer '{}' can't be loaded, error {}{}{}.", message.values[1].text,
                        message.values[0].text, meaning.empty() ? "" : ": ", meaning);
    } else {
      return;
    }
    const Moment moment{record.place,
                        context.hasTime ? std::optional<std::int64_t>(context.time) : std::nullopt,
                        context.thread};
    if (Finding* finding =
            findings_.Add(kLoad, Severity::Error, KeyOf(std::hash<std::string>{}(why)), moment)) {
      finding->message = why;
    }
  }

  void EndSession(const SessionModel& model, const Moment& moment, bool isClosed) override {
    if (isClosed || !isInitialized_) {
      return;
    }
    isInitialized_ = false;
    const auto& open = model.AllHandles().OpenOnes();
    for (const HandleId id : open) {
      // What is left open says more.
      if (model.AllHandles().At(id).openedAt.has_value()) {
        return;
      }
    }
    if (EndsInTheMiddle(model, log_, kLibraryPair.id, findings_)) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kLibraryPair, Severity::Warning, KeyOf(0, ++sessions_), moment)) {
      finding->message = "The session ends without GCCloseLib, though everything else is closed.";
      Relate(*finding, initializedAt_, "GCInitLib");
    }
  }

 private:
  void OnInit(const Call& call) {
    if (!call.Failed()) {
      isInitialized_ = true;
      initializedAt_ = call.Place();
      failedInit_.reset();
      closedAt_.reset();
      return;
    }
    if (call.Result() == GC_ERR_RESOURCE_IN_USE) {
      if (Finding* finding = findings_.Add(kLibraryPair, Severity::Warning, KeyOf(0, call.Thread()),
                                           call.Moment())) {
        finding->message = "GCInitLib is called again, though the library is initialized already.";
        Relate(*finding, initializedAt_, "it's initialized here");
      }
      return;
    }
    failedInit_ = call.Place();
    if (Finding* finding =
            findings_.Add(kInit, Severity::Error, KeyOf(0, call.Which()), call.Moment())) {
      finding->message =
          fmt::format("GCInitLib fails with {}: nothing works from here on.", call.ResultText());
    }
  }

  void OnClose(const Call& call) {
    if (!call.Failed()) {
      isInitialized_ = false;
      closedAt_ = call.Place();
    } else if (call.Result() == GC_ERR_NOT_INITIALIZED) {
      Report(call, Severity::Error);
    }
  }

  void Report(const Call& call, Severity severity) {
    if (severity == Severity::Error && !failedInit_ && !closedAt_ && !log_.beginsWithLibrary &&
        !initializedAt_) {
      severity = Severity::Warning;  // it may have been initialized before the log begins
    }
    Finding* finding =
        findings_.Add(kInit, severity, KeyOf(closedAt_.has_value(), call.Which()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    if (failedInit_.has_value()) {
      finding->message = fmt::format("{} is called though GCInitLib had failed.", call.Name());
      Relate(*finding, failedInit_, "GCInitLib fails");
    } else if (closedAt_.has_value()) {
      finding->message = fmt::format("{} is called when the library is closed.", call.Name());
      Relate(*finding, closedAt_, "GCCloseLib");
    } else if (isInitialized_) {
      finding->message = fmt::format(
          "{} answers GC_ERR_NOT_INITIALIZED though the library is initialized: likely something "
          "in the producer's own state.",
          call.Name());
      Relate(*finding, initializedAt_, "GCInitLib");
    } else {
      finding->message = fmt::format("{} is called before GCInitLib.", call.Name());
    }
  }

  Findings& findings_;
  const LogKnowledge& log_;
  bool isInitialized_ = false;
  std::optional<LogPlace> initializedAt_;
  std::optional<LogPlace> closedAt_;
  std::optional<LogPlace> failedInit_;
  std::uint64_t sessions_ = 0;
};

}  // namespace

FamilyEntry LibraryFamily() {
  return {kLibraryRules, MakeFamily<Library>};
}

}  // namespace vextrel::program
