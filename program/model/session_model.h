// SPDX-License-Identifier: MIT
// What a log tells of the application's session with the producer: which handles there are, what
// the streams do, who called.
#ifndef VEXTREL_PROGRAM_MODEL_SESSION_MODEL_H
#define VEXTREL_PROGRAM_MODEL_SESSION_MODEL_H

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/call_counts.h"
#include "model/call_timings.h"
#include "model/handles.h"
#include "model/stream.h"
#include "reading/entries.h"
#include "reading/layout.h"
#include "reading/message.h"
#include "reading/record_reader.h"

namespace vextrel::program {

// From one GCInitLib to the next.
struct Session {
  LogPlace begin{};
  std::string producer;         // its path, if the log names it
  std::string producerVersion;  // "0.0.0.0" if the module has none
  bool wasInitialized = false;
  bool wasClosed = false;
};

// A wait in front of a call's line, on the call's own thread: what the call took at most.
struct Gap {
  std::int64_t duration = 0;
  LogPlace place;
  std::size_t function = 0;
};

// What a record means in the session that it belongs to.
struct Context {
  std::uint32_t session = 1;  // one more than there are, in front of a GCInitLib that may begin it
  std::uint32_t thread = 0;   // from 1; 0 if the layout doesn't show it
  bool hasTime = false;
  std::int64_t time = 0;       // in microseconds, as the log shows it
  std::int64_t sinceLast = 0;  // since the record before that is no timing line
  // The handle in each place, kNoHandle where there's none.
  std::array<HandleId, kMaxConversions> handles{};
  // The handle of another kind that was given in a place instead, and that the call was refused
  // for.
  std::array<HandleId, kMaxConversions> misplaced{};
  // Whichever of the two there is.
  [[nodiscard]] HandleId Given(std::size_t place) const noexcept {
    return handles[place] != kNoHandle ? handles[place] : misplaced[place];
  }
  HandleId delivered = kNoHandle;  // the buffer that an event brought
  bool isNewBufferEvent = false;
  bool isOtherLine = false;                 // written by another program or category
  std::size_t failure = CallCounts::kNone;  // into Counts().Failures()
  // When the call entered the target, and how long it was there; null without timing lines.
  const TimedCall* timing = nullptr;
};

// Looks at the model at moments that are over when Take() returns.
class SessionObserver {
 public:
  SessionObserver() = default;
  virtual ~SessionObserver() = default;
  SessionObserver(const SessionObserver&) = delete;
  SessionObserver& operator=(const SessionObserver&) = delete;

  // The call's handles are known, and what the call did isn't taken into account yet.
  virtual void BeforeCall(const Record& record, const Message& message, const Context& context) = 0;
  // Another session begins, or the log ends: what is open now was never closed.
  virtual void BeforeSessionEnds() = 0;
};

class SessionModel {
 public:
  explicit SessionModel(const Layout& layout);

  // From here on, `observer` is told what the model takes. It must live as long as the model takes
  // records; null ends this.
  void SetObserver(SessionObserver* observer) noexcept { observer_ = observer; }

  // Takes the next record of the log. Returns what it means, valid until the next one is taken.
  const Context& Take(const Record& record, const Message& message);

  [[nodiscard]] const Handles& AllHandles() const noexcept { return handles_; }
  [[nodiscard]] const CallCounts& Counts() const noexcept { return counts_; }
  [[nodiscard]] const std::vector<Stream>& Streams() const noexcept { return streams_; }
  // What the handle's data stream did; null if it's no handle, or none of a stream that did
  // anything.
  [[nodiscard]] const Stream* FindStream(HandleId id) const;
  [[nodiscard]] const std::vector<Session>& Sessions() const noexcept { return sessions_; }
  [[nodiscard]] const std::vector<std::string>& Threads() const noexcept { return threads_; }
  [[nodiscard]] TimeKind Time() const noexcept { return timeKind_; }
  [[nodiscard]] std::int64_t Resolution() const noexcept { return resolution_; }
  [[nodiscard]] std::optional<std::int64_t> FirstTime() const noexcept { return firstTime_; }
  [[nodiscard]] std::optional<std::int64_t> LastTime() const noexcept { return lastTime_; }
  // WARN and ERROR lines, without those that name a function that the target lacks.
  [[nodiscard]] std::uint64_t Reports() const noexcept { return reports_; }
  [[nodiscard]] std::uint64_t NotExported() const noexcept { return notExported_; }
  // Records that no line of the writer's makes, and that no other program or category has written.
  [[nodiscard]] std::uint64_t Unreadable() const noexcept { return unreadable_; }
  // What others have written.
  [[nodiscard]] std::uint64_t OtherLines() const noexcept { return otherLines_; }
  // While any stream is running.
  [[nodiscard]] std::uint64_t StreamingCalls() const noexcept { return streamingCalls_; }
  [[nodiscard]] std::uint64_t StreamingBytes() const noexcept { return streamingBytes_; }
  // What timing lines tell, if there are any.
  [[nodiscard]] const CallTimings& Timings() const noexcept { return timings_; }
  // The longest ones, from the longest on.
  [[nodiscard]] const std::vector<Gap>& Gaps() const noexcept { return gaps_; }

