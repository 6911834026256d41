// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "support/files.h"
#include "support/process.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPathVariable = "GENICAM_GENTL64_PATH";
constexpr char kPathSeparator = kOnWindows ? ';' : ':';

[[nodiscard]] std::vector<std::string> LinesWith(const std::string& text,
                                                 const std::string& beginning) {
  std::vector<std::string> found;
  for (const std::string& line : SplitLines(text)) {
    if (line.starts_with(beginning)) {
      found.push_back(line);
    }
  }
  return found;
}

[[nodiscard]] bool HasLine(const std::string& text, const std::string& line) {
  return std::ranges::count(SplitLines(text), line) != 0;
}

// In the pattern, '#' matches one or more hexadecimal digits, '*' one or more characters of any
// kind.
[[nodiscard]] bool Matches(std::string_view text, std::string_view pattern) {
  if (pattern.empty()) {
    return text.empty();
  }
  const char wanted = pattern.front();
  const std::string_view restOfPattern = pattern.substr(1);
  if (wanted != '#' && wanted != '*') {
    return text.starts_with(wanted) && Matches(text.substr(1), restOfPattern);
  }
  constexpr std::string_view hexadecimal = "0123456789ABCDEFabcdef";
  for (std::size_t length = 1; length <= text.size(); ++length) {
    if (wanted == '#' && hexadecimal.find(text[length - 1]) == std::string_view::npos) {
      return false;
    }
    if (Matches(text.substr(length), restOfPattern)) {
      return true;
    }
  }
  return false;
}

[[nodiscard]] std::string Native(fs::path path) {
  return path.make_preferred().string();
}

class GrabTest : public testing::Test {
 public:
  GrabTest() {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    scratch = fs::path(SCRATCH_FOLDER) / test->name();
    fs::remove_all(scratch);
    fs::create_directories(scratch);
    SetVariable(kPathVariable, nullptr);
    SetVariable("SPARSE_PRODUCER_FAULT", nullptr);
    SetVariable("VEXTREL_CAMERA_RATE", "200");
    SetVariable("VEXTREL_CAMERA_WIDTH", "48");
    SetVariable("VEXTREL_CAMERA_HEIGHT", "32");
  }

  [[nodiscard]] Outcome Grab(const std::vector<std::string>& arguments) const {
    return RunProgram(GRAB_PROGRAM, arguments, scratch);
  }

  // Names the simulated camera on the command line.
  [[nodiscard]] Outcome GrabFromCamera(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--producer", Native(SIMULATED_CAMERA)});
    return Grab(arguments);
  }

  // Makes a folder with a copy of the module.
  [[nodiscard]] std::string FolderWith(const char* module, const char* folderName) const {
    const fs::path folder = scratch / folderName;
    fs::create_directories(folder);
    fs::copy_file(module, folder / fs::path(module).filename());
    return Native(folder);
  }

  // Expects the exit code and one line on standard error.
  static void ExpectFailure(const Outcome& outcome, int exitCode, const std::string& sentence) {
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_EQ(outcome.err, "grab: " + sentence + "\n");
  }

  static void ExpectUsageFailure(const Outcome& outcome, const std::string& sentence) {
    ExpectFailure(outcome, 2, sentence);
    EXPECT_EQ(outcome.out, "");
  }

  fs::path scratch;
};

TEST_F(GrabTest, GrabsTenFramesAndClosesEverything) {
  const Outcome outcome = GrabFromCamera({});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  const std::vector<std::string> frames = LinesWith(outcome.out, "Frame ");
  ASSERT_EQ(frames.size(), 10U);
  constexpr std::string_view pattern =
      "Frame #: ID #, 48 x 32, 1536 bytes, pixel format 0x01080001, time stamp #";
  for (const std::string& frame : frames) {
    EXPECT_TRUE(Matches(frame, pattern)) << frame;
  }
  EXPECT_TRUE(frames.front().starts_with("Frame 1: "));
  EXPECT_TRUE(frames.back().starts_with("Frame 10: "));
  const std::vector<std::string> lines = SplitLines(outcome.out);
  EXPECT_EQ(std::ranges::count_if(lines,
                                  [&](const std::string& line) {
                                    return Matches(line, "10 frames in #.# s, #.# frames/s");
                                  }),
            1);
  EXPECT_EQ(lines.back(), "Everything closed");
}

