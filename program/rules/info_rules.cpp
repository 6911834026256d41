// SPDX-License-Identifier: MIT
// INFO and P-CONF: questions that are asked wrongly, and answers that a producer must not give.
#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kSmall{
    .id = "INFO-SMALL",
    .severity = Severity::Warning,
    .sentence = "The same question is asked with too small a buffer again and again",
    .explanation =
        "A question was answered with GC_ERR_BUFFER_TOO_SMALL three times or more, each "
        "time with the same size.",
    .remedy = "Ask with a null buffer for the size first, then with a buffer of that size.",
    .section = "6.1.3",
    .harmless = "",
    .needs = ""};

constexpr Rule kUninitialized{
    .id = "INFO-UNINIT",
    .severity = Severity::Warning,
    .sentence = "A size looks as if it had never been set",
    .explanation =
        "A question failed, and the size of its buffer is more than a gigabyte: likely "
        "the variable was never set.",
    .remedy = "Set the size to the buffer's before each call.",
    .section = "6.1.3",
    .harmless = "",
    .needs = ""};

constexpr Rule kOptional{
    .id = "INFO-OPTIONAL",
    .severity = Severity::Info,
    .sentence = "A question isn't answered by this producer",
    .explanation =
        "A command was refused three times or more with GC_ERR_NOT_IMPLEMENTED, "
        "GC_ERR_NOT_AVAILABLE or GC_ERR_NO_DATA. It's an optional one, and nothing is "
        "wrong.",
    .remedy = "Take the value from the remote device's features instead, and don't stop grabbing.",
    .section = "5.5",
    .harmless = "It's mostly harmless.",
    .needs = ""};

constexpr Rule kPart{
    .id = "INFO-PART",
    .severity = Severity::Warning,
    .sentence = "A frame of several parts is asked for the size of one image",
    .explanation =
        "The width, height or pixel format of the buffer as a whole was asked for and "
        "refused, though the payload type is multi-part.",
    .remedy = "Ask DSGetNumBufferParts, and each part with DSGetBufferPartInfo.",
    .section = "5.6.1",
    .harmless = "",
    .needs = "the application's asking for BUFFER_INFO_PAYLOADTYPE"};

constexpr Rule kConformance{
    .id = "P-CONF",
    .severity = Severity::Warning,
    .sentence = "The producer answers other than the standard says",
    .explanation =
        "An event or a command that it lacks was refused with GC_ERR_INVALID_PARAMETER "
        "instead of GC_ERR_NOT_IMPLEMENTED, a command that it must have is missing, a "
        "value has another type than the standard's, or frame ids go backward.",
    .remedy =
        "Tell the producer's maker. Until it's mended, let the application take any refusal of an "
        "optional question alike, and look at a value's type before its bytes.",
    .section = "6.4",
    .harmless = "A producer of an older version of GenTL may lack what came later.",
    .needs = ""};

constexpr const Rule* kInfoRules[] = {&kSmall, &kUninitialized, &kOptional, &kPart, &kConformance};

constexpr std::uint64_t kInfoOften = 3;
constexpr std::uint64_t kHuge = 1U << 30U;

constexpr std::string_view kMandatory[] = {"BUFFER_INFO_BASE", "BUFFER_INFO_SIZE",
                                           "BUFFER_INFO_USER_PTR", "BUFFER_INFO_TLTYPE",
                                           "BUFFER_INFO_IMAGEPRESENT"};

struct TypeOf {
  std::string_view command;
  std::string_view type;
};
constexpr TypeOf kTypes[] = {
    {"BUFFER_INFO_FRAMEID", "INFO_DATATYPE_UINT64"},
    {"BUFFER_INFO_TIMESTAMP", "INFO_DATATYPE_UINT64"},
    {"BUFFER_INFO_IS_INCOMPLETE", "INFO_DATATYPE_BOOL8"},
    {"BUFFER_INFO_WIDTH", "INFO_DATATYPE_SIZET"},
    {"BUFFER_INFO_HEIGHT", "INFO_DATATYPE_SIZET"},
    {"BUFFER_INFO_SIZE_FILLED", "INFO_DATATYPE_SIZET"},
};

