#include "traced_run.h"

#include <fstream>
#include <iterator>

namespace golden {
namespace {

namespace fs = std::filesystem;
using child_process::SetVariable;

[[nodiscard]] std::string Native(fs::path path) {
  return path.make_preferred().string();
}

void WriteConfiguration(const fs::path& file, const fs::path& log) {
  std::ofstream(file) << "rootCategory=INFO, file\n"
                      << "appender.file=FileAppender\n"
                      << "appender.file.fileName=" << log.generic_string() << '\n'
                      << "appender.file.layout=PatternLayout\n"
                      << "appender.file.layout.ConversionPattern=%p %m%n\n";
}

}  // namespace

std::string CameraPath() {
  return Native(SIMULATED_CAMERA);
}

std::string ReadLog(const fs::path& file) {
  // Not as text: among the bytes of a message can be one that ends a text file on Windows.
  std::ifstream in(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(in), {}};
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at)) {
    text.erase(at, 1);
  }
  return text;
}

TracedRun Trace(const std::string& name, const std::vector<std::string>& arguments,
                const std::optional<std::string>& frameRate) {
  const fs::path folder = fs::path(SCRATCH_FOLDER) / name;
  fs::remove_all(folder);
  fs::create_directories(folder);
  const fs::path configuration = folder / "log.properties";
  const fs::path log = folder / "calls.log";
  WriteConfiguration(configuration, log);

  SetVariable("GENICAM_GENTL64_PATH", Native(VEXTREL));
  SetVariable("GENICAM_GENTL64_VEXTREL_PRODUCER", CameraPath());
  SetVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG", Native(configuration));
  SetVariable("VEXTREL_CAMERA_RATE", frameRate);
  for (const char* variable :
       {"VEXTREL_CAMERA_WIDTH", "VEXTREL_CAMERA_HEIGHT", "VEXTREL_CAMERA_DEVICES"}) {
    SetVariable(variable, std::nullopt);
  }

  TracedRun run;
  run.outcome = child_process::Run(GRAB_PROGRAM, arguments, folder);
  run.log = ReadLog(log);
  return run;
}

}  // namespace golden
