// GCInitLib and GCCloseLib: binding to targets, also to none, twice and in the wrong order.
#include <cstdint>
#include <stdexcept>
#include <string>

#include "session/calls.h"
#include "support/proxy.h"

namespace vextrel_test::session {
namespace {

struct LookUp {
  const char* function;
  const char* message;
};

// In the order in which the entry points are looked up.
constexpr LookUp kLookUps[] = {
    {"GCGetInfo", "GCGetInfo not exported"},
    {"GCGetLastError", "GCGetLastError not exported"},
    {"GCInitLib", "GCInitLib not exported"},
    {"GCCloseLib", "GCCloseLib not exported"},
    {"TLOpen", "TLOpen not exported"},
    {"TLClose", "TLClose not exported"},
    {"TLGetInfo", "TLGetInfo not exported"},
    {"TLGetNumInterfaces", "TLGetNumInterfaces not exported"},
    {"TLGetInterfaceID", "TLGetInterfaceID not exported"},
    {"TLGetInterfaceInfo", "TLGetInterfaceInfo not exported"},
    {"TLOpenInterface", "TLOpenInterface not exported"},
    {"TLUpdateInterfaceList", "TLUpdateInterfaceList not exported"},
    {"IFClose", "IFClose not exported"},
    {"IFGetInfo", "IFGetInfo not exported"},
    {"IFGetNumDevices", "IFGetNumDevices not exported"},
    {"IFGetDeviceID", "IFGetDeviceID not exported"},
    {"IFUpdateDeviceList", "IFUpdateDeviceList not exported"},
    {"IFGetDeviceInfo", "IFGetDeviceInfo not exported"},
    {"IFOpenDevice", "IFOpenDevice not exported"},
    {"DevClose", "DevClose not exported"},
    {"DevGetInfo", "DevGetInfo not exported"},
    {"DevGetPort", "DevGetPort not exported"},
    {"DevGetNumDataStreams", "DevGetNumDataStreams not exported"},
    {"DevGetDataStreamID", "DevGetDataStreamID not exported"},
    {"DevOpenDataStream", "DevOpenDataStream not exported"},
    {"DSAnnounceBuffer", "DSAnnounceBuffer not exported"},
    {"DSAllocAndAnnounceBuffer", "DSAllocAndAnnounceBuffer not exported"},
    {"DSFlushQueue", "DSFlushQueue not exported"},
    {"DSStartAcquisition", "DSStartAcquisition not exported"},
    {"DSStopAcquisition", "DSStopAcquisition not exported"},
    {"DSGetInfo", "DSGetInfo not exported"},
    {"DSGetBufferID", "DSGetBufferID not exported"},
    {"DSClose", "DSClose not exported"},
    {"DSRevokeBuffer", "DSRevokeBuffer not exported"},
    {"DSQueueBuffer", "DSQueueBuffer not exported"},
    {"DSGetBufferInfo", "DSGetBufferInfo not exported"},
    {"GCReadPort", "GCReadPort not exported"},
    {"GCWritePort", "GCWritePort not exported"},
    {"GCGetPortURL", "GCGetPortURL not exported"},
    {"GCGetNumPortURLs", "GCGetNumPortURLs not exported"},
    {"GCGetPortInfo", "GCGetPortInfo not exported"},
    {"GCGetPortURLInfo", "GCGetPortURLInfo not exported"},
    {"GCReadPortStacked", "GCReadPortStacked not exported"},
    {"GCWritePortStacked", "GCWritePortStacked not exported"},
    {"GCRegisterEvent", "GCRegisterEvent not exported"},
    {"GCUnregisterEvent", "GCUnregisterEvent not exported"},
    {"EventGetData", "GEventGetData not exported"},
    {"EventGetDataInfo", "EventGetDataInfo not exported"},
    {"EventGetInfo", "EventGetInfo not exported"},
    {"EventFlush", "EventFlush not exported"},
    {"EventKill", "EventKill not exported"}};
static_assert(std::size(kLookUps) == kFunctionCount);

// ERROR_MOD_NOT_FOUND, on every platform.
constexpr std::int64_t kModuleNotFound = 126;

constexpr const char* kReferencedVariable = "VEXTREL_SESSION_TARGET";

void InitWithoutVariable(Session& session) {
  SetVariable(kProducerVariable, nullptr);
  session.log.Error(kNoProducerVariable);
  session.CallThrough(nullptr, GC_ERR_SUCCESS, &GenTLFunctions::GCInitLib);
}

void InitWithoutFile(Session& session) {
  const std::string path = (ScriptedTargetPath().parent_path() / "no_such_target.cti").string();
  SetVariable(kProducerVariable, path.c_str());
  session.isTargetLoaded = false;
  session.log.Info(kLoading, {Value::Text(path)});
  session.log.Error(kLoadFailed, {Value::Signed(kModuleNotFound), Value::Text(path)});
  session.CallThrough(nullptr, GC_ERR_SUCCESS, &GenTLFunctions::GCInitLib);
}

void InitWithUnknownReference(Session& session) {
  SetVariable(kProducerVariable, "$(VEXTREL_SESSION_UNSET)/target.cti");
  SetVariable("VEXTREL_SESSION_UNSET", nullptr);
  std::string message;
  try {
    session.proxy.GCInitLib();
  } catch (const std::runtime_error& error) {
    message = error.what();
  }
  EXPECT_EQ(message, "Environment variable 'VEXTREL_SESSION_UNSET' not found");
}

void InitWith(Session& session, TargetFile& target, const std::string& variable) {
  SetVariable(kProducerVariable, variable.c_str());
  session.log.Info(kLoading, {Value::Text(target.path.string())});
  session.isTargetLoaded = true;
  session.log.Info(kFileVersion, {Value::Text("0.0.0.0")});
  session.tables = &target;
  for (const LookUp& lookUp : kLookUps) {
    if (!target.Has(lookUp.function)) {
      session.log.Error(lookUp.message);
    }
  }
  if (session.isInitialized) {
    session.log.Error(kInitializedTwice);
  }
  const GC_ERROR result = session.Call(&GenTLFunctions::GCInitLib);
  session.log.Info("%s=GCInitLib(void)", {Result(result)});
  session.isInitialized = true;
}

}  // namespace

void CallGCInitLib(Session& session) {
  const std::uint64_t choice = session.random.Below(100);
  if (choice < 4) {
    InitWithoutVariable(session);
  } else if (choice < 8) {
    InitWithoutFile(session);
  } else if (choice < 12) {
    InitWithUnknownReference(session);
  } else if (choice < 16) {
    TargetFile& target = session.targets.Empty();
    InitWith(session, target, target.path.string());
  } else if (choice < 50) {
    const char* missing = kLookUps[session.random.Below(kFunctionCount)].function;
    TargetFile& target = session.targets.Without(missing);
    InitWith(session, target, target.path.string());
  } else if (choice < 60) {
    TargetFile& target = session.targets.Complete();
    const std::filesystem::path reference = std::string("$(") + kReferencedVariable + ").cti";
    SetVariable(kReferencedVariable, target.path.stem().string().c_str());
    InitWith(session, target, (target.path.parent_path() / reference).string());
  } else {
    TargetFile& target = session.targets.Complete();
    InitWith(session, target, target.path.string());
  }
}

void CallGCCloseLib(Session& session) {
  if (!session.isInitialized) {
    session.log.Error(kNotInitialized);
  }
  const GC_ERROR result = session.Call(&GenTLFunctions::GCCloseLib);
  session.log.Info("%s=GCCloseLib(void)", {Result(result)});
  if (session.registry.IsOpen()) {
    session.log.Error(kTransportLayerLeftOpen);
    session.registry.Close();
  }
  session.isInitialized = false;
  if (session.isTargetLoaded) {
    session.tables = nullptr;
    session.isTargetLoaded = false;
  }
}

}  // namespace vextrel_test::session
