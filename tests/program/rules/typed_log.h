// SPDX-License-Identifier: MIT
// Logs typed call by call, and what the rules find in them.
#ifndef VEXTREL_TESTS_PROGRAM_RULES_TYPED_LOG_H
#define VEXTREL_TESTS_PROGRAM_RULES_TYPED_LOG_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test {

inline constexpr std::uint64_t kTL = 0xA10;
inline constexpr std::uint64_t kIF = 0xA20;
inline constexpr std::uint64_t kIF2 = 0xA30;
inline constexpr std::uint64_t kDev = 0x1000C0DE0;
inline constexpr std::uint64_t kPort = 0xC10;
inline constexpr std::uint64_t kDS = 0xD50;
inline constexpr std::uint64_t kDS2 = 0xD60;
inline constexpr std::uint64_t kEvent = 0xE10;
inline constexpr std::uint64_t kBuffer = 0xB00;  // of the first one; the others follow

// What a call looks like behind its result.
[[nodiscard]] std::string InitLib();
[[nodiscard]] std::string CloseLib();
[[nodiscard]] std::string LastError(std::string_view text);
[[nodiscard]] std::string OpenTL(std::uint64_t handle);
[[nodiscard]] std::string OpenIF(std::uint64_t tl, std::string_view id, std::uint64_t handle);
[[nodiscard]] std::string OpenDev(std::uint64_t interface, std::string_view id,
                                  std::string_view flags, std::uint64_t handle);
[[nodiscard]] std::string OpenDS(std::uint64_t device, std::string_view id, std::uint64_t handle);
[[nodiscard]] std::string GetPort(std::uint64_t device, std::uint64_t handle);
// TLClose, IFClose, DevClose or DSClose.
[[nodiscard]] std::string Close(std::string_view function, std::uint64_t handle);
// TLUpdateInterfaceList or IFUpdateDeviceList.
[[nodiscard]] std::string Update(std::string_view function, std::uint64_t handle,
                                 unsigned timeout = 1000);
[[nodiscard]] std::string NumInterfaces(std::uint64_t tl, unsigned count);
[[nodiscard]] std::string NumDevices(std::uint64_t interface, unsigned count);
[[nodiscard]] std::string DeviceId(std::uint64_t interface, unsigned index, std::string_view id);
[[nodiscard]] std::string DeviceInfo(std::uint64_t interface, std::string_view id,
                                     std::string_view command, std::string_view value);
[[nodiscard]] std::string Announce(std::uint64_t stream, std::uint64_t memory, unsigned size,
                                   std::uint64_t handle);
[[nodiscard]] std::string Alloc(std::uint64_t stream, unsigned size, std::uint64_t handle);
[[nodiscard]] std::string Revoke(std::uint64_t stream, std::uint64_t buffer);
[[nodiscard]] std::string Queue(std::uint64_t stream, std::uint64_t buffer);
[[nodiscard]] std::string Flush(std::uint64_t stream, std::string_view type);
[[nodiscard]] std::string Start(std::uint64_t stream);
[[nodiscard]] std::string Stop(std::uint64_t stream);
[[nodiscard]] std::string StreamInfo(std::uint64_t stream, std::string_view command,
                                     std::string_view value);
[[nodiscard]] std::string BufferInfo(std::uint64_t stream, std::uint64_t buffer,
                                     std::string_view command, std::string_view value,
                                     std::string_view type = "INFO_DATATYPE_SIZET");
// GCReadPort or GCWritePort of four bytes.
[[nodiscard]] std::string PortAccess(std::string_view function, std::uint64_t port,
                                     std::uint64_t address);
[[nodiscard]] std::string Register(std::uint64_t source, std::string_view type,
                                   std::uint64_t handle);
[[nodiscard]] std::string Unregister(std::uint64_t source, std::string_view type);
// A wait that brings a buffer, or none with 0.
[[nodiscard]] std::string Wait(std::uint64_t event, std::uint64_t buffer, unsigned timeout = 500);
[[nodiscard]] std::string EventCall(std::string_view function, std::uint64_t event);

class TypedLog {
 public:
  TypedLog& Line(std::string_view message, std::string_view priority = "INFO");
  TypedLog& Ok(std::string_view call);
  // `result` without its "GC_ERR_".
  TypedLog& Fails(std::string_view result, std::string_view call);
  TypedLog& Pass(int milliseconds);
  TypedLog& On(std::string_view thread);
  // The next line is where the finding stands.
  TypedLog& Here();
  // The next line is among those that explain it.
  TypedLog& Because();
  // Takes the line break off the end.
  TypedLog& Cut();
  // As Ok, with timing lines around the target's part of it.
  TypedLog& Timed(std::string_view call, std::string_view microseconds);
  // The two halves of that: a call enters the producer, and returns on the same thread later.
  TypedLog& Enters(std::string_view call);
  TypedLog& Returns(std::string_view result, std::string_view call, std::string_view microseconds);

  // The library, a transport layer, an interface and a device with its port, each list updated.
  TypedLog& OpenDevice();
  // And a stream with so many buffers, and the event for them.
  TypedLog& OpenStream(int buffers);
  TypedLog& QueueAll();
  // And all buffers queued, and the stream started.
  TypedLog& StartStream(int buffers);
  // A frame in that buffer, counted from 0, that is queued again after so many milliseconds.
  TypedLog& Frame(int buffer, int hold = 1);
  // So many frames in turn in all buffers, each so many ms after the one before.
  TypedLog& Frames(int count, int interval = 30);
  // A frame whose application asks something before it queues the buffer again.
  TypedLog& FrameSaying(int buffer, std::string_view command, std::string_view value,
                        std::string_view type);
  TypedLog& StopStream();
  // Closes what OpenDevice and OpenStream opened, in the right order.
  TypedLog& CloseStream();
  TypedLog& CloseDevice();
  // All that is open of that.
  TypedLog& CloseAll();

  [[nodiscard]] const std::string& Text() const noexcept { return text_; }
  [[nodiscard]] int HereLine() const noexcept { return here_; }
  [[nodiscard]] const std::vector<int>& BecauseLines() const noexcept { return because_; }

 private:
  std::string text_;
  std::string thread_ = "7";
  int now_ = 0;
  int lines_ = 0;
  int here_ = 0;
  int calls_ = 0;
  int buffers_ = 0;
  bool isDeviceOpen_ = false;
  bool isStreamOpen_ = false;
  bool isRunning_ = false;
  std::map<std::string, int, std::less<>>
      entered_;  // the number of the call that each thread is in
  std::vector<int> because_;
};

// A log and what is to be found in it.
struct RuleCase {
  const char* name;
  const char* expected;  // "BUF-STARVE error", several with commas, or "" for nothing
  std::function<void(TypedLog&)> type;
  const char* says = "";  // a part of the first finding's message
};

// What `vextrel check --json` writes of it.
[[nodiscard]] std::string CheckedAsJson(const TypedLog& log);

// Checks each log in turn. Beside its rule and severity, a finding must stand at the line that was
// marked, and the marked explanations must be among its own.
void ExpectFindings(const std::vector<RuleCase>& cases);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_RULES_TYPED_LOG_H
