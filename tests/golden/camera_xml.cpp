// SPDX-License-Identifier: MIT
#include "camera_xml.h"

#include <array>
#include <stdexcept>

#include "support/held_target.h"

namespace vextrel_test {
namespace {

void Require(GC_ERROR result, const char* function) {
  if (result != GC_ERR_SUCCESS) {
    throw std::runtime_error(std::string(function) + " failed with " + std::to_string(result));
  }
}

// The URL ends with the size in hexadecimal digits.
[[nodiscard]] std::size_t SizeIn(const std::string& url) {
  constexpr int hexadecimal = 16;
  return std::stoul(url.substr(url.rfind(';') + 1), nullptr, hexadecimal);
}

[[nodiscard]] std::string ReadXml(const GenTLFunctions& camera) {
  TL_HANDLE transportLayer = nullptr;
  Require(camera.TLOpen(&transportLayer), "TLOpen");
  IF_HANDLE interfaceHandle = nullptr;
  Require(camera.TLOpenInterface(transportLayer, "SimIface0", &interfaceHandle), "TLOpenInterface");
  DEV_HANDLE device = nullptr;
  Require(camera.IFOpenDevice(interfaceHandle, "SimCam2", DEVICE_ACCESS_READONLY, &device),
          "IFOpenDevice");
  PORT_HANDLE port = nullptr;
  Require(camera.DevGetPort(device, &port), "DevGetPort");
  std::array<char, 256> url{};
  std::size_t size = url.size();
  Require(camera.GCGetPortURL(port, url.data(), &size), "GCGetPortURL");
  constexpr std::uint64_t xmlAddress = 0x10000;
  std::string xml(SizeIn(url.data()), '\0');
  size = xml.size();
  Require(camera.GCReadPort(port, xmlAddress, xml.data(), &size), "GCReadPort");
  xml.resize(size);
  return xml;
}

}  // namespace

std::string ReadCameraXml(const std::string& cameraPath) {
  const Module module(cameraPath);
  if (!module.IsLoaded()) {
    throw std::runtime_error("cannot load " + cameraPath);
  }
  const GenTLFunctions camera = FunctionsOf(module);
  Require(camera.GCInitLib(), "GCInitLib");
  std::string xml = ReadXml(camera);
  Require(camera.GCCloseLib(), "GCCloseLib");
  return xml;
}

}  // namespace vextrel_test
