// SPDX-License-Identifier: MIT
// BUF, the start: a stream has enough buffers then, they're large enough, and not ever more of
// them.
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
        "Fewer buffers are announced than STREAM_INFO_NUM_ANNOUNCE_MIN asks for, "
        "DSStartAcquisition answers GC_ERR_INVALID_BUFFER, or no buffer is queued at the "
        "start nor until a wait for a frame has timed out.",
    .remedy =
        "Announce at least as many buffers as STREAM_INFO_NUM_ANNOUNCE_MIN says, and queue "
        "them before the start.",
    .section = "6.3.5.11, 5.2.3",
    .harmless = "",
    .needs =
        "the application's asking for STREAM_INFO_NUM_ANNOUNCE_MIN, or the opening of the stream"};

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
        "Ask for the payload size again after every change of width, height or pixel "
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

constexpr const Rule* kBufferRules[] = {&kFew, &kSize, &kBufferLeak};

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
      case Function::DSQueueBuffer:
      case Function::DSFlushQueue:
      case Function::DSClose:
      case Function::EventGetData:
        return Interest::All;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    const HandleId id = call.HandleIn("hDS");
    if (call.Which() == Function::DSRevokeBuffer && !call.Failed() && streams_.contains(id)) {
      Forget(streams_[id], call.HandleIn("hBuffer"));
    } else if (call.Which() == Function::DSClose && !call.Failed()) {
      streams_.erase(id);
    } else if (call.Which() == Function::DSStartAcquisition && id != kNoHandle) {
      OnStart(call, id);
    } else if (call.Which() == Function::DSGetBufferInfo && !call.Failed() && id != kNoHandle &&
               call.NameIn("iCommand") == "BUFFER_INFO_DATA_LARGER_THAN_BUFFER" &&
               call.Text("Buffer") == "1") {
      OnTooSmall(call, id);
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
      case Function::DSQueueBuffer:
      case Function::DSFlushQueue:
        if (const Stream* stream = call.StreamIn();
            stream != nullptr && stream->CurrentDepth().value_or(1) > 0 && streams_.contains(id)) {
          streams_[id].emptySince.reset();
        }
        break;
      case Function::EventGetData:
        if (call.Context().isNewBufferEvent) {
          OnWait(call, call.At(call.Context().handles[0]).parent);
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
    std::uint64_t size = 0;
    LogPlace place;
  };
  struct KnownStream {
    std::vector<Buffer> buffers;
    std::optional<std::uint64_t> payload;
    LogPlace payloadAt;
    std::optional<std::uint64_t> least;
    LogPlace leastAt;
    std::size_t atStart = 0;
    std::uint64_t growths = 0;
    std::optional<LogPlace> growsSince;
    bool wasStarted = false;
    std::optional<Moment> emptySince;  // the start, as long as nothing was queued
  };

  // So many buffers are told apart; memory stays bounded whatever comes.
  static constexpr std::size_t kMostBuffers = 20'000;

  static void Forget(KnownStream& stream, HandleId id) {
    std::erase_if(stream.buffers, [id](const Buffer& each) { return each.id == id; });
  }

  void OnAnnounce(const Call& call, HandleId id) {
    ForgetClosed(streams_, call.All(), 1000);
    std::vector<Buffer>& buffers = streams_[id].buffers;
    const HandleId buffer = call.HandleIn("hBuffer");
    if (buffer != kNoHandle && buffers.size() < kMostBuffers) {
      buffers.push_back({buffer, call.Number("iSize"), call.Place()});
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
      const Stream* started = call.StreamIn();
      const bool isEmpty = started != nullptr && started->CurrentDepth() == 0;
      stream.emptySince = isEmpty ? std::optional<Moment>(call.Moment()) : std::nullopt;
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

  void OnWait(const Call& call, HandleId id) {
    if (call.Result() == GC_ERR_BUFFER_TOO_SMALL) {
      OnTooSmall(call, id);
    }
    const auto known = streams_.find(id);
    if (known == streams_.end() || !known->second.emptySince.has_value()) {
      return;
    }
    if (!call.Failed()) {
      known->second.emptySince.reset();
    } else if (TimedOutSince(call, *known->second.emptySince)) {
      ReportEmpty(call, id, *std::exchange(known->second.emptySince, std::nullopt));
    }
  }

  void ReportEmpty(const Call& call, HandleId id, const Moment& start) {
    if (Finding* finding = findings_.Add(kFew, Severity::Error, KeyOf(id, call.Which()), start)) {
      finding->message = fmt::format(
          "{} is started with no buffer in its queue, and none is queued while a wait for a frame "
          "times out.",
          call.Named(id));
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, call.Place(), "the wait that times out");
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
