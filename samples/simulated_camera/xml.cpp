// SPDX-License-Identifier: MIT
#include "xml.h"

namespace simulated_camera {
namespace {

constexpr std::string_view kCameraXml = R"xml(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="SimulatedCamera" VendorName="Vextrel"
    ToolTip="Simulated camera" StandardNameSpace="None"
    SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="6C0F8C1D-5D3E-4A53-9B7B-2E4F0F7D9A10"
    VersionGuid="0B7A7F52-31C9-4C56-8E0B-6A5B8C1D2E30"
    xmlns="http://www.genicam.org/GenApi/Version_1_1"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    xsi:schemaLocation="http://www.genicam.org/GenApi/Version_1_1 GenApiSchema_Version_1_1.xsd">
  <Category Name="Root" NameSpace="Standard">
    <pFeature>DeviceControl</pFeature>
    <pFeature>ImageFormatControl</pFeature>
    <pFeature>AcquisitionControl</pFeature>
    <pFeature>TransportLayerControl</pFeature>
  </Category>
  <Category Name="DeviceControl" NameSpace="Standard">
    <pFeature>DeviceVendorName</pFeature>
    <pFeature>DeviceModelName</pFeature>
    <pFeature>DeviceID</pFeature>
    <pFeature>DeviceUserID</pFeature>
  </Category>
  <Category Name="ImageFormatControl" NameSpace="Standard">
    <pFeature>Width</pFeature>
    <pFeature>Height</pFeature>
    <pFeature>PixelFormat</pFeature>
  </Category>
  <Category Name="AcquisitionControl" NameSpace="Standard">
    <pFeature>AcquisitionFrameRate</pFeature>
    <pFeature>AcquisitionStart</pFeature>
    <pFeature>AcquisitionStop</pFeature>
  </Category>
  <Category Name="TransportLayerControl" NameSpace="Standard">
    <pFeature>PayloadSize</pFeature>
    <pFeature>TLParamsLocked</pFeature>
  </Category>

  <StringReg Name="DeviceVendorName" NameSpace="Standard">
    <Address>0x0</Address>
    <Length>32</Length>
    <AccessMode>RO</AccessMode>
    <pPort>Device</pPort>
  </StringReg>
  <StringReg Name="DeviceModelName" NameSpace="Standard">
    <Address>0x20</Address>
    <Length>32</Length>
    <AccessMode>RO</AccessMode>
    <pPort>Device</pPort>
  </StringReg>
  <StringReg Name="DeviceID" NameSpace="Standard">
    <Address>0x40</Address>
    <Length>32</Length>
    <AccessMode>RO</AccessMode>
    <pPort>Device</pPort>
  </StringReg>
  <StringReg Name="DeviceUserID" NameSpace="Standard">
    <Address>0x60</Address>
    <Length>64</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
  </StringReg>

  <Integer Name="Width" NameSpace="Standard">
    <ToolTip>Width of the picture in pixels</ToolTip>
    <pIsLocked>TLParamsLocked</pIsLocked>
    <pValue>WidthReg</pValue>
    <Min>1</Min>
    <Max>8192</Max>
    <Inc>1</Inc>
  </Integer>
  <IntReg Name="WidthReg">
    <Address>0x100</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Integer Name="Height" NameSpace="Standard">
    <ToolTip>Height of the picture in pixels</ToolTip>
    <pIsLocked>TLParamsLocked</pIsLocked>
    <pValue>HeightReg</pValue>
    <Min>1</Min>
    <Max>8192</Max>
    <Inc>1</Inc>
  </Integer>
  <IntReg Name="HeightReg">
    <Address>0x104</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Enumeration Name="PixelFormat" NameSpace="Standard">
    <EnumEntry Name="Mono8" NameSpace="Standard">
      <Value>0x01080001</Value>
    </EnumEntry>
    <pValue>PixelFormatReg</pValue>
  </Enumeration>
  <IntReg Name="PixelFormatReg">
    <Address>0x108</Address>
    <Length>4</Length>
    <AccessMode>RO</AccessMode>
    <pPort>Device</pPort>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>

