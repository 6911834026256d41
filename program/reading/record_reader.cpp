// SPDX-License-Identifier: MIT
#include "reading/record_reader.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

#include "reading/layout_search.h"
#include "reading/message.h"
#include "reading/property_file.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::chrono::milliseconds kPause{20};

std::uint64_t CountLineBreaks(std::string_view text) {
  return static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

std::string_view WithoutLineBreak(std::string_view text) {
  if (text.ends_with('\n')) {
    text.remove_suffix(1);
    if (text.ends_with('\r')) {
      text.remove_suffix(1);
    }
  }
  return text;
}

}  // namespace

RecordReader::RecordReader(ReadingOptions options) : options_(std::move(options)) {
  buffer_.resize(kBlock);
  if (!OpenNextFile()) {
    throw std::runtime_error("no file was named: give the path of a call log");
  }
  if (!options_.layout.has_value()) {
    FindLayoutOfFirstFile();
  }
}

void RecordReader::FindLayoutOfFirstFile() {
  // The first file of rolled ones may start with a long dump, an empty one may be written to soon.
  std::size_t looked = 0;
  while (true) {
    const bool more = Fill();
    if (end_ - begin_ >= looked * 2 || !more) {
      looked = end_ - begin_;
      options_.layout = FindLayout({buffer_.data() + begin_, looked});
      if (options_.layout.has_value()) {
        return;
      }
    }
    if (more && looked < kMostOfARecord) {
      continue;
    }
    // A log that was just begun has no whole line yet.
    const std::string_view text(buffer_.data() + begin_, end_ - begin_);
    if (options_.follow && text.find('\n') == kNone && WaitForMore()) {
      continue;
    }
    if (end_ == begin_ && nextFile_ < options_.files.size()) {
      if (OpenNextFile()) {
        looked = 0;
        continue;
      }
    }
    RefuseFirstFile(text);
  }
}

void RecordReader::RefuseFirstFile(std::string_view text) const {
  const std::string name = "'" + options_.files[nextFile_ - 1] + "'";
  if (text.empty()) {
    throw std::runtime_error(
        name +
        " is empty: a call log has a line for each call; check that the application loaded "
        "Vextrel and that its configuration names this file");
  }
  if (LooksLikeProperties(text)) {
    throw std::runtime_error(name +
                             " is a property file, not a log: give the file that its 'fileName' "
                             "names, and this one with --config if the layout is your own");
  }
  if (text.substr(0, kBlock).find('\0') != kNone) {
    throw std::runtime_error(name +
                             " is a binary file, not a call log: give the text file that Vextrel "
                             "wrote");
  }
  throw std::runtime_error(
      name +
      " has no line that Vextrel wrote in a layout that is known: give a call log, or its layout "
      "with --pattern or --config");
}

bool RecordReader::OpenNextFile() {
  if (nextFile_ == options_.files.size()) {
    return false;
  }
  file_.reset();
  file_.emplace(options_.files[nextFile_++]);
  begin_ = end_ = 0;
  atEnd_ = false;
  headIsKnown_ = false;
  line_ = 1;
  position_ = 0;
  if (nextFile_ == 1 && options_.skip > 0) {
    SkipFront();
  } else {
    SkipByteOrderMark();
  }
  return true;
}

void RecordReader::CheckThatFileIsWhole() const {
  if (!options_.follow && file_.has_value() && file_->WasReplaced(position_)) {
    throw std::runtime_error("'" + file_->Path() +
                             "' was cut or replaced while it was read, so no figure would be true: "
                             "read a copy, or wait until the application has ended");
  }
}

void RecordReader::SkipByteOrderMark() {
  while (end_ < kByteOrderMark.size() && Fill()) {
  }
  if (std::string_view(buffer_.data(), end_).starts_with(kByteOrderMark)) {
    begin_ = kByteOrderMark.size();
  }
}

void RecordReader::SkipFront() {
  while (position_ < options_.skip) {
    const std::size_t count = file_->Read(
        buffer_.data(),
        static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, options_.skip - position_)));
    if (count == 0) {
      return;
    }
    line_ += CountLineBreaks({buffer_.data(), count});
    position_ += count;
  }
}

bool RecordReader::Fill() {
  if (atEnd_) {
    return false;
  }
  if (buffer_.size() - end_ < kHeadRoom && begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) {
    buffer_.resize(buffer_.size() * 2);
  }
  // Not more than a block at a time: what was just read is still in the processor's cache then.
  const std::size_t count =
      file_->Read(buffer_.data() + end_, std::min(buffer_.size() - end_, kBlock));
  end_ += count;
  bytesRead_ += count;
  position_ += count;
  atEnd_ = count == 0;
  return !atEnd_;
}

