// SPDX-License-Identifier: MIT
// PORT: the camera's description, and its registers.
#include <fmt/format.h>

#include <charconv>
#include <map>
#include <unordered_map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kXml{
    .id = "PORT-XML",
    .severity = Severity::Error,
    .sentence = "The description of a module couldn't be fetched",
    .explanation =
        "Asking a port where its description lies, or reading it from there, failed, "
        "and nothing of the kind succeeded on that port later. Without the description "
        "an application knows no feature of the camera.",
    .remedy =
        "Look at the size that was asked for and the address; look whether the device was "
        "reachable at all. An old producer may know GCGetPortURL only.",
    .section = "4.1.2",
    .harmless = "",
    .needs = ""};

constexpr Rule kPortPoll{
    .id = "PORT-POLL",
    .severity = Severity::Info,
    .sentence = "A register is read over and over",
    .explanation =
        "The same address of a port was read 50 times a second or more, for a second or "
        "longer. Each read goes to the device and back.",
    .remedy = "Read it once, wait for an event of the device, or wait between two reads.",
    .section = "",
    .harmless = "Some status can't be had otherwise.",
    .needs = "times"};

constexpr const Rule* kPortRules[] = {&kXml, &kPortPoll};

constexpr std::int64_t kPortSecond = 1'000'000;
constexpr std::uint64_t kReadsPerSecond = 50;

class Ports : public RuleFamily {
 public:
  Ports(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {
    addressPlace_ = CallShapes()[FindCallShape("GCReadPort")].Find("iAddress");
  }

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::GCGetPortURL:
      case Function::GCGetNumPortURLs:
      case Function::GCGetPortURLInfo:
      case Function::GCReadPort:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void After(const Call& call) override {
    const HandleId id = call.Context().handles[0];
    if (id == kNoHandle || !call.At(id).isOpen) {
      return;
    }
    if (call.Which() == Function::GCReadPort) {
      OnRead(call, id);
    } else if (call.Which() != Function::GCGetPortURLInfo || call.Text("iCmd") == "URL_INFO_URL") {
      OnUrl(call, id,
            call.Which() == Function::GCGetPortURL ? call.Text("URL") : call.Text("Buffer"));
    }
  }

  void EndSession(const SessionModel& model, const Moment& /*moment*/, bool /*isClosed*/) override {
    for (const auto& [id, port] : ports_) {
      if (!port.failure.has_value()) {
        continue;
      }
      if (Finding* finding = findings_.Add(kXml, Severity::Error, KeyOf(id), *port.failure)) {
        finding->message = port.what;
        finding->handles.push_back(model.AllHandles().Name(id));
        Relate(*finding, model.AllHandles().At(id).openedAt,
               model.AllHandles().FullName(id) + " is opened");
      }
    }
    ports_.clear();
    readers_.clear();
  }

 private:
  struct Port {
    std::optional<Moment> failure;  // the first one that nothing made good
    std::string what;
    std::uint64_t begin = 0;  // of the description
    std::uint64_t end = 0;
  };
  struct Reader {
    std::int64_t since = 0;
    std::uint64_t count = 0;
    Moment first;
  };

  void OnUrl(const Call& call, HandleId id, std::string_view url) {
    if (ports_.size() > 1000) {
      std::erase_if(ports_, [](const auto& each) { return !each.second.failure.has_value(); });
    }
    if (call.Result() == GC_ERR_BUFFER_TOO_SMALL || ports_.size() > 1000) {
      return;
    }
    Port& port = ports_[id];
    if (!call.Failed()) {
      port.failure.reset();
      FindDescription(url, port);
    } else {
      Fail(call, id, port,
           fmt::format("{} of {} answers {}", call.Name(), call.Named(id), call.ResultText()));
    }
  }

  // 'local:name;address;size', both hexadecimal.
  static void FindDescription(std::string_view url, Port& port) {
    const std::size_t local = url.find("local:");
    const std::size_t first = url.find(';');
    if (local == std::string_view::npos || first == std::string_view::npos) {
      return;
    }
    const std::size_t second = url.find(';', first + 1);
    if (second == std::string_view::npos) {
      return;
    }
    std::uint64_t begin = 0;
    std::uint64_t size = 0;
    const char* text = url.data();
    std::from_chars(text + first + 1, text + second, begin, 16);
    std::from_chars(text + second + 1, text + url.size(), size, 16);
    port.begin = begin;
    port.end = begin + size;
  }

  void OnRead(const Call& call, HandleId id) {
    const std::uint64_t address = call.Message().values[addressPlace_].number;
    const auto known = ports_.find(id);
    if (known != ports_.end() && address >= known->second.begin && address < known->second.end) {
      if (call.Failed()) {
        Fail(call, id, known->second,
             fmt::format("Reading the description of {} at 0x{:x} answers {}", call.Named(id),
                         address, call.ResultText()));
      } else {
        known->second.failure.reset();
      }
      return;
    }
    if (call.HasTime()) {
      Poll(call, id, address);
    }
  }

  static void Fail(const Call& call, HandleId /*id*/, Port& port, const std::string& what) {
    if (!port.failure.has_value()) {
      port.failure = call.Moment();
      port.what = what + ", and nothing of the kind succeeded later.";
    }
  }

  void Poll(const Call& call, HandleId id, std::uint64_t address) {
    if (readers_.size() > 1000) {
      readers_.clear();
    }
    Reader& reader = readers_[KeyOf(id, address)];
    const std::int64_t passed = call.Time() - reader.since;
    if (reader.count != 0 && passed >= 0 && passed < kPortSecond) {
      ++reader.count;
      return;
    }
    if (passed < 2 * kPortSecond && reader.count >= kReadsPerSecond) {
      if (Finding* finding =
              findings_.Add(kPortPoll, Severity::Info, KeyOf(id, address), reader.first)) {
        finding->message = fmt::format("{} is read at 0x{:x} {} times in a second.", call.Named(id),
                                       address, reader.count);
        finding->handles.push_back(call.All().Name(id));
      }
    }
    reader = {call.Time(), 1, call.Moment()};
  }

  Findings& findings_;
  std::size_t addressPlace_;
  std::map<HandleId, Port> ports_;
  std::unordered_map<std::uint64_t, Reader> readers_;
};

}  // namespace

FamilyEntry PortFamily() {
  return {kPortRules, MakeFamily<Ports>};
}

}  // namespace vextrel::program
