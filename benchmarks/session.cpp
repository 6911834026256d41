// SPDX-License-Identifier: MIT
#include "session.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <type_traits>

namespace vextrel_bench {
namespace {

using vextrel_test::SetVariable;

std::filesystem::path BuildFolder() {
  return vextrel_test::ProgramFolder().parent_path();
}

const char* ModuleFile(Mode mode, Edition edition) {
  if (mode == Mode::Direct) {
    return "do_nothing_target.cti";
  }
  return edition == Edition::Plain ? "vextrel.cti" : "vextrel_extended.cti";
}

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(EXIT_FAILURE);
}

}  // namespace

std::string_view ModeName(Mode mode) {
  constexpr std::string_view names[] = {"direct", "off", "basic", "pattern", "fast"};
  return names[static_cast<std::size_t>(mode)];
}

std::string SessionName(Mode mode, Edition edition) {
  constexpr std::string_view prefixes[] = {"", "extended-", "timed-"};
  return std::string(prefixes[static_cast<std::size_t>(edition)]).append(ModeName(mode));
}

std::string_view LayoutOf(Mode mode) {
  switch (mode) {
    case Mode::Pattern:
      return "appender.file.layout=PatternLayout\n"
             "appender.file.layout.ConversionPattern=%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n\n";
    case Mode::Fast:
      return "appender.file.layout=PatternLayout\n"
             "appender.file.layout.ConversionPattern=%r [%t] %p %m%n\n";
    default:
      return "appender.file.layout=BasicLayout\n";
  }
}

std::filesystem::path ScratchFolder() {
  const std::filesystem::path folder = vextrel_test::ProgramFolder() / "scratch";
  std::filesystem::create_directories(folder);
  return folder;
}

Session::Session(Mode mode, Edition edition, std::size_t buffers) : buffers_(buffers) {
  static int sessions = 0;
  const std::string name = SessionName(mode, edition) + std::to_string(++sessions);
  copy_ = ScratchFolder() / (name + ".cti");
  std::filesystem::copy_file(BuildFolder() / ModuleFile(mode, edition), copy_,
                             std::filesystem::copy_options::overwrite_existing);
  logFile_ = ScratchFolder() / (name + ".log");
  std::filesystem::remove(logFile_);

  const std::filesystem::path config = ScratchFolder() / (name + ".properties");
  std::ofstream(config) << "rootCategory=" << (mode == Mode::Off ? "WARN" : "INFO")
                        << ", file\nappender.file=FileAppender\nappender.file.fileName="
                        << logFile_.string() << '\n'
                        << LayoutOf(mode)
                        << (edition == Edition::Timed ? "category.Vextrel.Timing=DEBUG\n" : "");
  SetVariable("GENICAM_GENTL64_VEXTREL_PRODUCER",
              (BuildFolder() / "do_nothing_target.cti").string().c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG", config.string().c_str());

  Load(copy_);
  void* handle = Handle(kTransportLayer);
  functions_.GCInitLib();
  functions_.TLOpen(&handle);
  handle = Handle(kInterface);
  functions_.TLOpenInterface(Handle(kTransportLayer), "interface", &handle);
  handle = Handle(kDevice);
  functions_.IFOpenDevice(Handle(kInterface), "device", DEVICE_ACCESS_CONTROL, &handle);
  handle = Handle(kStream);
  functions_.DevOpenDataStream(Handle(kDevice), "stream", &handle);
  for (std::size_t i = 0; i < buffers; ++i) {
    handle = BufferHandle(i);
    functions_.DSAllocAndAnnounceBuffer(Handle(kStream), 1024, nullptr, &handle);
  }
  handle = Handle(kNewBufferEvent);
  functions_.GCRegisterEvent(Handle(kStream), EVENT_NEW_BUFFER, &handle);
}

Session::~Session() {
  for (std::size_t i = 0; i < buffers_; ++i) {
    void* memory = nullptr;
    void* userPointer = nullptr;
    functions_.DSRevokeBuffer(Handle(kStream), BufferHandle(i), &memory, &userPointer);
  }
  functions_.GCUnregisterEvent(Handle(kStream), EVENT_NEW_BUFFER);
  functions_.DSClose(Handle(kStream));
  functions_.DevClose(Handle(kDevice));
  functions_.IFClose(Handle(kInterface));
  functions_.TLClose(Handle(kTransportLayer));
  functions_.GCCloseLib();
  module_.reset();
  std::error_code ignored;
  std::filesystem::remove(copy_, ignored);
  std::filesystem::remove(logFile_, ignored);
}

void Session::Load(const std::filesystem::path& path) {
  module_ = std::make_unique<vextrel_test::Module>(path);
  vextrel_test::ForEachFunction([this, &path](const char* name, auto slot) {
    functions_.*slot = reinterpret_cast<std::remove_reference_t<decltype(functions_.*slot)>>(
        module_->IsLoaded() ? module_->FindAddress(name) : nullptr);
    if (functions_.*slot == nullptr) {
      Fail("cannot load " + path.string());
    }
  });
}

}  // namespace vextrel_bench
