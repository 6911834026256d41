// SPDX-License-Identifier: MIT
// BUF, the buffers: there are enough, they're large enough, and each is its stream's own.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

constexpr Rule kFew{
    .id = "BUF-FEW",
    .severity = Severity::Error,
    .sentence = "A stream was started with too few buffers",
    .explanation =
        "Fewer buffers are announced than STREAM_INFO_NUM_ANNOUNCE_MIN asks for, or "
        "DSStartAcquisition answers GC_ERR_INVALID_BUFFER.",
    .remedy =
        "Announce at least as many buffers as STREAM_INFO_NUM_ANNOUNCE_MIN says, and queue "
        "them before the start.",
    .section = "6.3.5.11, 5.2.3",
    .harmless = "",
    .needs = "the application's asking for STREAM_INFO_NUM_ANNOUNCE_MIN"};

constexpr Rule kSize{
    .id = "BUF-SIZE",
    .severity = Severity::Error,
    .sentence = "Buffers are too small for a frame",
    .explanation =
        "A stream was started with a buffer that is smaller than the "
        "STREAM_INFO_PAYLOAD_SIZE that was read last, the start or the delivery "
        "answered GC_ERR_BUFFER_TOO_SMALL, or a frame says that its data is larger than "
        "its buffer.",
    .remedy =
        "Ask for the payload size again behind every change of width, height or pixel "
        "format, and announce buffers of that size.",
    .section = "5.2.1",
    .harmless = "",
    .needs = "the application's asking for STREAM_INFO_PAYLOAD_SIZE"};

constexpr Rule kBufferLeak{
    .id = "BUF-LEAK",
    .severity = Severity::Warning,
    .sentence = "A stream has more buffers at each start",
    .explanation =
        "At three starts in a row, more buffers were announced than at the start "
        "before. ACQ_QUEUE_ALL_DISCARD takes buffers out of the queues; it doesn't "
        "revoke them.",
    .remedy = "Revoke each announced buffer with DSRevokeBuffer when the acquisition is stopped.",
    .section = "6.3.5.1, 6.3.5.2",
    .harmless = "A pool may grow on purpose.",
    .needs = ""};

constexpr Rule kForeign{
    .id = "BUF-FOREIGN",
    .severity = Severity::Error,
    .sentence = "A buffer was used with a stream that it wasn't announced on",
    .explanation = "The call failed, and the buffer was announced on another stream.",
    .remedy = "Keep the buffers of each stream in a list of its own.",
    .section = "3.6",
    .harmless = "",
    .needs = "the line that announced the buffer"};

constexpr Rule kMix{
    .id = "BUF-MIX",
    .severity = Severity::Warning,
    .sentence = "Buffers of the application and of the producer are mixed on one stream",
    .explanation =
        "Both DSAnnounceBuffer and DSAllocAndAnnounceBuffer were used on one stream. "
        "Not every producer takes that.",
    .remedy = "Use one of the two functions for all buffers of a stream.",
    .section = "3.6",
    .harmless = "A producer may allow it.",
    .needs = ""};

constexpr Rule kBufferDup{
    .id = "BUF-DUP",
    .severity = Severity::Warning,
    .sentence = "Two announced buffers share memory",
    .explanation =
        "The memory of a buffer overlaps that of another one that is announced on the "
        "same stream: two frames can be written to the same place.",
    .remedy = "Give each buffer memory of its own.",
    .section = "3.6",
    .harmless = "",
    .needs = ""};

constexpr Rule kIncomplete{
    .id = "BUF-INCOMPLETE",
    .severity = Severity::Warning,
    .sentence = "Frames were delivered incomplete",
    .explanation =
        "BUFFER_INFO_IS_INCOMPLETE was 1 for a delivered frame: data was lost on the "
        "way, mostly packets in a network. Nothing is said of streams whose "
        "application doesn't ask.",
    .remedy =
        "Look at the packet size, the packet delay, the network card's receive buffers and "
        "the bandwidth of all cameras together.",
    .section = "6.4.4.4",
    .harmless = "",
    .needs = "the application's asking for BUFFER_INFO_IS_INCOMPLETE"};

constexpr const Rule* kBufferRules[] = {&kFew, &kSize,      &kBufferLeak, &kForeign,
                                        &kMix, &kBufferDup, &kIncomplete};

constexpr std::uint64_t kCyclesOfLeak = 3;

