#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_XML_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_XML_H

#include <cstddef>
#include <string>
#include <string_view>

namespace simcam {

// Describes the registers of the camera itself (remote_device.h).
[[nodiscard]] std::string_view CameraXml();

// Describes a module of the producer, which has one register at address 0: the text `feature`.
[[nodiscard]] std::string ModuleXml(std::string_view model, std::string_view port,
                                    std::string_view feature, size_t registerSize);

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_XML_H
