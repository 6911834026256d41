// Grabs frames from a camera through a GenTL producer.
#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <string>

#include "error.h"
#include "gentl_functions.h"
#include "module.h"
#include "options.h"
#include "producers.h"
#include "session.h"

namespace {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;
constexpr int kUsageFailure = 2;

void Report(const char* text) {
  std::cout.flush();
  std::cerr << "grab: " << text << std::endl;
}

// An initialised producer, closed and unloaded at the end.
class Producer {
 public:
  explicit Producer(const std::filesystem::path& file) : module(file), gentl(module) {
    if (const std::string reason = Initialise(); !reason.empty()) {
      throw grab::Error(reason);
    }
  }
  ~Producer() { gentl.GCCloseLib(); }
  Producer(const Producer&) = delete;
  Producer& operator=(const Producer&) = delete;

  [[nodiscard]] const grab::GenTl& Functions() const { return gentl; }

 private:
  // Empty on success. An exception of the producer's has to be gone before its code is unloaded,
  // so it ends here.
  [[nodiscard]] std::string Initialise() const {
    try {
      const GC_ERROR result = gentl.GCInitLib();
      return result == GC_ERR_SUCCESS ? "" : gentl.Describe(gentl.GCInitLib.Name(), result) + ".";
    } catch (const std::exception& exception) {
      return std::string("GCInitLib ended with an exception: ") + exception.what() + ".";
    }
  }

  grab::Module module;
  grab::GenTl gentl;
};

void Use(const std::filesystem::path& file, const grab::Options& options) {
  std::cout << "Loading " << grab::PathText(file) << std::endl;
  const Producer producer(file);
  if (options.list) {
    grab::ListDevices(producer.Functions());
  } else {
    grab::GrabFrames(producer.Functions(), options);
  }
}

// Lists them all, or tries them in turn until one has delivered. A failing one does not keep the
// next from its turn.
[[nodiscard]] int UseAll(const grab::Options& options) {
  bool failed = false;
  for (const std::filesystem::path& file : grab::FindProducers(options)) {
    try {
      Use(file, options);
      if (!options.list) {
        return kSuccess;
      }
    } catch (const grab::Error& error) {
      Report(error.what());
      failed = true;
    }
  }
  return failed ? kFailure : kSuccess;
}

[[nodiscard]] int Run(std::span<const char* const> arguments) {
  const grab::Options options = grab::ParseOptions(arguments);
  if (options.help) {
    std::cout << grab::HelpText();
    return kSuccess;
  }
  return UseAll(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    // A program may be started without even its own name.
    const std::span<const char* const> all(argv, static_cast<std::size_t>(argc));
    return Run(all.empty() ? all : all.subspan(1));
  } catch (const grab::UsageError& error) {
    Report(error.what());
    return kUsageFailure;
  } catch (const std::exception& error) {
    Report(error.what());
    return kFailure;
  }
}
