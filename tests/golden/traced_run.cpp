// SPDX-License-Identifier: MIT
#include "traced_run.h"

#include "support/files.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

namespace fs = std::filesystem;

[[nodiscard]] std::string Native(fs::path path) {
  return path.make_preferred().string();
}

}  // namespace

std::string CameraPath(Edition edition) {
  return Native(edition == Edition::Extended ? SIMULATED_CAMERA_EXTENDED : SIMULATED_CAMERA);
}

TracedRun Trace(const std::string& name, const std::vector<std::string>& arguments,
                const char* frameRate, Edition edition) {
  const fs::path folder = fs::path(SCRATCH_FOLDER) / name;
  fs::remove_all(folder);
  fs::create_directories(folder);
  const fs::path configuration = folder / "log.properties";
  const fs::path log = folder / "calls.log";
  WriteFile(configuration,
            LogConfig{.file = log.generic_string(), .rootCategory = "INFO, file"}.Text());

  SetVariable("GENICAM_GENTL64_PATH",
              Native(edition == Edition::Extended ? VEXTREL_EXTENDED_MODULE : VEXTREL).c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_PRODUCER", CameraPath(edition).c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG", Native(configuration).c_str());
  SetVariable("VEXTREL_CAMERA_RATE", frameRate);
  for (const char* variable :
       {"VEXTREL_CAMERA_WIDTH", "VEXTREL_CAMERA_HEIGHT", "VEXTREL_CAMERA_DEVICES"}) {
    SetVariable(variable, nullptr);
  }
  return {RunProgram(GRAB_PROGRAM, arguments, folder), ReadFile(log)};
}

}  // namespace vextrel_test
