// SPDX-License-Identifier: MIT
// The records of one or more log files, one after the other, in a bounded amount of memory.
#ifndef VEXTREL_PROGRAM_READING_RECORD_READER_H
#define VEXTREL_PROGRAM_READING_RECORD_READER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reading/byte_file.h"
#include "reading/layout.h"

namespace vextrel::program {

// Where a record stands in the log: the file's number, from 0, and the line's, from 1.
struct LogPlace {
  std::uint32_t file = 0;
  std::uint64_t line = 0;
};

enum class RecordKind : std::uint8_t {
  Whole,
  Headless,  // lines that belong to no record: the end of one whose beginning is gone, or no log
  TooLong,   // the rest of it was skipped
};

// Valid until the next record is read.
struct Record {
  RecordKind kind = RecordKind::Whole;
  LogPlace place;
  RecordHead head;
  std::string_view message;  // without the line break at its end
  std::string_view raw;      // with everything in front of it
  std::uint64_t bytes = 0;   // in the file
  bool isCut = false;        // the file ends without a line break
};

// How the log is read.
struct ReadingOptions {
  std::vector<std::string> files;  // UTF-8; "-" is standard input
  // Bytes of the first file to pass over: only their lines count. REQUIRES: 0 with `follow`.
  std::uint64_t skip = 0;
  std::optional<Layout> layout;  // found by itself if there's none
  bool follow = false;           // wait for more at the end of the last file
  std::function<bool()> stop;    // asked while waiting; true ends the log
};

class RecordReader {
 public:
  // A record may have this many bytes, a frame that was read through a port for example.
  static constexpr std::size_t kMostOfARecord = std::size_t{32} << 20U;

  // Opens the first file and finds its layout. Throws std::runtime_error with a sentence if that
  // isn't a call log.
  explicit RecordReader(ReadingOptions options);

  // Reads the next record. Returns false at the end of the last file. Throws std::runtime_error
  // with a sentence if a file can't be read.
  [[nodiscard]] bool Next(Record& record);

  [[nodiscard]] const Layout& UsedLayout() const noexcept { return *options_.layout; }
  [[nodiscard]] const std::vector<std::string>& Files() const noexcept { return options_.files; }
  // Line breaks seen so far, in all files.
  [[nodiscard]] std::uint64_t Lines() const noexcept { return allLines_; }
  // Bytes read so far, and what there is of them, 0 if that isn't known.
  [[nodiscard]] std::uint64_t BytesRead() const noexcept { return bytesRead_; }
  [[nodiscard]] std::uint64_t TotalBytes() const;

 private:
  static constexpr std::size_t kBlock = std::size_t{1} << 20U;
  // A record's head needs no more.
  static constexpr std::size_t kHeadRoom = 1024;

  void FindLayoutOfFirstFile();
  [[noreturn]] void RefuseFirstFile(std::string_view text) const;
  [[nodiscard]] bool OpenNextFile();
  void CheckThatFileIsWhole() const;
  void SkipByteOrderMark();
  void SkipFront();
  // Reads more behind what is there. Returns false at the end of the file.
  [[nodiscard]] bool Fill();
  [[nodiscard]] bool WaitForMore();
  [[nodiscard]] bool StartsRecord(std::size_t at, RecordHead& head);
  // The end of the line that holds `at`, behind its line break, or npos if the file ends before.
  [[nodiscard]] std::size_t EndOfLine(std::size_t at);
  [[nodiscard]] std::size_t EndOfRecord(bool& tooLong);
  [[nodiscard]] std::size_t EndOfGluedRecord();
  [[nodiscard]] bool LooksComplete(std::size_t end);
  void Hand(Record& record, std::size_t end, RecordKind kind);
  void SkipRestOfRecord();

  ReadingOptions options_;
  std::optional<ByteFile> file_;
  std::size_t nextFile_ = 0;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // of the record that comes next
  std::size_t end_ = 0;    // of what was read
  bool atEnd_ = false;     // of the file
  bool headIsKnown_ = false;
  RecordHead head_;  // of the record at begin_
  RecordHead nextHead_;
  bool nextIsRecord_ = false;
  bool skipping_ = false;  // after a record that was too long
  std::uint64_t line_ = 1;
  std::uint64_t recordBreaks_ = 0;  // line breaks of the record at begin_
  std::uint64_t allLines_ = 0;
  std::uint64_t bytesRead_ = 0;
  std::uint64_t position_ = 0;  // in the file
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_RECORD_READER_H