  // Ends what still runs: call it when the log ends.
  void Finish();

 private:
  struct Thread {
    std::int64_t lastTime = 0;
    bool hasTime = false;
    std::size_t lastFailure = CallCounts::kNone;
    std::size_t session = 0;  // of its last call
  };
  using Handler = void (SessionModel::*)(const Record&, const Message&);
  struct Handlers;

  void TakeTime(const Record& record, bool isTiming);
  // A layout without threads counts as one thread.
  [[nodiscard]] Thread& CurrentThread();
  std::uint32_t ThreadOf(std::string_view name);
  void TakeReport(const Record& record, const Message& message);
  void TakeTiming(const Record& record, const Message& message);
  [[nodiscard]] const TimedCall* TimingOf(const Message& message);
  void TakeCall(const Record& record, const Message& message);
  void StartSession(const LogPlace& begin);
  void TakeLoading(const Record& record, const Message& message);
  void EndLoading(const Message& initialization);
  void ResolveHandles(const Message& message);
  void ResolveInput(const Message& message, std::size_t at);
  void NoteGap(const Record& record, const Message& message);

  void OnInitLib(const Record& record, const Message& message);
  void OnCloseLib(const Record& record, const Message& message);
  void OnOpen(const Record& record, const Message& message, HandleKind kind, Label parentLabel,
              Label idLabel, Label label);
  void OnTLOpen(const Record& record, const Message& message);
  void OnOpenInterface(const Record& record, const Message& message);
  void OnOpenDevice(const Record& record, const Message& message);
  void OnGetPort(const Record& record, const Message& message);
  void OnOpenDataStream(const Record& record, const Message& message);
  void OnAnnounce(const Record& record, const Message& message);
  void OnRegister(const Record& record, const Message& message);
  void OnUnregister(const Record& record, const Message& message);
  void OnClose(const Record& record, const Message& message);
  void OnRevoke(const Record& record, const Message& message);
  void OnQueue(const Record& record, const Message& message);
  void OnFlush(const Record& record, const Message& message);
  void OnStart(const Record& record, const Message& message);
  void OnStop(const Record& record, const Message& message);
  void OnEventData(const Record& record, const Message& message);
  void OnBufferInfo(const Record& record, const Message& message);
  void OnStackedBufferInfo(const Record& record, const Message& message);
  void SeeBufferInfo(const Record& record, const Message& message, std::string_view command,
                     std::string_view value);
  void OnTLInfo(const Record& record, const Message& message);
  void OnLastError(const Record& record, const Message& message);

  // The handle in the place with this label, or kNoHandle.
  [[nodiscard]] HandleId HandleIn(const Message& message, Label label) const;
  void NoteOpening(HandleId id, const Record& record);
  void NoteClosing(HandleId id, const Record& record);
  // The stream of a data stream's handle.
  Stream& StreamOf(HandleId dataStream);
  // The stream that a buffer was announced on, or null.
  Stream* StreamOfBuffer(HandleId buffer);
  void SetState(HandleId buffer, BufferState state);
  [[nodiscard]] std::int64_t CountQueued(HandleId dataStream) const;
  void EndHandle(HandleId id);

  TimeKind timeKind_;
  bool showsThread_;
  bool sessionHasCalls_ = false;
  bool hasShown_ = false;
  std::uint32_t lastThread_ = 0;
  std::int64_t resolution_;
  SessionObserver* observer_ = nullptr;
  Context context_;
  Handles handles_;
  CallCounts counts_;
  CallTimings timings_;
  std::vector<Stream> streams_;
  std::vector<Session> sessions_;
  std::optional<Session> loading_;  // what a GCInitLib begins if it succeeds
  std::vector<std::string> threads_;
  std::vector<Thread> threadStates_;
  std::map<std::string, std::uint32_t, std::less<>> threadNumbers_;
  std::string lastThreadName_;
  std::vector<Handler> handlers_;  // by function
  std::int64_t now_ = 0;           // never goes back by little
  std::int64_t dayOffset_ = 0;
  std::int64_t lastShown_ = 0;
  std::optional<std::int64_t> lastRecord_;  // the time of the last one that is no timing line
  std::optional<std::int64_t> firstTime_;
  std::optional<std::int64_t> lastTime_;
  std::uint64_t reports_ = 0;
  std::uint64_t notExported_ = 0;
  std::uint64_t unreadable_ = 0;
  std::uint64_t otherLines_ = 0;
  std::uint64_t streamingCalls_ = 0;
  std::uint64_t streamingBytes_ = 0;
  std::size_t runningStreams_ = 0;
  std::vector<Gap> gaps_;
  Entries entries_;
};

// INFO, WARN or ERROR, as the writer does.
[[nodiscard]] Priority PriorityOfReport(std::size_t report) noexcept;
// "%s not exported"
[[nodiscard]] bool IsNotExported(std::size_t report) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_SESSION_MODEL_H
