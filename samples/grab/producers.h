// Which producer modules there are.
#ifndef VEXTREL_SAMPLES_GRAB_PRODUCERS_H
#define VEXTREL_SAMPLES_GRAB_PRODUCERS_H

#include <filesystem>
#include <vector>

#include "options.h"

namespace grab {

// The module that --producer names, or all that GENICAM_GENTL64_PATH leads to, in its order and by
// name within a folder; at least one. Throws Error when there is none.
[[nodiscard]] std::vector<std::filesystem::path> FindProducers(const Options& options);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_PRODUCERS_H