TEST_F(GrabTest, ReadsTheCamerasDescriptionAndRegisters) {
  const Outcome outcome = GrabFromCamera({"--frames", "1"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  ASSERT_EQ(LinesWith(outcome.out, "Description ").size(), 2U);
  constexpr std::string_view url = "Description local:*;#;#, schema 1.1, file *";
  EXPECT_TRUE(Matches(LinesWith(outcome.out, "Description ").front(), url)) << outcome.out;
  EXPECT_TRUE(HasLine(outcome.out, "Register 0x100: Width 48"));
  EXPECT_TRUE(HasLine(outcome.out, "Register 0x104: Height 32"));
  EXPECT_TRUE(HasLine(outcome.out, "Registers in one call: 48 x 32"));
  EXPECT_TRUE(HasLine(outcome.out, "Register 0x100: Width 48 written back"));
}

TEST_F(GrabTest, TellsWhichDeviceRefusedAndWhy) {
  const Outcome outcome = GrabFromCamera({"--frames", "1"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_TRUE(HasLine(outcome.out,
                      "  Device SimCam0 (Vextrel Simulated Camera, Simulated Camera 0), "
                      "access no access"));
  const std::string beginning =
      "Device SimCam0 cannot be opened: IFOpenDevice failed with GC_ERR_ACCESS_DENIED (-1005): ";
  const std::vector<std::string> refusals = LinesWith(outcome.out, beginning);
  ASSERT_EQ(refusals.size(), 1U) << outcome.out;
  EXPECT_GT(refusals.front().size(), beginning.size()) << "the producer's text is missing";
  EXPECT_TRUE(HasLine(outcome.out, "Device SimCam2 opened"));
}

TEST_F(GrabTest, WritesTheLastFrameAsImage) {
  const fs::path image = scratch / "last frame.pgm";
  const Outcome outcome = GrabFromCamera({"--frames", "3", "--image", Native(image)});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(LinesWith(outcome.out, "Frame ").size(), 3U);
  EXPECT_TRUE(HasLine(outcome.out, "Image 48 x 32 written to " + Native(image)));
  std::ifstream file(image, std::ios::binary);
  const std::string contents{std::istreambuf_iterator<char>(file), {}};
  const std::string header = "P5\n48 32\n255\n";
  ASSERT_EQ(contents.size(), header.size() + 48 * 32);
  EXPECT_EQ(contents.substr(0, header.size()), header);
  const std::string pixels = contents.substr(header.size());
  EXPECT_NE(std::ranges::count(pixels, pixels.front()), 48 * 32) << "the picture is all one shade";
}

TEST_F(GrabTest, ListsDevicesWithoutGrabbing) {
  SetVariable("VEXTREL_CAMERA_DEVICES", "2");
  const Outcome outcome = GrabFromCamera({"--list"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_GE(LinesWith(outcome.out, "Interface ").size(), 1U);
  EXPECT_EQ(LinesWith(outcome.out, "  Device ").size(), 2U);
  EXPECT_EQ(LinesWith(outcome.out, "Device ").size(), 0U) << "none may be opened";
  EXPECT_EQ(LinesWith(outcome.out, "Frame ").size(), 0U);
}

TEST_F(GrabTest, FindsProducersThroughTheSearchPath) {
  const std::string missing = Native(scratch / "missing");
  const std::string folder = FolderWith(SIMULATED_CAMERA, "cameras");
  SetVariable(kPathVariable, (missing + kPathSeparator + folder).c_str());
  const Outcome outcome = Grab({"--frames", "2"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(LinesWith(outcome.out, "Loading ").size(), 1U);
  EXPECT_EQ(LinesWith(outcome.out, "Frame ").size(), 2U);
}

TEST_F(GrabTest, TakesAFileInTheSearchPath) {
  SetVariable(kPathVariable, Native(SIMULATED_CAMERA).c_str());
  const Outcome outcome = Grab({"--frames", "2"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(HasLine(outcome.out, "Loading " + Native(SIMULATED_CAMERA)));
}

TEST_F(GrabTest, PassesOverAProducerThatCannotBeUsed) {
  const std::string broken = FolderWith(NO_PRODUCER, "broken");
  const std::string good = FolderWith(SIMULATED_CAMERA, "good");
  SetVariable(kPathVariable, (broken + kPathSeparator + good).c_str());
  const Outcome outcome = Grab({"--frames", "2"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "grab: The producer does not export the function GCInitLib.\n");
  EXPECT_EQ(LinesWith(outcome.out, "Loading ").size(), 2U);
  EXPECT_EQ(LinesWith(outcome.out, "Frame ").size(), 2U);
}

TEST_F(GrabTest, TellsWhatItMisuses) {
  const Outcome outcome = GrabFromCamera({"--frames", "1", "--misuse"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  const std::vector<std::string> mistakes = LinesWith(outcome.out, "Misuse: ");
  const std::vector<std::string> expected = {
      "Misuse: buffer 0x# is revoked twice",
      "Misuse: buffer 0x# is never revoked",
      "Misuse: EVENT_NEW_BUFFER is left registered on data stream 0x#",
      "Misuse: data stream * is opened again and never closed",
      "Misuse: EVENT_ERROR is registered on device 0x# and never unregistered",
      "Misuse: device * is opened again and never closed",
      "Misuse: interface * is opened again and never closed",
      "Misuse: EVENT_ERROR is registered on transport layer 0x# and never unregistered",
      "Misuse: the transport layer is opened again and not closed before the library",
  };
  ASSERT_EQ(mistakes.size(), expected.size()) << outcome.out;
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_TRUE(Matches(mistakes[index], expected[index])) << mistakes[index];
  }
  // The camera refuses nothing but the second revocation.
  const std::vector<std::string> refusals = LinesWith(outcome.out, "  refused: ");
  ASSERT_EQ(refusals.size(), 1U) << outcome.out;
  EXPECT_TRUE(refusals.front().starts_with(
      "  refused: DSRevokeBuffer failed with GC_ERR_INVALID_HANDLE (-1006): "))
      << refusals.front();
  EXPECT_FALSE(HasLine(outcome.out, "Everything closed"));
}

TEST_F(GrabTest, MakesDoWithAProducerThatTellsNothing) {
  const Outcome outcome = Grab({"--producer", Native(SPARSE_PRODUCER), "--frames", "6"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* line :
       {"Producer - -, version -, type -", "Interface plug (-), type -",
        "  Device busy (- -, -), access -",
        "Device busy cannot be opened: IFOpenDevice failed with GC_ERR_ACCESS_DENIED (-1005)",
        "Device free opened", "Port - of module -, readable -, writable -, little-endian -",
        "Register 0x100: Width 3", "Register 0x102: Height 2", "Registers in one call: 3 x 2",
        "Register 0x100: Width 3 written back",
        "Stream payload size 6, defined by the stream -, buffers needed at least -",
        "Frame 6: ID -, - x -, - bytes, pixel format -, time stamp -", "Everything closed"}) {
    EXPECT_TRUE(HasLine(outcome.out, line)) << "no line \"" << line << "\" in\n" << outcome.out;
  }
}

TEST_F(GrabTest, GoesOnWithTheMisuseThatAProducerRefuses) {
  const Outcome outcome = Grab({"--producer", Native(SPARSE_PRODUCER), "--misuse"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(LinesWith(outcome.out, "Misuse: ").size(), 9U);
  const std::vector<std::string> refused = {
      "  refused: GCRegisterEvent failed with GC_ERR_NOT_IMPLEMENTED (-1003)",
      "  refused: GCRegisterEvent failed with GC_ERR_NOT_IMPLEMENTED (-1003)"};
  EXPECT_EQ(LinesWith(outcome.out, "  refused: "), refused);
}

TEST_F(GrabTest, RefusesToMakeAnImageOfAFrameWithoutASize) {
  const std::string image = Native(scratch / "frame.pgm");
  ExpectFailure(Grab({"--producer", Native(SPARSE_PRODUCER), "--image", image}), 1,
                "The last frame is no complete image.");
  EXPECT_FALSE(fs::exists(image));
}

TEST_F(GrabTest, DemandsAndUsesGenTL15) {
  const Outcome outcome =
      Grab({"--producer", Native(EXTENDED_CAMERA), "--genTL", "1.5", "--frames", "2"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(HasLine(outcome.out,
                      "Parents: device as opened, interface as opened, transport layer as opened"));
  const std::vector<std::string> lines = SplitLines(outcome.out);
  const std::vector<std::string> expected = {
      "Frame #: ID #, 48 x 32, 3088 bytes, pixel format 0x01080001, time stamp #",
      "  Part 0: 2D image, 48 x 32, format 0x01080001, 1536 bytes at 0",
      "  Part 1: confidence map, 48 x 32, format 0x010800C6, 1536 bytes at 1536",
      "  Chunk 0x1001: 8 bytes at 3072",
      "  Chunk 0x1002: 8 bytes at 3080",
  };
  const auto first = std::ranges::find_if(
      lines, [](const std::string& line) { return line.starts_with("Frame 1: "); });
  ASSERT_GE(lines.end() - first, 10) << outcome.out;
  for (std::size_t index = 0; index < 10; ++index) {
    const std::string& line = *(first + static_cast<std::ptrdiff_t>(index));
    EXPECT_TRUE(Matches(line, expected[index % 5])) << line;
  }
  EXPECT_EQ(lines.back(), "Everything closed");
}

TEST_F(GrabTest, DoesNotAskForPartsUnlessTold) {
  const Outcome outcome = Grab({"--producer", Native(EXTENDED_CAMERA), "--frames", "2"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(LinesWith(outcome.out, "Frame ").size(), 2U);
  EXPECT_EQ(LinesWith(outcome.out, "  Part").size(), 0U);
  EXPECT_EQ(LinesWith(outcome.out, "Parents").size(), 0U);
}

TEST_F(GrabTest, RefusesAProducerThatLacksADemandedFunction) {
  const auto demand = [this](const char* producer) {
    return Grab({"--producer", Native(producer), "--genTL", "1.5"});
  };
  ExpectFailure(demand(SIMULATED_CAMERA), 3,
                "The producer does not export DSGetBufferChunkData, which a consumer of GenTL 1.5 "
                "demands.");
  ExpectFailure(demand(SPARSE_PRODUCER), 3,
                "The producer does not export GCGetInfo, which a consumer of GenTL 1.5 demands.");
}

TEST_F(GrabTest, PassesOverAProducerThatLacksADemandedFunction) {
  const std::string plain = FolderWith(SIMULATED_CAMERA, "plain");
  const std::string extended = FolderWith(EXTENDED_CAMERA, "extended");
  SetVariable(kPathVariable, (plain + kPathSeparator + extended).c_str());
  const Outcome outcome = Grab({"--genTL", "1.5", "--frames", "1"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(LinesWith(outcome.out, "Loading ").size(), 2U);
  EXPECT_EQ(LinesWith(outcome.out, "  Part ").size(), 2U);
}

TEST_F(GrabTest, MakesDoWithDemandedFunctionsThatAreNotImplemented) {
  const Outcome outcome =
      Grab({"--producer", Native(UNHELPFUL_PRODUCER), "--genTL", "1.5", "--frames", "1"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* line : {"Parents: device -, interface -, transport layer -",
                           "Frame 1: ID -, - x -, - bytes, pixel format -, time stamp -",
                           "  Parts -", "  Chunks -", "Everything closed"}) {
    EXPECT_TRUE(HasLine(outcome.out, line)) << "no line \"" << line << "\" in\n" << outcome.out;
  }
}

TEST_F(GrabTest, PrintsHelp) {
  const Outcome outcome = Grab({"--help"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err, "");
  for (const char* option : {"--producer FILE", "--list", "--frames N", "--timeout MS",
                             "--image FILE", "--genTL 1.5", "--misuse"}) {
    EXPECT_EQ(LinesWith(outcome.out, std::string("  ") + option).size(), 1U) << option;
  }
}

TEST_F(GrabTest, RefusesAWrongCommandLine) {
  ExpectUsageFailure(Grab({"--speed"}), "Unknown option '--speed'; --help lists the options.");
  ExpectUsageFailure(Grab({"camera.cti"}),
                     "Unknown option 'camera.cti'; --help lists the options.");
  ExpectUsageFailure(Grab({"--frames"}), "Option --frames needs a value.");
  ExpectUsageFailure(Grab({"--producer"}), "Option --producer needs a value.");
  ExpectUsageFailure(Grab({"--frames", "0"}),
                     "Option --frames needs a whole number from 1 to 1000000000, not '0'.");
  ExpectUsageFailure(Grab({"--frames", "7x"}),
                     "Option --frames needs a whole number from 1 to 1000000000, not '7x'.");
  ExpectUsageFailure(Grab({"--timeout", "-1"}),
                     "Option --timeout needs a whole number from 0 to 86400000, not '-1'.");
  ExpectUsageFailure(Grab({"--genTL", "1.6"}), "Option --genTL knows 1.5 only, not '1.6'.");
  ExpectUsageFailure(Grab({"--fault", "sneeze"}),
                     "There is no fault 'sneeze'; --fault list names them.");
  ExpectUsageFailure(Grab({"--mended"}), "Option --mended needs a fault.");
  ExpectUsageFailure(Grab({"--fault", "list", "--mended"}), "Option --mended needs a fault.");
  ExpectUsageFailure(Grab({"--list", "--misuse"}),
                     "Option --list goes with neither --image nor --misuse.");
}

TEST_F(GrabTest, SaysThatTheSearchPathIsNotSet) {
  ExpectFailure(Grab({}), 1,
                "The environment variable GENICAM_GENTL64_PATH is not set; name a producer with "
                "--producer FILE.");
}

TEST_F(GrabTest, SaysThatTheSearchPathLeadsToNoProducer) {
  const std::string folder = Native(scratch);
  SetVariable(kPathVariable, folder.c_str());
  ExpectFailure(Grab({}), 1,
                "There is no .cti file in " + folder +
                    ", where GENICAM_GENTL64_PATH points; name a producer with --producer FILE.");
}

TEST_F(GrabTest, SaysThatTheProducerFileIsMissing) {
  const std::string file = Native(scratch / "missing.cti");
  ExpectFailure(Grab({"--producer", file}), 1, "There is no producer file " + file + ".");
}

TEST_F(GrabTest, SaysThatAFileIsNoModule) {
  const fs::path file = scratch / "text.cti";
  std::ofstream(file) << "This is no module.\n";
  const Outcome outcome = Grab({"--producer", Native(file)});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(SplitLines(outcome.err).size(), 1U) << outcome.err;
  const std::string beginning = "grab: Cannot load " + Native(file) + ": ";
  EXPECT_TRUE(outcome.err.starts_with(beginning)) << outcome.err;
  EXPECT_GT(outcome.err.size(), beginning.size() + 2) << "the system's reason is missing";
}

TEST_F(GrabTest, NamesTheFunctionThatAModuleLacks) {
  ExpectFailure(Grab({"--producer", Native(NO_PRODUCER)}), 1,
                "The producer does not export the function GCInitLib.");
}

TEST_F(GrabTest, SaysWhatAFaultyProducerDoes) {
  const auto grabWithFault = [this](const char* fault) {
    SetVariable("SPARSE_PRODUCER_FAULT", fault);
    return Grab({"--producer", Native(SPARSE_PRODUCER)});
  };
  ExpectFailure(grabWithFault("init"), 1, "GCInitLib failed with GC_ERR_RESOURCE_IN_USE (-1004).");
  ExpectFailure(grabWithFault("throw"), 1, "GCInitLib ended with an exception: no camera bus.");
  ExpectFailure(grabWithFault("handle"), 1, "TLOpen succeeded but gave no handle.");
  ExpectFailure(grabWithFault("busy"), 1, "No device can be opened.");
  ExpectFailure(grabWithFault("url"), 1,
                "The description is not in the device but at 'file:///sparse.xml'.");
}

TEST_F(GrabTest, GivesUpWhenNoFrameComes) {
  SetVariable("VEXTREL_CAMERA_RATE", "0.1");
  const Outcome outcome = GrabFromCamera({"--frames", "3", "--timeout", "100"});
  ExpectFailure(outcome, 1, "No frame arrived within 100 ms.");
  EXPECT_LT(LinesWith(outcome.out, "Frame ").size(), 3U);
  EXPECT_FALSE(HasLine(outcome.out, "Everything closed"));
}

TEST_F(GrabTest, SaysThatTheImageCannotBeWritten) {
  const std::string image = Native(scratch / "missing" / "frame.pgm");
  ExpectFailure(GrabFromCamera({"--frames", "1", "--image", image}), 1,
                "Cannot write the image file " + image + ".");
}

}  // namespace
}  // namespace vextrel_test
