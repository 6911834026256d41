// SPDX-License-Identifier: MIT
// BUF, the memory: each buffer is its stream's own, and shares nothing with another.
#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "rules/family.h"

namespace vextrel::program {
namespace {

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

constexpr const Rule* kMemoryRules[] = {&kForeign, &kMix, &kBufferDup};

class BufferMemory : public RuleFamily {
 public:
  BufferMemory(Findings& findings, const LogKnowledge& /*log*/) : findings_(findings) {}

  [[nodiscard]] Interest Wants(Function function) const override {
    switch (function) {
      case Function::DSAnnounceBuffer:
      case Function::DSAllocAndAnnounceBuffer:
      case Function::DSRevokeBuffer:
      case Function::DSClose:
        return Interest::All;
      case Function::DSQueueBuffer:
      case Function::DSGetBufferInfo:
        return Interest::Failures;
      default:
        return Interest::None;
    }
  }

  void Before(const Call& call) override {
    if (call.Failed()) {
      CheckForeign(call);
      return;
    }
    const auto known = streams_.find(call.HandleIn("hDS"));
    if (call.Which() == Function::DSRevokeBuffer && known != streams_.end()) {
      std::erase_if(known->second.memory,
                    [&](const Memory& each) { return each.buffer == call.HandleIn("hBuffer"); });
    } else if (call.Which() == Function::DSClose && known != streams_.end()) {
      streams_.erase(known);
    }
  }

  void After(const Call& call) override {
    const bool isAnnounced = call.Which() == Function::DSAnnounceBuffer ||
                             call.Which() == Function::DSAllocAndAnnounceBuffer;
    if (isAnnounced && !call.Failed() && call.HandleIn("hDS") != kNoHandle) {
      OnAnnounce(call, call.HandleIn("hDS"));
    }
  }

  void EndSession(const SessionModel& /*model*/, const Moment& /*moment*/,
                  bool /*isClosed*/) override {
    streams_.clear();
  }

 private:
  struct Memory {
    HandleId buffer = kNoHandle;
    std::uint64_t begin = 0;
    std::uint64_t size = 0;
    LogPlace place;
  };
  struct BufferedStream {
    std::vector<Memory> memory;  // of the application
    std::optional<LogPlace> announcedAt;
    std::optional<LogPlace> allocatedAt;
  };

  // So much memory is told apart; what is kept stays bounded whatever comes.
  static constexpr std::size_t kMostMemory = 20'000;

  void OnAnnounce(const Call& call, HandleId id) {
    ForgetClosed(streams_, call.All(), 1000);
    BufferedStream& stream = streams_[id];
    const bool isOurs = call.Which() == Function::DSAnnounceBuffer;
    std::optional<LogPlace>& first = isOurs ? stream.announcedAt : stream.allocatedAt;
    const std::optional<LogPlace>& other = isOurs ? stream.allocatedAt : stream.announcedAt;
    first = first.value_or(call.Place());
    if (other.has_value()) {
      ReportMix(call, id, *other, isOurs);
    }
    const HandleId buffer = call.HandleIn("hBuffer");
    if (isOurs && buffer != kNoHandle && stream.memory.size() < kMostMemory) {
      const Memory added{buffer, call.At(buffer).memory.value_or(0), call.Number("iSize"),
                         call.Place()};
      CheckShared(call, added, stream);
      stream.memory.push_back(added);
    }
  }

  void ReportMix(const Call& call, HandleId id, const LogPlace& other, bool isOurs) {
    if (Finding* finding = findings_.Add(kMix, Severity::Warning, KeyOf(id), call.Moment())) {
      finding->message =
          fmt::format("{} has buffers of both kinds: the application's memory and the producer's.",
                      call.Named(id));
      finding->handles.push_back(call.All().Name(id));
      Relate(*finding, other, isOurs ? "DSAllocAndAnnounceBuffer" : "DSAnnounceBuffer");
    }
  }

  void CheckShared(const Call& call, const Memory& added, const BufferedStream& stream) {
    const auto before =
        std::find_if(stream.memory.begin(), stream.memory.end(), [&added](const Memory& each) {
          return added.begin < each.begin + each.size && each.begin < added.begin + added.size;
        });
    if (added.begin != 0 && before != stream.memory.end()) {
      ReportShared(call, added, *before);
    }
  }

  void ReportShared(const Call& call, const Memory& added, const Memory& before) {
    if (Finding* finding =
            findings_.Add(kBufferDup, Severity::Warning, KeyOf(added.buffer), call.Moment())) {
      finding->message = fmt::format("{} and {} share memory.", call.Named(added.buffer),
                                     call.Named(before.buffer));
      finding->handles = {call.All().Name(added.buffer), call.All().Name(before.buffer)};
      Relate(*finding, before.place, call.All().Name(before.buffer) + " is announced");
    }
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

  Findings& findings_;
  std::map<HandleId, BufferedStream> streams_;
};

}  // namespace

FamilyEntry BufferMemoryFamily() {
  return {kMemoryRules, MakeFamily<BufferMemory>};
}

}  // namespace vextrel::program
