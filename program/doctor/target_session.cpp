// SPDX-License-Identifier: MIT
#include "doctor/target_session.h"

#include <fmt/format.h>

#include <array>
#include <fstream>
#include <map>
#include <sstream>

#include "doctor/loaded_module.h"
#include "gentl/gentl.h"
#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/process.h"
#include "launching/system.h"
#include "reading/value_reading.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

// Plays one step after the other, and notes each: "begins NAME" before it, and "NAME RESULT" after.
class Session {
 public:
  Session(const std::string& result, const std::string& target)
      : out_(PathOf(result), std::ios::binary), target_(PathOf(target)) {}

  bool Play() {
    Note("begins loading");
    const LoadedModule module(target_);
    if (!module.Error().empty()) {
      Note("error " + module.Error());
      return false;
    }
    TL_HANDLE handle = nullptr;
    const bool works = Call<decltype(GCInitLib)>(module, "GCInitLib") &&
                       Call<decltype(TLOpen)>(module, "TLOpen", &handle) && Count(module, handle) &&
                       Call<decltype(TLClose)>(module, "TLClose", handle) &&
                       Call<decltype(GCCloseLib)>(module, "GCCloseLib");
    if (works) {
      Note("done");
    }
    return works;
  }

 private:
  void Note(const std::string& line) { out_ << line << std::endl; }

  template <typename Function, typename... Arguments>
  bool Call(const LoadedModule& module, const char* name, Arguments... arguments) {
    auto* const function = reinterpret_cast<Function*>(module.Find(name));
    if (function == nullptr) {
      Note(fmt::format("error it doesn't export {}", name));
      return false;
    }
    Note(fmt::format("begins {}", name));
    const GC_ERROR result = function(arguments...);
    if (result != GC_ERR_SUCCESS) {
      std::string storage;
      Note(fmt::format("error {} returns {}", name, ResultName(result, storage)));
    }
    return result == GC_ERR_SUCCESS;
  }

  bool Count(const LoadedModule& module, TL_HANDLE handle) {
    std::array<char, 256> version{};
    std::size_t size = version.size() - 1;
    INFO_DATATYPE type = 0;

    constexpr std::uint64_t timeOut = 1000;
    if (Call<decltype(TLGetInfo)>(module, "TLGetInfo", handle, TL_INFO_VERSION, &type,
                                  static_cast<void*>(version.data()), &size)) {
      Note(fmt::format("version {}", version.data()));
    }
    std::uint32_t count = 0;
    if (!Call<decltype(TLUpdateInterfaceList)>(module, "TLUpdateInterfaceList", handle, nullptr,
                                               timeOut) ||
        !Call<decltype(TLGetNumInterfaces)>(module, "TLGetNumInterfaces", handle, &count)) {
      return false;
    }
    Note(fmt::format("interfaces {}", count));
    return true;
  }

  std::ofstream out_;
  fs::path target_;
};

TargetSession Judge(const std::string& notes, std::optional<int> status) {
  std::map<std::string, std::string> known = {{"begins", "its start"}};
  std::istringstream lines(notes);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    known[line.substr(0, blank)] = line.substr(std::min(blank + 1, line.size()));
  }
  if (known.contains("done") && status == 0) {
    return {true,
            fmt::format("works: version {}, {} interfaces", known["version"], known["interfaces"])};
  }
  if (!status) {
    return {false, fmt::format("hangs in {}", known["begins"])};
  }
  if (known.contains("error")) {
    return {false, fmt::format("fails: {}", known["error"])};
  }
  return {false, fmt::format("ends the process in {} (status {})", known["begins"], *status)};
}

}  // namespace

int PlayTargetSession(const std::string& result, const std::string& target) {
  return Session(result, target).Play() ? 0 : 1;
}

TargetSession TryTarget(const fs::path& program, const fs::path& target, const Variables& variables,
                        std::chrono::milliseconds limit) {
  fs::path folder;
  for (const fs::path& parent : TemporaryFolders(variables)) {
    if (folder = MakePrivateFolder(parent); !folder.empty()) {
      break;
    }
  }
  const fs::path notes = folder / "notes";
  StartRequest request;
  request.file = program;
  request.arguments = {"vextrel", kSessionCommand, TextOf(notes), TextOf(target)};
  request.variables = variables;
  request.isSilent = true;
  TargetSession session;
  try {
    Process process(request);
    const std::optional<int> status = process.WaitFor(limit);
    if (!status) {
      process.Kill();
    }
    session = Judge(ReadBytes(notes).value_or(std::string()), status);
  } catch (const LaunchFailure& failure) {
    session.text = std::string("can't be tried: ") + failure.what();
  }
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  return session;
}

}  // namespace vextrel::program
