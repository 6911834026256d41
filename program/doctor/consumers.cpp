// SPDX-License-Identifier: MIT
#include "doctor/consumers.h"

#include <algorithm>
#include <array>

#include "images/file_bytes.h"

namespace vextrel::program {
namespace {

constexpr std::array<Consumer, 5> kConsumers = {{
    {"Aravis", "arv-", "libaravis-", true, ""},
    {"rc_genicam_api", "gc_", "librc_genicam_api", true, ""},
    {"Python", "python", "libpython", false,
     "a program in Python may be told its producer by path, as Harvesters is by add_file(), and "
     "not look at the variable"},
    {"GStreamer", "gst-launch", "", false,
     "an element of GStreamer may look for its producer at a path of its own"},
    {"Vimba X", "VimbaXViewer", "VmbC", false, "its settings can leave out producers of others"},
}};

}  // namespace

const Consumer* FindConsumer(const std::filesystem::path& file, const Image& image) {
  const std::string name = TextOf(file.filename());
  for (const Consumer& consumer : kConsumers) {
    const bool links =
        !consumer.linkedPrefix.empty() &&
        std::any_of(image.needed.begin(), image.needed.end(), [&](const NeededLibrary& library) {
          return library.name.starts_with(consumer.linkedPrefix);
        });
    if (links || name.starts_with(consumer.programPrefix)) {
      return &consumer;
    }
  }
  return nullptr;
}

}  // namespace vextrel::program