  <Integer Name="TLParamsLocked" NameSpace="Standard">
    <Visibility>Invisible</Visibility>
    <pValue>TLParamsLockedReg</pValue>
    <Min>0</Min>
    <Max>1</Max>
  </Integer>
  <IntReg Name="TLParamsLockedReg">
    <Address>0x10C</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Integer Name="PayloadSize" NameSpace="Standard">
    <ToolTip>Size of a frame in bytes</ToolTip>
    <pValue>PayloadSizeReg</pValue>
  </Integer>
  <IntReg Name="PayloadSizeReg">
    <Address>0x110</Address>
    <Length>8</Length>
    <AccessMode>RO</AccessMode>
    <pPort>Device</pPort>
    <pInvalidator>WidthReg</pInvalidator>
    <pInvalidator>HeightReg</pInvalidator>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>

  <Float Name="AcquisitionFrameRate" NameSpace="Standard">
    <pValue>AcquisitionFrameRateReg</pValue>
    <Min>0.1</Min>
    <Max>10000</Max>
    <Unit>Hz</Unit>
  </Float>
  <FloatReg Name="AcquisitionFrameRateReg">
    <Address>0x118</Address>
    <Length>8</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </FloatReg>
  <Command Name="AcquisitionStart" NameSpace="Standard">
    <pValue>AcquisitionStartReg</pValue>
    <CommandValue>1</CommandValue>
  </Command>
  <IntReg Name="AcquisitionStartReg">
    <Address>0x120</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Command Name="AcquisitionStop" NameSpace="Standard">
    <pValue>AcquisitionStopReg</pValue>
    <CommandValue>1</CommandValue>
  </Command>
  <IntReg Name="AcquisitionStopReg">
    <Address>0x124</Address>
    <Length>4</Length>
    <AccessMode>RW</AccessMode>
    <pPort>Device</pPort>
    <Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess>
  </IntReg>

  <Port Name="Device"/>
</RegisterDescription>
)xml";

constexpr std::string_view kModuleXml = R"xml(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="@MODEL@" VendorName="Vextrel"
    ToolTip="@MODEL@ of the simulated camera" StandardNameSpace="None"
    SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="6C0F8C1D-5D3E-4A53-9B7B-2E4F0F7D9A11"
    VersionGuid="0B7A7F52-31C9-4C56-8E0B-6A5B8C1D2E31"
    xmlns="http://www.genicam.org/GenApi/Version_1_1"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    xsi:schemaLocation="http://www.genicam.org/GenApi/Version_1_1 GenApiSchema_Version_1_1.xsd">
  <Category Name="Root" NameSpace="Standard">
    <pFeature>@FEATURE@</pFeature>
  </Category>
  <StringReg Name="@FEATURE@" NameSpace="Standard">
    <Address>0x0</Address>
    <Length>@LENGTH@</Length>
    <AccessMode>RO</AccessMode>
    <pPort>@PORT@</pPort>
  </StringReg>
  <Port Name="@PORT@"/>
</RegisterDescription>
)xml";

void Replace(std::string& text, std::string_view mark, std::string_view replacement) {
  for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
    text.replace(at, mark.size(), replacement);
  }
}

}  // namespace

std::string_view CameraXml() {
  return kCameraXml;
}

std::string ModuleXml(std::string_view model, std::string_view port, std::string_view feature,
                      size_t registerSize) {
  std::string xml(kModuleXml);
  Replace(xml, "@MODEL@", model);
  Replace(xml, "@PORT@", port);
  Replace(xml, "@FEATURE@", feature);
  Replace(xml, "@LENGTH@", std::to_string(registerSize));
  return xml;
}

}  // namespace simulated_camera