class Infos : public RuleFamily {
 public:
  Infos(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSGetBufferInfo:
      case Function::DSStartAcquisition:
        return Interest::All;
      case Function::GCInitLib:
      case Function::GCCloseLib:
      case Function::GCGetLastError:
      case Function::EventGetData:
        return Interest::None;
      default:
        return Interest::Failures;
    }
  }

  void Before(const Call& call) override {
    if (call.Which() == Function::DSStartAcquisition) {
      frameIds_.erase(call.HandleIn("hDS"));
      return;
    }
    if (!call.Failed()) {
      OnBufferInfo(call);
      return;
    }
    if (call.Which() == Function::GCRegisterEvent) {
      if (call.Result() == GC_ERR_INVALID_PARAMETER) {
        ReportConformance(call, call.NameIn("iEvent"), "GC_ERR_NOT_IMPLEMENTED");
      }
      return;
    }
    const std::string_view command = CommandOf(call);
    if (command.empty()) {
      return;
    }
    if (call.Number("iSize") > kHuge && call.Result() != GC_ERR_INVALID_HANDLE) {
      ReportUninitialized(call, command);
    } else if (call.Result() == GC_ERR_BUFFER_TOO_SMALL) {
      CountSmall(call, command);
    } else {
      Judge(call, command);
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    counts_.clear();
    frameIds_.clear();
    multiPart_.clear();
  }

 private:
  struct Counted {
    std::uint64_t count = 0;
    Moment first;
  };

  static std::string_view CommandOf(const Call& call) {
    for (const Label label : {Label("iCommand"), Label("iCmd"), Label("iInfoCmd"), Label("iID")}) {
      const std::string_view name = call.NameIn(label);
      if (!name.empty()) {
        return name;
      }
    }
    return {};
  }

  static std::uint64_t KeyIn(const Call& call, std::string_view command, std::uint64_t other) {
    return KeyOf(std::hash<std::string_view>{}(command), call.Message().shape->functionIndex) ^
           KeyOf(other, 77);
  }

  // Returns the count so far.
  Counted& Count(const Call& call, std::uint64_t key) {
    if (counts_.size() > 10'000) {
      counts_.clear();
    }
    Counted& counted = counts_[key];
    if (counted.count++ == 0) {
      counted.first = call.Moment();
    }
    return counted;
  }

  // It's found at the third time, and begins at the first.
  Finding* AddRepeated(const Rule& rule, Severity severity, std::uint64_t key, const Call& call,
                       const Counted& counted) {
    const bool isNew = findings_.Find(rule, key) == nullptr;
    Finding* finding = findings_.Add(rule, severity, key, isNew ? counted.first : call.Moment());
    if (finding != nullptr) {
      finding->count = counted.count;
      finding->last = call.Place();
    }
    return finding;
  }

  void CountSmall(const Call& call, std::string_view command) {
    const std::uint64_t key = KeyIn(call, command, call.Number("iSize") + 1);
    const Counted& counted = Count(call, key);
    if (counted.count < kInfoOften) {
      return;
    }
    if (Finding* finding = AddRepeated(kSmall, Severity::Warning, key, call, counted)) {
      finding->message = fmt::format(
          "{} of {} is asked again and again with too small a buffer, though the producer "
          "likely says what it takes: {} bytes stand in the size after the call.",
          call.Name(), command, call.Number("iSize"));
      NameFirst(call, *finding);
    }
  }

  void ReportUninitialized(const Call& call, std::string_view command) {
    if (Finding* finding = findings_.Add(kUninitialized, Severity::Warning, KeyIn(call, command, 0),
                                         call.Moment())) {
      finding->message =
          fmt::format("{} of {} has a size of {} bytes, 0x{:X}: likely the variable was never set.",
                      call.Name(), command, call.Number("iSize"), call.Number("iSize"));
      NameFirst(call, *finding);
    }
  }

  void Judge(const Call& call, std::string_view command) {
    const bool isImage = command == "BUFFER_INFO_WIDTH" || command == "BUFFER_INFO_HEIGHT" ||
                         command == "BUFFER_INFO_PIXELFORMAT";
    if (isImage && multiPart_.contains(call.HandleIn("hDS"))) {
      if (Finding* finding =
              findings_.Add(kPart, Severity::Warning, KeyIn(call, command, 0), call.Moment())) {
        finding->message =
            fmt::format("{} asks for {} of a frame that has several parts.", call.Name(), command);
        NameFirst(call, *finding);
      }
      return;
    }
    const bool isMandatory =
        std::find(std::begin(kMandatory), std::end(kMandatory), command) != std::end(kMandatory);
    const bool isLacking = call.Result() == GC_ERR_NOT_IMPLEMENTED ||
                           call.Result() == GC_ERR_NOT_AVAILABLE || call.Result() == GC_ERR_NO_DATA;
    if (isMandatory && isLacking) {
      ReportConformance(call, command, "a value, since every producer must have it");
    } else if (call.Result() == GC_ERR_INVALID_PARAMETER && !command.starts_with('(')) {
      ReportConformance(call, command, "GC_ERR_NOT_IMPLEMENTED");
    } else if (isLacking) {
      const std::uint64_t key = KeyIn(call, command, 0);
      const Counted& counted = Count(call, key);
      if (counted.count >= kInfoOften) {
        if (Finding* finding = AddRepeated(kOptional, Severity::Info, key, call, counted)) {
          finding->message = fmt::format("{} of {} answers {}: this producer has no such value.",
                                         call.Name(), command, call.ResultText());
          NameFirst(call, *finding);
        }
      }
    }
  }

  void ReportConformance(const Call& call, std::string_view what, std::string_view expected) {
    if (Finding* finding =
            findings_.Add(kConformance, Severity::Warning, KeyIn(call, what, 1), call.Moment())) {
      finding->message = fmt::format("{} of {} answers {}; the standard asks for {}.", call.Name(),
                                     what, call.ResultText(), expected);
      NameFirst(call, *finding);
    }
  }

  void OnBufferInfo(const Call& call) {
    const std::string_view command = call.Text("iCommand");
    const std::string_view type = call.Text("iType");
    for (const TypeOf& each : kTypes) {
      if (each.command == command && each.type != type) {
        if (Finding* finding = findings_.Add(kConformance, Severity::Warning,
                                             KeyIn(call, command, 2), call.Moment())) {
          finding->message =
              fmt::format("{} of {} answers with a value of {}; the standard has {}.", call.Name(),
                          command, type, each.type);
          NameFirst(call, *finding);
        }
      }
    }
    const HandleId id = call.HandleIn("hDS");
    if (id == kNoHandle) {
      return;
    }
    if (command == "BUFFER_INFO_PAYLOADTYPE") {
      if (call.Text("Buffer") == "10") {
        multiPart_[id] = true;
      } else if (!multiPart_.empty()) {
        multiPart_.erase(id);
      }
    } else if (command == "BUFFER_INFO_FRAMEID") {
      OnFrameId(call, id);
    }
  }

  void OnFrameId(const Call& call, HandleId id) {
    const HandleId buffer = call.HandleIn("hBuffer");
    const std::optional<std::uint64_t> value = call.Value("Buffer");
    if (!value.has_value() || buffer == kNoHandle || call.At(buffer).state != BufferState::Held ||
        call.At(buffer).frameIdTaken) {
      return;
    }
    const auto known = frameIds_.find(id);
    if (known == frameIds_.end()) {
      frameIds_[id] = {*value, call.Place()};
      return;
    }
    // Counters of 16 and of 32 bits start again.
    constexpr std::uint64_t nearWrap = 0x100;
    const std::uint64_t before = known->second.first;
    const bool wraps =
        (before <= 0xFFFF && before > 0xFFFF - nearWrap) || before > 0xFFFFFFFF - nearWrap;
    if (*value < before && !wraps) {
      if (Finding* finding =
              findings_.Add(kConformance, Severity::Warning, KeyOf(id, 3), call.Moment())) {
        finding->message = fmt::format("Frame ids of {} go backward: {} came after {}.",
                                       call.Named(id), *value, before);
        finding->handles.push_back(call.All().Name(id));
        Relate(*finding, known->second.second, "the id before");
      }
    }
    known->second = {*value, call.Place()};
  }

  static void NameFirst(const Call& call, Finding& finding) {
    if (call.Context().handles[0] != kNoHandle) {
      finding.handles.push_back(call.All().Name(call.Context().handles[0]));
    }
  }

  Findings& findings_;
  std::unordered_map<std::uint64_t, Counted> counts_;
  std::unordered_map<HandleId, std::pair<std::uint64_t, LogPlace>> frameIds_;
  std::unordered_map<HandleId, bool> multiPart_;
};

}  // namespace

FamilyEntry InfoFamily() {
  return {kInfoRules, MakeFamily<Infos>};
}

}  // namespace vextrel::program