class Buffers : public RuleFamily {
 public:
  Buffers(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSAnnounceBuffer:
      case Function::DSAllocAndAnnounceBuffer:
      case Function::DSStartAcquisition:
      case Function::DSGetInfo:
      case Function::DSGetBufferInfo:
      case Function::DSRevokeBuffer:
      case Function::DSClose:
        return Interest::All;
      case Function::DSQueueBuffer:
      case Function::EventGetData:
        return Interest::Failures;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    if (call.Failed()) {
      CheckForeign(call);
    }
    const HandleId id = call.HandleIn("hDS");
    if (call.Which() == Function::DSRevokeBuffer && !call.Failed() && streams_.contains(id)) {
      Forget(streams_[id], call.HandleIn("hBuffer"));
    } else if (call.Which() == Function::DSClose && !call.Failed()) {
      streams_.erase(id);
    } else if (call.Which() == Function::DSStartAcquisition && id != kNoHandle) {
      OnStart(call, id);
    } else if (call.Which() == Function::DSGetBufferInfo) {
      OnInfo(call, id);
    }
  }

  void After(const Call& call) override {
    const HandleId id = call.HandleIn("hDS");
    switch (call.Which()) {
      case Function::DSAnnounceBuffer:
      case Function::DSAllocAndAnnounceBuffer:
        if (!call.Failed() && id != kNoHandle) {
          OnAnnounce(call, id);
        }
        break;
      case Function::DSGetInfo:
        if (!call.Failed() && id != kNoHandle) {
          OnStreamInfo(call, id);
        }
        break;
      case Function::EventGetData:
        if (call.Result() == GC_ERR_BUFFER_TOO_SMALL && call.Context().isNewBufferEvent) {
          OnTooSmall(call, call.At(call.Context().handles[0]).parent);
        }
        break;
      default:
        break;
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    streams_.clear();
  }

 private:
  struct Buffer {
    HandleId id = kNoHandle;
    std::uint64_t begin = 0;  // 0 if the producer allocated it
    std::uint64_t size = 0;
    LogPlace place;
  };
  struct KnownStream {
    std::vector<Buffer> buffers;
    std::optional<LogPlace> announcedAt;
    std::optional<LogPlace> allocatedAt;
    std::optional<std::uint64_t> payload;
    LogPlace payloadAt;
    std::optional<std::uint64_t> least;
    LogPlace leastAt;
    std::size_t atStart = 0;
    std::uint64_t growths = 0;
    std::optional<LogPlace> growsSince;
    bool wasStarted = false;
    std::uint64_t run = 0;  // of incomplete frames
    std::uint64_t longestRun = 0;
  };

  // So many buffers are told apart; memory stays bounded whatever comes.
  static constexpr std::size_t kMostBuffers = 20'000;

  static void Forget(KnownStream& stream, HandleId id) {
    std::erase_if(stream.buffers, [id](const Buffer& each) { return each.id == id; });
  }

  void OnAnnounce(const Call& call, HandleId id) {
    if (streams_.size() > 1000) {
      std::erase_if(streams_, [&](const auto& each) { return !call.At(each.first).isOpen; });
    }
    KnownStream& stream = streams_[id];
    const HandleId buffer = call.HandleIn("hBuffer");
    const bool isOurs = call.Which() == Function::DSAnnounceBuffer;
    std::optional<LogPlace>& first = isOurs ? stream.announcedAt : stream.allocatedAt;
    const std::optional<LogPlace>& other = isOurs ? stream.allocatedAt : stream.announcedAt;
    first = first.value_or(call.Place());
    if (other.has_value()) {
      if (Finding* finding = findings_.Add(kMix, Severity::Warning, KeyOf(id), call.Moment())) {
        finding->message = fmt::format(
            "{} has buffers of both kinds: the application's memory and the producer's.",
            call.Named(id));
        finding->handles.push_back(call.All().Name(id));
        Relate(*finding, other, isOurs ? "DSAllocAndAnnounceBuffer" : "DSAnnounceBuffer");
      }
    }
    if (buffer == kNoHandle || stream.buffers.size() == kMostBuffers) {
      return;
    }
    const Buffer added{buffer, isOurs ? AddressIn(call, 1) : 0, call.Number("iSize"), call.Place()};
    for (const Buffer& each : stream.buffers) {
      if (added.begin != 0 && each.begin != 0 && added.begin < each.begin + each.size &&
          each.begin < added.begin + added.size) {
        ReportShared(call, added, each);
        break;
      }
    }
    stream.buffers.push_back(added);
  }

  static std::uint64_t AddressIn(const Call& call, std::size_t place) {
    std::uint64_t value = 0;
    for (const char each : call.Message().values[place].text) {
      const int digit = each <= '9' ? each - '0' : (each | 0x20) - 'a' + 10;
      value = value << 4U | (static_cast<std::uint64_t>(digit) & 0xFU);
    }
    return value;
  }

  void ReportShared(const Call& call, const Buffer& added, const Buffer& before) {
    if (Finding* finding =
            findings_.Add(kBufferDup, Severity::Warning, KeyOf(added.id), call.Moment())) {
      finding->message =
          fmt::format("{} and {} share memory.", call.Named(added.id), call.Named(before.id));
      finding->handles = {call.All().Name(added.id), call.All().Name(before.id)};
      Relate(*finding, before.place, call.All().Name(before.id) + " is announced");
    }
  }

  void OnStreamInfo(const Call& call, HandleId id) {
    const std::string_view command = call.Text("iCmd");
    const std::optional<std::uint64_t> value = call.Value("Buffer");
    if (!value.has_value()) {
      return;
    }
    if (command == "STREAM_INFO_PAYLOAD_SIZE") {
      streams_[id].payload = value;
      streams_[id].payloadAt = call.Place();
    } else if (command == "STREAM_INFO_NUM_ANNOUNCE_MIN") {
      streams_[id].least = value;
      streams_[id].leastAt = call.Place();
    }
  }

  void OnStart(const Call& call, HandleId id) {
    KnownStream& stream = streams_[id];
    const bool isKnown = call.At(id).openedAt.has_value();
    const bool isFew = isKnown && stream.least.has_value() && stream.buffers.size() < *stream.least;
    if (isFew || call.Result() == GC_ERR_INVALID_BUFFER) {
      ReportFew(call, id, stream);
    }
    const auto small =
        std::find_if(stream.buffers.begin(), stream.buffers.end(), [&](const Buffer& each) {
          return stream.payload.has_value() && each.size < (*stream.payload & 0xFFFFFFFF);
        });
    if (small != stream.buffers.end()) {
      ReportSmall(call, id, stream, *small);
    } else if (call.Result() == GC_ERR_BUFFER_TOO_SMALL) {
      OnTooSmall(call, id);
    }
    if (!call.Failed() && isKnown) {
      CheckGrowth(call, id, stream);
    }
  }

  void ReportFew(const Call& call, HandleId id, const KnownStream& stream) {
    Finding* finding = findings_.Add(kFew, Severity::Error, KeyOf(id), call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message = fmt::format("{} is started with {} announced buffers", call.Named(id),
                                   stream.buffers.size());
    if (stream.least.has_value()) {
      finding->message += fmt::format(", and needs {}", *stream.least);
      Relate(*finding, stream.leastAt, "STREAM_INFO_NUM_ANNOUNCE_MIN is read");
    }
    finding->message += call.Failed() ? fmt::format("; it answers {}.", call.ResultText()) : ".";
    finding->handles.push_back(call.All().Name(id));
  }

  void ReportSmall(const Call& call, HandleId id, const KnownStream& stream, const Buffer& small) {
    Finding* finding = findings_.Add(kSize, Severity::Error, KeyOf(id), call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message =
        fmt::format("{} is started, but {} has {} bytes, and a frame needs {}.", call.Named(id),
                    call.Named(small.id), small.size, *stream.payload);
    finding->handles = {call.All().Name(id), call.All().Name(small.id)};
    Relate(*finding, small.place, call.All().Name(small.id) + " is announced");
    Relate(*finding, stream.payloadAt, "STREAM_INFO_PAYLOAD_SIZE is read");
  }

  void OnTooSmall(const Call& call, HandleId id) {
    Finding* finding =
        findings_.Add(kSize, Severity::Error, KeyOf(id, call.Which()), call.Moment());
    if (finding == nullptr) {
      return;
    }
    finding->message = fmt::format("{} says that the buffers of {} are too small for a frame.",
                                   call.Name(), call.Named(id));
    finding->handles.push_back(call.All().Name(id));
    const KnownStream& stream = streams_[id];
    if (!stream.buffers.empty()) {
      Relate(*finding, stream.buffers.front().place,
             fmt::format("a buffer of {} bytes is announced", stream.buffers.front().size));
    }
    if (stream.payload.has_value()) {
      Relate(*finding, stream.payloadAt, "STREAM_INFO_PAYLOAD_SIZE is read");
    } else {
      finding->message += " The application never asked for STREAM_INFO_PAYLOAD_SIZE.";
    }
  }

  void CheckGrowth(const Call& call, HandleId id, KnownStream& stream) {
    const std::size_t now = stream.buffers.size();
    const bool grows = stream.wasStarted && now > stream.atStart;
    stream.growths = grows ? stream.growths + 1 : 0;
    if (!grows) {
      stream.growsSince = call.Place();
    }
    if (stream.growths >= kCyclesOfLeak) {
      if (Finding* finding =
              findings_.Add(kBufferLeak, Severity::Warning, KeyOf(id), call.Moment())) {
        std::uint64_t bytes = 0;
        for (const Buffer& each : stream.buffers) {
          bytes += each.size;
        }
        finding->message = fmt::format(
            "{} has {} buffers of {} bytes together, and had {} at the start before: those of "
            "earlier acquisitions were never revoked.",
            call.Named(id), now, bytes, stream.atStart);
        finding->handles.push_back(call.All().Name(id));
        Relate(*finding, stream.growsSince, "the first start of the row");
      }
    }
    stream.atStart = now;
    stream.wasStarted = true;
  }

  void CheckForeign(const Call& call) {
    const HandleId stream = call.HandleIn("hDS");
    HandleId buffer = call.HandleIn("hBuffer");
    buffer = buffer == kNoHandle ? call.HandleIn("hB") : buffer;
    if (stream == kNoHandle || buffer == kNoHandle || !call.At(buffer).isOpen ||
        !call.At(stream).isOpen || !call.At(buffer).openedAt.has_value() ||
        call.At(buffer).parent == stream || call.At(buffer).parent == kNoHandle) {
      return;
    }
    if (Finding* finding =
            findings_.Add(kForeign, Severity::Error, KeyOf(buffer, stream), call.Moment())) {
      finding->message =
          fmt::format("{} uses {} with {}, but it was announced on {}.", call.Name(),
                      call.Named(buffer), call.Named(stream), call.Named(call.At(buffer).parent));
      finding->handles = {call.All().Name(buffer), call.All().Name(stream),
                          call.All().Name(call.At(buffer).parent)};
      Relate(*finding, call.At(buffer).openedAt, call.All().Name(buffer) + " is announced");
    }
  }

  void OnInfo(const Call& call, HandleId id) {
    const HandleId buffer = call.HandleIn("hBuffer");
    if (call.Failed() || id == kNoHandle || buffer == kNoHandle) {
      return;
    }
    const std::string_view command = call.NameIn("iCommand");
    if (command == "BUFFER_INFO_IS_INCOMPLETE") {
      const Handle& handle = call.At(buffer);
      if (handle.state == BufferState::Held && !handle.incompleteTaken) {
        OnIncomplete(call, id, call.Text("Buffer") != "0");
      }
    } else if (command == "BUFFER_INFO_DATA_LARGER_THAN_BUFFER" && call.Text("Buffer") == "1") {
      OnTooSmall(call, id);
    }
  }

  void OnIncomplete(const Call& call, HandleId id, bool isIncomplete) {
    KnownStream& stream = streams_[id];
    stream.run = isIncomplete ? stream.run + 1 : 0;
    if (!isIncomplete) {
      return;
    }
    stream.longestRun = std::max(stream.longestRun, stream.run);
    Finding* finding = findings_.Add(kIncomplete, Severity::Warning, KeyOf(id), call.Moment());
    if (finding != nullptr) {
      finding->handles.push_back(call.All().Name(id));
    }
    finding = findings_.Find(kIncomplete, KeyOf(id));
    if (finding != nullptr) {
      finding->message = fmt::format(
          "{} delivered incomplete frames, up to {} in a row: likely data is lost on the way.",
          call.Named(id), stream.longestRun);
    }
  }

  Findings& findings_;
  std::map<HandleId, KnownStream> streams_;
};

}  // namespace

FamilyEntry BufferFamily() {
  return {kBufferRules, MakeFamily<Buffers>};
}

}  // namespace vextrel::program
