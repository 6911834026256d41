// Image files.
#ifndef VEXTREL_SAMPLES_GRAB_PGM_H
#define VEXTREL_SAMPLES_GRAB_PGM_H

#include <cstdint>
#include <filesystem>
#include <vector>

namespace grab {

// Eight bits a pixel, rows from top to bottom without gaps.
struct Image {
  std::size_t width = 0;
  std::size_t height = 0;
  std::vector<std::uint8_t> pixels;
};

// Writes a binary PGM file, replacing one that is there. Throws Error.
void WritePgm(const std::filesystem::path& file, const Image& image);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_PGM_H
