// SPDX-License-Identifier: MIT
#include "support/proxy.h"

#include <algorithm>

namespace vextrel_test {
std::string Hex16(std::uint64_t value) {
  std::string text(16, '0');
  for (auto digit = text.rbegin(); value != 0; ++digit, value /= 16) {
    *digit = "0123456789ABCDEF"[value % 16];
  }
  return text;
}
std::string Hex16(const volatile void* address) {
  return Hex16(std::uint64_t{reinterpret_cast<std::uintptr_t>(address)});
}

std::vector<std::string> StartLines() {
  return {"INFO Loading GenTL Producer '" + ScriptedTargetPath().string() + "'",
          "INFO GenTL producer file version: '0.0.0.0'", "INFO GC_ERR_SUCCESS=GCInitLib(void)"};
}

ProxyFiles::ProxyFiles() {
  const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name =
      std::string(test->test_suite_name()) + "." + test->name() + "." + std::to_string(ProcessId());
  for (char& letter : name) {
    letter = letter == '/' ? '_' : letter;
  }
  folder_ = ProgramFolder() / "work" / name;
  std::filesystem::remove_all(folder_);
  std::filesystem::create_directories(folder_);
  SetVariable(kProducerVariable, nullptr);
  SetVariable(kLogConfigVariable, nullptr);
}

ProxyFiles::~ProxyFiles() {
  module_.reset();
  if (!HasFailure()) {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
}

void ProxyFiles::UseLog(const LogConfig& config) const {
  const std::filesystem::path path = folder_ / "log.properties";
  WriteFile(path, config.Text());
  SetVariable(kLogConfigVariable, path.string().c_str());
}

void ProxyFiles::UseTarget(const std::filesystem::path& path) {
  SetVariable(kProducerVariable, path.string().c_str());
}

std::vector<std::string> ProxyFiles::LogLines() const {
  return SplitLines(ReadFile(LogFile()));
}

std::vector<std::string> ProxyFiles::TakeLines() {
  return SplitLines(ReadFileFrom(LogFile(), taken_));
}

void ProxyFiles::LoadProxy() {
  module_ = std::make_unique<Module>(ProxyPath());
  ASSERT_TRUE(module_->IsLoaded()) << ProxyPath();
  proxy = FunctionsOf(*module_);
  for (const std::string& name : FunctionNames()) {
    ASSERT_NE(module_->FindAddress(name.c_str()), nullptr) << name;
  }
}

void ProxyFiles::UnloadProxy() {
  module_.reset();
  proxy = {};
}

BoundProxy::BoundProxy(const std::filesystem::path& target)
    : target_(target), script(target_.Script()) {
  UseTarget(target);
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  static_cast<void>(TakeLines());
  script.calls = 0;
}

BoundProxy::~BoundProxy() {
  script.functions = {};
  if (proxy.GCCloseLib != nullptr) {
    proxy.GCCloseLib();
  }
  UnloadProxy();
}

void BoundProxy::OpenTransportLayer(std::uintptr_t handle) {
  const auto played = script.functions.TLOpen;
  script.functions.TLOpen = [](TL_HANDLE*) -> GC_ERROR { return GC_ERR_SUCCESS; };
  TL_HANDLE opened = Handle(handle);
  EXPECT_EQ(proxy.TLOpen(&opened), GC_ERR_SUCCESS);
  script.functions.TLOpen = played;
  static_cast<void>(TakeLines());
}

}  // namespace vextrel_test
