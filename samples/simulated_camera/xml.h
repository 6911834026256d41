// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_XML_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_XML_H

#include <cstddef>
#include <string>
#include <string_view>

namespace simulated_camera {

// Describes the registers in remote_device.h.
[[nodiscard]] std::string_view CameraXml();

// Describes any other module: one text register, `feature`, at address 0.
[[nodiscard]] std::string ModuleXml(std::string_view model, std::string_view port,
                                    std::string_view feature, size_t registerSize);

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_XML_H
