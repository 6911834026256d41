#include "pgm.h"

#include <fstream>

#include "error.h"
#include "module.h"

namespace grab {

void WritePgm(const std::filesystem::path& file, const Image& image) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << "P5\n" << image.width << ' ' << image.height << "\n255\n";
  out.write(reinterpret_cast<const char*>(image.pixels.data()),
            static_cast<std::streamsize>(image.pixels.size()));
  out.close();
  if (!out) {
    throw Error("Cannot write the image file " + PathText(file) + ".");
  }
}

}  // namespace grab
