// SPDX-License-Identifier: MIT
// DEV: devices that can't be opened, written to, or reached any more.
#include <fmt/format.h>

#include <map>
#include <optional>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kDenied{
    .id = "DEV-DENIED",
    .severity = Severity::Error,
    .sentence = "A device couldn't be opened, since it isn't free",
    .explanation =
        "IFOpenDevice answered GC_ERR_ACCESS_DENIED, or GC_ERR_RESOURCE_IN_USE with no "
        "holder in this log. The access status that the application read last is "
        "beside it. If another device, or this one with less access, was opened next, "
        "it's an info.",
    .remedy =
        "Close the other application that uses the camera, wait for the heartbeat of one "
        "that crashed, or ask for DEVICE_ACCESS_READONLY. An access status of 3 can also "
        "mean a missing driver or right.",
    .section = "6.1.4, 6.4.3.2",
    .harmless = "An application may try one device after the other.",
    .needs = ""};

constexpr Rule kReadOnlyWrite{
    .id = "DEV-RO-WRITE",
    .severity = Severity::Error,
    .sentence = "A device that was opened for reading only is written to",
    .explanation =
        "GCWritePort went to the port of a device that was opened with "
        "DEVICE_ACCESS_READONLY, and failed. If it succeeded, that's a warning.",
    .remedy = "Open the device with DEVICE_ACCESS_CONTROL or DEVICE_ACCESS_EXCLUSIVE.",
    .section = "6.4.3.1",
    .harmless = "",
    .needs = "the line that opens the device"};

constexpr Rule kLost{
    .id = "DEV-LOST",
    .severity = Severity::Warning,
    .sentence = "A device stopped answering",
    .explanation =
        "Its port worked, and then every access to it failed, three times or more, to "
        "the end of its life: it was likely unplugged, switched off, or taken over. One failure is "
        "enough if waits for its frames, of a second or longer in all, timed out before or after "
        "it, and nothing came any more: no frame, and no answer from its port.",
    .remedy =
        "Look at its cable and its power, and whether another application took it over. In the "
        "application, close the stream and the device when it's gone, before the list is updated "
        "and it's opened again.",
    .section = "6.3.6",
    .harmless = "A device may refuse one access and take the next; three in a row is no proof.",
    .needs = ""};

constexpr const Rule* kDeviceRules[] = {&kDenied, &kReadOnlyWrite, &kLost};

constexpr std::uint64_t kFailuresOfLost = 3;
constexpr std::uint64_t kLongSilenceMs = 1000;

std::string StatusText(std::string_view status) {
  constexpr std::string_view names[] = {
      "unknown", "readable and writable", "readable only",   "no access",
      "busy",    "open for writing",      "open for reading"};
  const std::size_t value = status.size() == 1 && status[0] >= '0'
                                ? static_cast<std::size_t>(status[0] - '0')
                                : std::size(names);
  return value < std::size(names) ? fmt::format("{}, {}", status, names[value])
                                  : std::string(status);
}

class Devices : public RuleFamily {
 public:
  Devices(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::IFGetDeviceInfo:
      case Function::IFOpenDevice:
      case Function::GCReadPort:
      case Function::GCWritePort:
      case Function::GCReadPortStacked:
      case Function::GCWritePortStacked:
      case Function::DevClose:
        return Interest::All;
      case Function::EventGetData:
        return Interest::Failures;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    if (call.Which() == Function::DevClose && !call.Failed()) {
      const auto device = devices_.find(call.Context().handles[0]);
      if (device != devices_.end()) {
        JudgeSilence(call.Model(), device->first, device->second);
        devices_.erase(device);
      }
    }
  }

  void After(const Call& call) override {
    switch (call.Which()) {
      case Function::IFGetDeviceInfo:
        if (!call.Failed() && call.Text("iID") == "DEVICE_INFO_ACCESS_STATUS") {
          status_ = std::string(call.Text("Buffer"));
          statusAt_ = call.Place();
          statusOf_ = std::string(call.Text("psDeviceName"));
        }
        break;
      case Function::IFOpenDevice:
        OnOpen(call);
        break;
      case Function::DevClose:
        break;
      case Function::EventGetData:
        OnWait(call);
        break;
      default:
        OnPort(call);
    }
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool /*isClosed*/) override {
    for (const auto& [id, device] : devices_) {
      JudgeSilence(model, id, device);
    }
    devices_.clear();
    denied_.clear();
  }

 private:
  struct Device {
    bool isReadOnly = false;
    LogPlace lastGood;
    bool wasGood = false;
    std::uint64_t failures = 0;  // since then
    Moment firstFailure;
    std::string firstResult;
    // The stream that was waited for in vain, since when, for how many ms, and after how many
    // frames.
    HandleId silentStream = kNoHandle;
    LogPlace silentAt;
    std::uint64_t silentFor = 0;
    std::uint64_t framesBefore = 0;
  };

