#ifndef VEXTREL_TESTS_GOLDEN_CAMERA_XML_H
#define VEXTREL_TESTS_GOLDEN_CAMERA_XML_H

#include <string>

namespace golden {

// The description that the simulated camera SimCam2 gives of itself, read without a proxy. Throws
// std::runtime_error.
[[nodiscard]] std::string ReadCameraXml(const std::string& cameraPath);

}  // namespace golden

#endif  // VEXTREL_TESTS_GOLDEN_CAMERA_XML_H
