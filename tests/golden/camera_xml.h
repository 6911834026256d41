// SPDX-License-Identifier: MIT
#ifndef VEXTREL_TESTS_GOLDEN_CAMERA_XML_H
#define VEXTREL_TESTS_GOLDEN_CAMERA_XML_H

#include <string>

namespace vextrel_test {

// The description that the simulated camera SimCam2 gives of itself, read without a proxy. Throws
// std::runtime_error.
[[nodiscard]] std::string ReadCameraXml(const std::string& cameraPath);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_GOLDEN_CAMERA_XML_H