  void OnOpen(const Call& call) {
    if (!call.Failed()) {
      const HandleId id = call.HandleIn("hDev");
      if (id != kNoHandle) {
        Bound(call);
        devices_[id] = {};
        devices_[id].isReadOnly = call.Text("iOpenFlags") == "DEVICE_ACCESS_READONLY";
        Relent(call, id);
      }
      return;
    }
    if (call.Result() != GC_ERR_ACCESS_DENIED && call.Result() != GC_ERR_RESOURCE_IN_USE) {
      return;
    }
    const std::string name(call.Text("sDevName"));
    if (call.Result() == GC_ERR_RESOURCE_IN_USE && IsOpenHere(call, name)) {
      return;
    }
    const std::uint64_t key = KeyOf(std::hash<std::string>{}(name));
    if (denied_.size() < kMostDenied) {
      denied_.push_back(key);
    }
    Finding* finding = findings_.Add(kDenied, Severity::Error, key, call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message = fmt::format(
        "IFOpenDevice of '{}' with {} answers {}: somebody else has it, or the right "
        "to it is missing.",
        name, call.Text("iOpenFlags"), call.ResultText());
    if (statusOf_ == name) {
      Relate(*finding, statusAt_, "the access status is " + StatusText(status_));
    }
  }

  // Whoever was refused found another device, or went on with less access.
  void Relent(const Call& call, HandleId id) {
    for (const std::uint64_t key : denied_) {
      if (Finding* finding = findings_.Find(kDenied, key)) {
        finding->severity = Severity::Info;
        finding->message += fmt::format(" The application went on with {}.", call.Named(id));
        Relate(*finding, call.Place(), call.Named(id) + " is opened");
      }
    }
    denied_.clear();
  }

  static bool IsOpenHere(const Call& call, std::string_view name) {
    for (const HandleId id : call.All().OpenOnes()) {
      const Handle& handle = call.At(id);
      if (handle.kind == HandleKind::Device && handle.id == name && handle.openedAt.has_value()) {
        return true;
      }
    }
    return false;
  }

  void OnPort(const Call& call) {
    const HandleId id = call.DeviceOfPort();
    const auto known = devices_.find(id);
    if (known == devices_.end()) {
      return;
    }
    Device& device = known->second;
    const bool isWrite =
        call.Which() == Function::GCWritePort || call.Which() == Function::GCWritePortStacked;
    if (isWrite && device.isReadOnly && id != call.Context().handles[0]) {
      ReportReadOnly(call, id);
      return;
    }
    if (!call.Failed()) {
      device.lastGood = call.Place();
      device.wasGood = true;
      device.failures = 0;
      device.silentStream = kNoHandle;
    } else if (device.wasGood && IsLoss(call.Result())) {
      OnFailure(call, id, device);
    }
  }

  void OnFailure(const Call& call, HandleId id, Device& device) {
    if (++device.failures == 1) {
      device.firstFailure = call.Moment();
      device.firstResult = call.ResultText();
    }
    if (device.failures >= kFailuresOfLost) {
      ReportLoss(call.Model(), id, device);
    }
  }

  void OnWait(const Call& call) {
    if (!call.Context().isNewBufferEvent || call.Result() != GC_ERR_TIMEOUT) {
      return;
    }
    const HandleId id = call.At(call.Context().handles[0]).parent;
    const Stream* stream = call.Model().FindStream(id);
    if (stream == nullptr || !stream->IsRunning()) {
      return;
    }
    const auto known = devices_.find(call.At(id).parent);
    if (known == devices_.end()) {
      return;
    }
    Device& device = known->second;
    if (device.silentStream != id || device.framesBefore != stream->Frames()) {
      device.silentStream = id;
      device.silentAt = call.Place();
      device.silentFor = 0;
      device.framesBefore = stream->Frames();
    }
    device.silentFor += call.Number("iTimeout");
  }

  void JudgeSilence(const SessionModel& model, HandleId id, const Device& device) {
    const Stream* stream = model.FindStream(device.silentStream);
    if (device.failures == 0 || device.failures >= kFailuresOfLost || stream == nullptr ||
        device.silentFor < kLongSilenceMs || stream->Frames() != device.framesBefore) {
      return;
    }
    if (Finding* finding = ReportLoss(model, id, device)) {
      finding->message = fmt::format(
          "{} answers {}, and {} delivers no frame any more: the device is likely gone.",
          model.AllHandles().FullName(id), device.firstResult,
          model.AllHandles().Name(device.silentStream));
      Relate(
          *finding, device.silentAt,
          "a wait for a frame of " + model.AllHandles().Name(device.silentStream) + " times out");
    }
  }

  // Returns the finding if it's a new one.
  Finding* ReportLoss(const SessionModel& model, HandleId id, const Device& device) {
    Finding* finding = findings_.Add(kLost, Severity::Warning, KeyOf(id), device.firstFailure);
    if (finding == nullptr) {
      return nullptr;
    }
    const Handles& handles = model.AllHandles();
    finding->count = device.failures;
    finding->message = fmt::format(
        "From here on {} answers {} to every access of its port: the device is likely gone.",
        handles.FullName(id), device.firstResult);
    finding->handles.push_back(handles.Name(id));
    Relate(*finding, handles.At(id).openedAt, handles.Name(id) + " is opened");
    Relate(*finding, device.lastGood, "the last access to its port that succeeds");
    return finding;
  }

  void ReportReadOnly(const Call& call, HandleId id) {
    Finding* finding =
        findings_.Add(kReadOnlyWrite, call.Failed() ? Severity::Error : Severity::Warning,
                      KeyOf(id, call.Failed()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message =
        fmt::format("{} to {}, which was opened with DEVICE_ACCESS_READONLY{}.", call.Name(),
                    call.Named(id), call.Failed() ? ", is refused" : "; the producer lets it pass");
    finding->handles.push_back(call.All().Name(id));
    Relate(*finding, call.At(id).openedAt, call.All().Name(id) + " is opened");
  }

  void Bound(const Call& call) { ForgetClosed(devices_, call.All(), 1000); }

  static constexpr std::size_t kMostDenied = 64;

  Findings& findings_;
  std::map<HandleId, Device> devices_;
  std::vector<std::uint64_t> denied_;
  std::string status_;
  std::string statusOf_;
  std::optional<LogPlace> statusAt_;
};

}  // namespace

FamilyEntry DeviceFamily() {
  return {kDeviceRules, MakeFamily<Devices>};
}

}  // namespace vextrel::program
