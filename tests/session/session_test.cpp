// Random sessions: every function in any order with any result, and the log compared with what a
// plain model of the proxy expects.
//
// VEXTREL_SESSION_SEED sets another seed than the fixed one; the first difference is shown with the
// number of its call, which is the same in every run with that seed.
#include "session/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "session/calls.h"
#include "support/proxy.h"

namespace vextrel_test::session {
namespace {

constexpr int kCalls = 100000;
constexpr int kCallsPerComparison = 1000;
// Its session gets into the rarest situations: handles that several records share keep
// registrations until their record is removed.
constexpr std::uint64_t kDefaultSeed = 2;

struct RandomCall {
  const char* function;
  void (*make)(Session&);
  unsigned weight;
};

// What builds the tree up comes more often than what tears it down, and what ends all of it seldom.
constexpr RandomCall kRandomCalls[] = {
    {"GCGetInfo", &CallGCGetInfo, 40},
    {"GCGetLastError", &CallGCGetLastError, 40},
    {"GCInitLib", &CallGCInitLib, 8},
    {"GCCloseLib", &CallGCCloseLib, 1},
    {"TLOpen", &CallTLOpen, 1},
    {"TLClose", &CallTLClose, 1},
    {"TLGetInfo", &CallTLGetInfo, 40},
    {"TLGetNumInterfaces", &CallTLGetNumInterfaces, 40},
    {"TLGetInterfaceID", &CallTLGetInterfaceID, 40},
    {"TLGetInterfaceInfo", &CallTLGetInterfaceInfo, 40},
    {"TLOpenInterface", &CallTLOpenInterface, 40},
    {"TLUpdateInterfaceList", &CallTLUpdateInterfaceList, 40},
    {"IFClose", &CallIFClose, 15},
    {"IFGetInfo", &CallIFGetInfo, 40},
    {"IFGetNumDevices", &CallIFGetNumDevices, 40},
    {"IFGetDeviceID", &CallIFGetDeviceID, 40},
    {"IFUpdateDeviceList", &CallIFUpdateDeviceList, 40},
    {"IFGetDeviceInfo", &CallIFGetDeviceInfo, 40},
    {"IFOpenDevice", &CallIFOpenDevice, 100},
    {"DevGetPort", &CallDevGetPort, 40},
    {"DevGetNumDataStreams", &CallDevGetNumDataStreams, 40},
    {"DevGetDataStreamID", &CallDevGetDataStreamID, 40},
    {"DevOpenDataStream", &CallDevOpenDataStream, 120},
    {"DevGetInfo", &CallDevGetInfo, 40},
    {"DevClose", &CallDevClose, 25},
    {"DSAnnounceBuffer", &CallDSAnnounceBuffer, 100},
    {"DSAllocAndAnnounceBuffer", &CallDSAllocAndAnnounceBuffer, 100},
    {"DSFlushQueue", &CallDSFlushQueue, 40},
    {"DSStartAcquisition", &CallDSStartAcquisition, 40},
    {"DSStopAcquisition", &CallDSStopAcquisition, 40},
    {"DSGetInfo", &CallDSGetInfo, 40},
    {"DSGetBufferID", &CallDSGetBufferID, 40},
    {"DSClose", &CallDSClose, 40},
    {"DSRevokeBuffer", &CallDSRevokeBuffer, 100},
    {"DSQueueBuffer", &CallDSQueueBuffer, 40},
    {"DSGetBufferInfo", &CallDSGetBufferInfo, 40},
    {"GCReadPort", &CallGCReadPort, 40},
    {"GCWritePort", &CallGCWritePort, 40},
    {"GCGetPortURL", &CallGCGetPortURL, 40},
    {"GCGetNumPortURLs", &CallGCGetNumPortURLs, 40},
    {"GCGetPortInfo", &CallGCGetPortInfo, 40},
    {"GCGetPortURLInfo", &CallGCGetPortURLInfo, 40},
    {"GCReadPortStacked", &CallGCReadPortStacked, 40},
    {"GCWritePortStacked", &CallGCWritePortStacked, 40},
    {"GCRegisterEvent", &CallGCRegisterEvent, 200},
    {"GCUnregisterEvent", &CallGCUnregisterEvent, 40},
    {"EventGetData", &CallEventGetData, 40},
    {"EventGetDataInfo", &CallEventGetDataInfo, 40},
    {"EventGetInfo", &CallEventGetInfo, 40},
    {"EventFlush", &CallEventFlush, 40},
    {"EventKill", &CallEventKill, 40},
};
static_assert(std::size(kRandomCalls) == kFunctionCount);

const RandomCall& Choose(Session& session) {
  std::uint64_t weights = 0;
  for (const RandomCall& call : kRandomCalls) {
    weights += call.weight;
  }
  std::uint64_t choice = session.random.Below(weights);
  const RandomCall* chosen = std::begin(kRandomCalls);
  while (choice >= chosen->weight) {
    choice -= chosen->weight;
    ++chosen;
  }
  return *chosen;
}

const RandomCall& Find(std::string_view function) {
  return *std::find_if(std::begin(kRandomCalls), std::end(kRandomCalls),
                       [function](const RandomCall& call) { return call.function == function; });
}

// Leaves the states soon that have few lines: no target, no transport layer, a failed loading.
const RandomCall& ChooseFor(Session& session) {
  if (session.tables == nullptr && session.random.OneIn(10)) {
    return Find(session.random.OneIn(3) ? "GCCloseLib" : "GCInitLib");
  }
  if (session.tables != nullptr && !session.isTargetLoaded && session.random.OneIn(20)) {
    return Find("GCCloseLib");
  }
  if (!session.registry.IsOpen() && session.random.OneIn(25)) {
    return Find("TLOpen");
  }
  return Choose(session);
}

struct ExpectedCall {
  int number;
  const char* function;
  ExpectedText lines;
};

std::string ReadFrom(const std::filesystem::path& path, std::size_t position) {
  std::ifstream file(path, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(position));
  return {std::istreambuf_iterator<char>(file), {}};
}

// Whether `text` is what the calls wrote, one behind the other, and nothing else.
::testing::AssertionResult Matches(std::string_view text, const std::vector<ExpectedCall>& calls) {
  std::size_t position = 0;
  for (const ExpectedCall& call : calls) {
    const std::size_t size = call.lines.Match(text.substr(position));
    if (size == std::string_view::npos) {
      return ::testing::AssertionFailure()
             << "call " << call.number << ", " << call.function << ", expected\n"
             << call.lines.Describe() << "\nbut the log goes on with\n"
             << Printable(text.substr(position, 2000));
    }
    position += size;
  }
  if (position != text.size()) {
    return ::testing::AssertionFailure() << "the last of these calls wrote more than expected:\n"
                                         << Printable(text.substr(position, 2000));
  }
  return ::testing::AssertionSuccess();
}

std::uint64_t Seed() {
  const char* seed = std::getenv("VEXTREL_SESSION_SEED");
  return seed != nullptr ? std::strtoull(seed, nullptr, 10) : kDefaultSeed;
}

void ExpectThatEverythingOccurred(const Session& session) {
  ForEachFunction([&](const char* name, auto) {
    EXPECT_TRUE(session.calls.count(name) == 1) << name << " was never called";
    const std::string exported = std::string(name) == "EventGetData" ? "GEventGetData" : name;
    EXPECT_GT(session.log.CountOf(exported + " not exported"), 0) << name;
  });
  for (const char* message : kEveryMessage) {
    EXPECT_GT(session.log.CountOf(message), 0) << message;
  }
  for (GC_ERROR result = -1016; result <= -1000; ++result) {
    EXPECT_TRUE(session.results.count(result) == 1) << result << " was never returned";
  }
  for (const GC_ERROR result : {0, 1, -10000, -10001, INT32_MAX, INT32_MIN}) {
    EXPECT_TRUE(session.results.count(result) == 1) << result << " was never returned";
  }
}

class RandomSession : public ProxyFiles {};

}  // namespace

TEST_F(RandomSession, LogsLineByLineWhatItsCallsDictate) {
  const std::uint64_t seed = Seed();
  RecordProperty("seed", std::to_string(seed));
  std::cout << "VEXTREL_SESSION_SEED=" << seed << std::endl;
  UseLogFile();
  ASSERT_NO_FATAL_FAILURE(LoadProxy());
  Session session(seed, proxy);
  std::vector<ExpectedCall> calls;
  std::size_t compared = 0;
  for (int number = 1; number <= kCalls; ++number) {
    // The first call gives the proxy its logger.
    const RandomCall& call = number == 1 ? Find("GCInitLib") : ChooseFor(session);
    call.make(session);
    ASSERT_FALSE(HasFailure()) << "call " << number << ", " << call.function;
    session.memory.Clear();
    calls.push_back({number, call.function, session.log.Take()});
    if (number % kCallsPerComparison == 0 || number == kCalls) {
      const std::string text = ReadFrom(LogFile(), compared);
      ASSERT_TRUE(Matches(text, calls));
      compared += text.size();
      calls.clear();
    }
  }
  ExpectThatEverythingOccurred(session);
  UnloadProxy();
}

}  // namespace vextrel_test::session
