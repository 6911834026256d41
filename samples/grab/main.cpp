// SPDX-License-Identifier: MIT
// Grabs frames from a camera through a GenTL producer: the command line and the search path.
#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <span>
#include <sstream>
#include <string_view>
#include <system_error>

#include "faults.h"
#include "gentl_1_5.h"
#include "session.h"

namespace {

namespace fs = std::filesystem;
using grab::Error;
using grab::Options;
using grab::PathText;

enum ExitCode { Success = 0, Failure = 1, UsageFailure = 2, Refusal = 3 };

constexpr const char* kPathVariable = "GENICAM_GENTL64_PATH";
constexpr const char* kHint = "; name a producer with --producer FILE.";
#if defined(_WIN32)
constexpr char kPathSeparator = ';';
#else
constexpr char kPathSeparator = ':';
#endif

constexpr std::string_view kHelp = R"(Usage: grab [OPTION]...
Grabs frames from the first camera that can be opened.

  --producer FILE  load this GenTL producer; without it, those that the
                   environment variable GENICAM_GENTL64_PATH names are tried
                   in turn (folders or .cti files)
  --list           only list the interfaces and devices
  --frames N       grab N frames (default 10)
  --timeout MS     wait at most MS milliseconds for a frame (default 5000)
  --image FILE     write the last frame to FILE as a binary PGM (8 bit)
  --genTL 1.5      demand all 57 functions of GenTL 1.5, as strict consumers do,
                   and print the parts, chunks and parents it finds
  --mix-buffers    let the producer allocate the last buffer
  --misuse         close badly on purpose, to see a tracing producer report it
  --fault NAME     make one mistake that applications make; --fault list names them
  --mended         with --fault: do the same without the mistake
  --help           print this text

The exit code is 0 after success, 1 after an error, 2 for a wrong command line,
3 if a producer lacks a function that --genTL demands.
)";

class UsageError : public Error {
 public:
  using Error::Error;
};

[[nodiscard]] std::uint64_t ParseNumber(std::string_view option, std::string_view text,
                                        std::uint64_t lowest, std::uint64_t highest) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || last != end || value < lowest || value > highest) {
    throw UsageError("Option " + std::string(option) + " needs a whole number from " +
                     std::to_string(lowest) + " to " + std::to_string(highest) + ", not '" +
                     std::string(text) + "'.");
  }
  return value;
}

[[nodiscard]] Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string_view option = arguments[index];
    const auto value = [&]() -> const char* {
      if (++index == arguments.size()) {
        throw UsageError("Option " + std::string(option) + " needs a value.");
      }
      return arguments[index];
    };
    if (option == "--producer") {
      options.producer = grab::PathFromText(value());
    } else if (option == "--image") {
      options.image = grab::PathFromText(value());
    } else if (option == "--frames") {
      options.frames = ParseNumber(option, value(), 1, 1'000'000'000);
    } else if (option == "--timeout") {
      options.timeoutMs = ParseNumber(option, value(), 0, 86'400'000);
    } else if (option == "--list") {
      options.list = true;
    } else if (option == "--genTL") {
      if (const std::string_view version = value(); version != "1.5") {
        throw UsageError("Option --genTL knows 1.5 only, not '" + std::string(version) + "'.");
      }
      options.genTL15 = true;
    } else if (option == "--mix-buffers") {
      options.mixBuffers = true;
    } else if (option == "--misuse") {
      options.misuse = true;
    } else if (option == "--fault") {
      options.fault = value();
      if (options.fault != "list" && grab::FindFault(options.fault) == nullptr) {
        throw UsageError("There is no fault '" + options.fault + "'; --fault list names them.");
      }
    } else if (option == "--mended") {
      options.mended = true;
    } else if (option == "--help") {
      options.help = true;
    } else {
      throw UsageError("Unknown option '" + std::string(option) + "'; --help lists the options.");
    }
  }
  if (options.list && (options.image || options.misuse)) {
    throw UsageError("Option --list goes with neither --image nor --misuse.");
  }
  if (options.mended && (options.fault.empty() || options.fault == "list")) {
    throw UsageError("Option --mended needs a fault.");
  }
  return options;
}

[[nodiscard]] bool IsProducerName(const fs::path& file) {
  std::string extension = PathText(file.extension());
  std::ranges::transform(extension, extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension == ".cti";
}

// Appends the producers of one entry of the search path, by name. A missing or unreadable folder is
// no error: the search path serves other programs, too.
void AppendProducers(const fs::path& entry, std::vector<fs::path>* producers) {
  std::error_code ignored;
  if (!fs::is_directory(entry, ignored)) {
    if (IsProducerName(entry) && fs::exists(entry, ignored)) {
      producers->push_back(entry);
    }
    return;
  }
  std::vector<fs::path> found;
  for (fs::directory_iterator file(entry, ignored), end; file != end; file.increment(ignored)) {
    if (IsProducerName(file->path()) && !file->is_directory(ignored)) {
      found.push_back(file->path());
    }
  }
  std::ranges::sort(found);
  producers->insert(producers->end(), found.begin(), found.end());
}

// Returns the producer that --producer names, or all of the search path; at least one.
[[nodiscard]] std::vector<fs::path> FindProducers(const Options& options) {
  if (options.producer) {
    std::error_code ignored;
    if (!fs::is_regular_file(*options.producer, ignored)) {
      throw Error("There is no producer file " + PathText(*options.producer) + ".");
    }
    return {*options.producer};
  }
  const char* const variable = std::getenv(kPathVariable);
  const std::string list = variable != nullptr ? variable : "";
  if (list.empty()) {
    throw Error(std::string("The environment variable ") + kPathVariable + " is not set" + kHint);
  }
  std::vector<fs::path> producers;
  std::istringstream entries(list);
  for (std::string entry; std::getline(entries, entry, kPathSeparator);) {
    if (!entry.empty()) {
      AppendProducers(grab::PathFromText(entry.c_str()), &producers);
    }
  }
  if (producers.empty()) {
    throw Error("There is no .cti file in " + list + ", where " + kPathVariable + " points" +
                kHint);
  }
  return producers;
}

void Report(const char* text) {
  std::cout.flush();
  std::cerr << "grab: " << text << std::endl;
}

// Lists the devices of all producers, or tries the producers in turn until one has delivered.
[[nodiscard]] ExitCode Run(const Options& options) {
  ExitCode code = Success;
  for (const fs::path& file : FindProducers(options)) {
    try {
      std::cout << "Loading " << PathText(file) << std::endl;
      const grab::Library library(file);
      if (options.genTL15) {
        grab::DemandGenTL15(library);
      }
      const grab::Producer producer(library);
      if (options.list) {
        grab::ListDevices(producer);
      } else {
        grab::GrabFrames(producer, options);
        return Success;
      }
    } catch (const grab::MissingFunction& error) {
      Report(error.what());
      code = Refusal;
    } catch (const Error& error) {
      Report(error.what());
      code = Failure;
    }
  }
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    // A program can be started without any arguments, even its own name.
    const std::span<const char* const> all(argv, static_cast<std::size_t>(argc));
    const Options options = ParseOptions(all.empty() ? all : all.subspan(1));
    if (options.help) {
      std::cout << kHelp;
      return Success;
    }
    if (options.fault == "list") {
      for (const grab::Fault& fault : grab::Faults()) {
        std::cout << fault.name << '\n';
      }
      return Success;
    }
    return Run(options);
  } catch (const UsageError& error) {
    Report(error.what());
    return UsageFailure;
  } catch (const std::exception& error) {
    Report(error.what());
    return Failure;
  }
}
