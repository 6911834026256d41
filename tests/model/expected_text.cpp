// SPDX-License-Identifier: MIT
#include "model/expected_text.h"

#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace vextrel_test::model {
namespace {

std::string WithLineEnds(const std::string& text, std::string_view lineEnd) {
  std::string result;
  for (const char letter : text) {
    if (letter == '\n') {
      result += lineEnd;
    } else {
      result += letter;
    }
  }
  return result;
}

// Returns the number of leading characters of `actual` that fill the hole, or npos.
std::size_t Fill(Hole hole, std::string_view actual) {
  const std::string_view digits = hole == Hole::Pointer ? "0123456789ABCDEF"
                                  : hole == Hole::Hex   ? "0123456789abcdef"
                                                        : "0123456789";
  std::size_t size = actual.find_first_not_of(digits);
  size = size == std::string_view::npos ? actual.size() : size;
  const std::string number(actual.substr(0, size));
  bool isFilled = false;
  switch (hole) {
    case Hole::None:
      break;
    case Hole::Pointer:
      isFilled = size == 16 && number != "0000000000000000";
      break;
    case Hole::Hex:
      isFilled = size >= 1 && size <= 16 && number[0] != '0';
      break;
    case Hole::Unsigned:
      isFilled = size >= 1 && size <= 10 && (number == "0" || number[0] != '0') &&
                 std::strtoull(number.c_str(), nullptr, 10) <= UINT32_MAX;
      break;
  }
  return isFilled ? size : std::string_view::npos;
}

}  // namespace

void ExpectedText::Append(std::string_view text) {
  if (text.empty()) {
    return;
  }
  if (pieces_.empty() || pieces_.back().hole != Hole::None) {
    pieces_.push_back({Hole::None, {}});
  }
  pieces_.back().text += text;
}

void ExpectedText::Append(Hole hole) {
  pieces_.push_back({hole, {}});
}

std::size_t ExpectedText::Match(std::string_view actual, std::string_view lineEnd) const {
  std::size_t position = 0;
  for (const Piece& piece : pieces_) {
    const std::string_view rest = actual.substr(position);
    if (piece.hole != Hole::None) {
      const std::size_t size = Fill(piece.hole, rest);
      if (size == std::string_view::npos) {
        return size;
      }
      position += size;
      continue;
    }
    const std::string text = WithLineEnds(piece.text, lineEnd);
    if (rest.substr(0, text.size()) != text) {
      return std::string_view::npos;
    }
    position += text.size();
  }
  return position;
}

const std::string& ExpectedText::Text() const {
  static const std::string kNone;
  if (pieces_.empty()) {
    return kNone;
  }
  if (pieces_.size() > 1 || pieces_.front().hole != Hole::None) {
    throw std::logic_error("a text with holes: " + Describe());
  }
  return pieces_.front().text;
}

std::string ExpectedText::Describe() const {
  std::string text;
  for (const Piece& piece : pieces_) {
    text += piece.hole == Hole::None ? Printable(piece.text) : "<an address>";
  }
  return text;
}

std::string Printable(std::string_view text) {
  std::ostringstream stream;
  for (const char letter : text) {
    if (letter == '\n') {
      stream << "\\n\n";
    } else if (letter < ' ' || letter > '~') {
      stream << "\\x" << std::hex << std::setw(2) << std::setfill('0')
             << static_cast<unsigned>(static_cast<unsigned char>(letter));
    } else {
      stream << letter;
    }
  }
  return stream.str();
}

}  // namespace vextrel_test::model
