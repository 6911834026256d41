#include "support/proxy.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

namespace vextrel_test {
namespace {

std::filesystem::path TargetsFolder() {
  return ProgramFolder() / "targets";
}

}  // namespace

std::filesystem::path BuildFolder() {
  return ProgramFolder().parent_path();
}
std::filesystem::path ProxyPath() {
  return BuildFolder() / "vextrel.cti";
}
std::filesystem::path ScriptedTargetPath() {
  return TargetsFolder() / "scripted_target.cti";
}
std::filesystem::path ScriptedTargetWithout(std::string_view name) {
  return TargetsFolder() / ("scripted_target_without_" + std::string(name) + ".cti");
}
std::filesystem::path EmptyTargetPath() {
  return TargetsFolder() / "scripted_target_empty.cti";
}

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

void WriteFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::istringstream stream{std::string(text)};
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
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

void ProxyFiles::UseLogFile(const std::string& rootCategory) {
  const std::filesystem::path config = folder_ / "log.properties";
  WriteFile(config, "rootCategory=" + rootCategory +
                        "\n"
                        "appender.file=FileAppender\n"
                        "appender.file.fileName=" +
                        LogFile().string() +
                        "\n"
                        "appender.file.layout=PatternLayout\n"
                        "appender.file.layout.ConversionPattern=%p %m%n\n");
  SetVariable(kLogConfigVariable, config.string().c_str());
}

void ProxyFiles::UseTarget(const std::filesystem::path& path) {
  SetVariable(kProducerVariable, path.string().c_str());
}

std::vector<std::string> ProxyFiles::LogLines() const {
  return SplitLines(ReadFile(LogFile()));
}

void ProxyFiles::LoadProxy() {
  module_ = std::make_unique<Module>(ProxyPath());
  ASSERT_TRUE(module_->IsLoaded()) << ProxyPath();
  ForEachFunction([this](const char* name, auto slot) {
    proxy.*slot = reinterpret_cast<std::remove_reference_t<decltype(proxy.*slot)>>(
        module_->FindAddress(name));
    ASSERT_NE(proxy.*slot, nullptr) << name;
  });
}

void ProxyFiles::UnloadProxy() {
  module_.reset();
  proxy = {};
}

BoundProxy::BoundProxy(const std::filesystem::path& target)
    : BoundProxy(std::make_unique<Module>(target)) {
  UseTarget(target);
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  static_cast<void>(TakeLines());
  script.calls = 0;
}

BoundProxy::BoundProxy(std::unique_ptr<Module> target)
    : script(*target->Find<GetTargetScriptFunction>("GetTargetScript")()),
      target_(std::move(target)) {
  script.functions = {};
  script.result = GC_ERR_SUCCESS;
}

BoundProxy::~BoundProxy() {
  script.functions = {};
  if (proxy.GCCloseLib != nullptr) {
    proxy.GCCloseLib();
  }
  UnloadProxy();
}

std::vector<std::string> BoundProxy::TakeLines() {
  const std::vector<std::string> all = LogLines();
  const std::vector<std::string> taken(all.begin() + static_cast<std::ptrdiff_t>(taken_),
                                       all.end());
  taken_ = all.size();
  return taken;
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