bool RecordReader::WaitForMore() {
  if (nextFile_ != options_.files.size()) {
    return false;
  }
  while (!options_.stop || !options_.stop()) {
    atEnd_ = false;
    if (Fill()) {
      return true;
    }
    if (file_->WasReplaced(position_)) {
      // What is left of the old file has been handed out; the new one starts at its beginning.
      --nextFile_;
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  options_.follow = false;
  return false;
}

bool RecordReader::StartsRecord(std::size_t at, RecordHead& head) {
  head = RecordHead();
  return options_.layout->Match({buffer_.data() + at, end_ - at}, head);
}

std::size_t RecordReader::EndOfLine(std::size_t at) {
  while (true) {
    const void* found = std::memchr(buffer_.data() + at, '\n', end_ - at);
    if (found != nullptr) {
      return static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()) + 1;
    }
    const std::size_t searched = end_ - begin_;
    if (searched >= kMostOfARecord || !Fill()) {
      return kNone;
    }
    at = begin_ + searched;
  }
}

// The end of the record at begin_: the beginning of the next line that starts one.
std::size_t RecordReader::EndOfRecord(bool& tooLong) {
  std::size_t size = 0;  // begin_ moves when more is read
  recordBreaks_ = 0;
  while (true) {
    std::size_t next = EndOfLine(begin_ + size);
    if (next == kNone) {
      tooLong = !atEnd_;
      nextIsRecord_ = false;
      return end_;
    }
    size = next - begin_;
    ++recordBreaks_;
    if (end_ - next < kHeadRoom && !atEnd_) {
      static_cast<void>(Fill());
      next = begin_ + size;
    }
    if (next == end_ && atEnd_) {
      nextIsRecord_ = false;
      return end_;
    }
    if (StartsRecord(next, nextHead_)) {
      nextIsRecord_ = true;
      return next;
    }
    if (size >= kMostOfARecord) {
      tooLong = true;
      nextIsRecord_ = false;
      return next;
    }
  }
}

std::size_t RecordReader::EndOfGluedRecord() {
  // No message is shorter, and none starts within the first letters of another one.
  constexpr std::size_t shortest = 8;
  for (std::size_t size = shortest;; ++size) {
    if (end_ - begin_ < size + kMessageHead && !atEnd_) {
      static_cast<void>(Fill());
    }
    if (begin_ + size >= end_ || size >= kMostOfARecord) {
      nextIsRecord_ = false;
      return std::min(end_, begin_ + size);
    }
    if (StartsMessage({buffer_.data() + begin_ + size, end_ - begin_ - size})) {
      nextIsRecord_ = true;
      nextHead_ = RecordHead();
      return begin_ + size;
    }
  }
}

bool RecordReader::LooksComplete(std::size_t end) {
  const std::string_view raw(buffer_.data() + begin_, end - begin_);
  if (!options_.layout->IsGlued() && !raw.ends_with('\n')) {
    return false;
  }
  RecordHead head = head_;
  Message message;
  const std::string_view text = WithoutLineBreak(raw);
  ParseMessage(
      options_.layout->WithoutTail(text.substr(std::min(head.messageBegin, text.size())), head),
      message);
  return message.kind != MessageKind::Other;
}

void RecordReader::Hand(Record& record, std::size_t end, RecordKind kind) {
  const std::string_view all(buffer_.data() + begin_, end - begin_);
  record.kind = kind;
  record.place = {static_cast<std::uint32_t>(nextFile_ - 1), line_};
  record.head = head_;
  record.raw = WithoutLineBreak(all);
  record.message = record.raw.substr(std::min(head_.messageBegin, record.raw.size()));
  if (kind == RecordKind::Whole) {
    record.message = options_.layout->WithoutTail(record.message, record.head);
  }
  record.bytes = all.size();
  record.isCut = end == end_ && atEnd_ && !all.ends_with('\n') && !options_.layout->IsGlued();
  const std::uint64_t breaks = options_.layout->IsGlued() ? CountLineBreaks(all) : recordBreaks_;
  line_ += breaks;
  allLines_ += breaks + (record.isCut ? 1 : 0);
  begin_ = end;
  headIsKnown_ = nextIsRecord_;
  head_ = nextHead_;
}

std::uint64_t RecordReader::TotalBytes() const {
  std::uint64_t total = 0;
  for (const std::string& path : options_.files) {
    if (path == "-") {
      return 0;
    }
    total += FileExists(path) ? ByteFile(path).Size() : 0;
  }
  return total - std::min(total, options_.skip);
}

void RecordReader::SkipRestOfRecord() {
  while (true) {
    const std::size_t next = EndOfLine(begin_);
    if (next == kNone) {
      begin_ = end_;
      if (atEnd_ || !Fill()) {
        return;
      }
      continue;
    }
    ++line_;
    ++allLines_;
    begin_ = next;
    if (end_ - begin_ < kHeadRoom) {
      static_cast<void>(Fill());
    }
    if (begin_ == end_ || StartsRecord(begin_, head_)) {
      headIsKnown_ = begin_ != end_;
      return;
    }
  }
}

bool RecordReader::Next(Record& record) {
  if (std::exchange(skipping_, false)) {
    SkipRestOfRecord();
  }
  while (true) {
    if (begin_ == end_ && !Fill() && !(options_.follow && WaitForMore())) {
      CheckThatFileIsWhole();
      if (!OpenNextFile()) {
        return false;
      }
      continue;
    }
    if (!headIsKnown_) {
      while (end_ - begin_ < kHeadRoom && Fill()) {
      }
      headIsKnown_ = options_.layout->IsGlued()
                         ? StartsMessage({buffer_.data() + begin_, end_ - begin_})
                         : StartsRecord(begin_, head_);
      if (options_.layout->IsGlued()) {
        head_ = RecordHead();
      }
    }
    bool tooLong = false;
    std::size_t end = options_.layout->IsGlued() ? EndOfGluedRecord() : EndOfRecord(tooLong);
    if (options_.follow && end == end_ && atEnd_ && nextFile_ == options_.files.size() &&
        !LooksComplete(end) && WaitForMore()) {
      continue;
    }
    const bool isWhole = headIsKnown_ && !tooLong;
    if (!headIsKnown_) {
      head_ = RecordHead();
    }
    Hand(record, end,
         isWhole ? RecordKind::Whole : (tooLong ? RecordKind::TooLong : RecordKind::Headless));
    if (tooLong) {
      // The record was handed out from memory that must not move yet.
      skipping_ = true;
    }
    return true;
  }
}

}  // namespace vextrel::program
