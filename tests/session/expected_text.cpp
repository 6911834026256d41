#include "session/expected_text.h"

#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "support/system.h"

namespace vextrel_test::session {
namespace {

std::string AsTextFile(const std::string& text) {
  std::string file;
  for (const char letter : text) {
    if (letter == '\n' && kOnWindows) {
      file += '\r';
    }
    file += letter;
  }
  return file;
}

// The number of characters at the begin of `actual` that fill the hole, npos if none can.
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

void ExpectedText::Append(const ExpectedText& text) {
  for (const Piece& piece : text.pieces_) {
    if (piece.hole == Hole::None) {
      Append(piece.text);
    } else {
      Append(piece.hole);
    }
  }
}

std::size_t ExpectedText::Match(std::string_view actual) const {
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
    const std::string text = AsTextFile(piece.text);
    if (rest.substr(0, text.size()) != text) {
      return std::string_view::npos;
    }
    position += text.size();
  }
  return position;
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

}  // namespace vextrel_test::session
