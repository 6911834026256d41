#ifndef VEXTREL_TESTS_SAMPLES_PRODUCER_H
#define VEXTREL_TESTS_SAMPLES_PRODUCER_H

#include "gentl/gentl.h"
#include "module.h"

// The functions of a loaded GenTL producer, null where it lacks one.
struct Producer {
  explicit Producer(const std::string& path) : module(path) {}

  Module module;

  decltype(&::GCGetInfo) GCGetInfo = module["GCGetInfo"];
  decltype(&::GCGetLastError) GCGetLastError = module["GCGetLastError"];
  decltype(&::GCInitLib) GCInitLib = module["GCInitLib"];
  decltype(&::GCCloseLib) GCCloseLib = module["GCCloseLib"];
  decltype(&::TLOpen) TLOpen = module["TLOpen"];
  decltype(&::TLClose) TLClose = module["TLClose"];
  decltype(&::TLGetInfo) TLGetInfo = module["TLGetInfo"];
  decltype(&::TLGetNumInterfaces) TLGetNumInterfaces = module["TLGetNumInterfaces"];
  decltype(&::TLGetInterfaceID) TLGetInterfaceID = module["TLGetInterfaceID"];
  decltype(&::TLGetInterfaceInfo) TLGetInterfaceInfo = module["TLGetInterfaceInfo"];
  decltype(&::TLOpenInterface) TLOpenInterface = module["TLOpenInterface"];
  decltype(&::TLUpdateInterfaceList) TLUpdateInterfaceList = module["TLUpdateInterfaceList"];
  decltype(&::IFClose) IFClose = module["IFClose"];
  decltype(&::IFGetInfo) IFGetInfo = module["IFGetInfo"];
  decltype(&::IFGetNumDevices) IFGetNumDevices = module["IFGetNumDevices"];
  decltype(&::IFGetDeviceID) IFGetDeviceID = module["IFGetDeviceID"];
  decltype(&::IFUpdateDeviceList) IFUpdateDeviceList = module["IFUpdateDeviceList"];
  decltype(&::IFGetDeviceInfo) IFGetDeviceInfo = module["IFGetDeviceInfo"];
  decltype(&::IFOpenDevice) IFOpenDevice = module["IFOpenDevice"];
  decltype(&::DevGetPort) DevGetPort = module["DevGetPort"];
  decltype(&::DevGetNumDataStreams) DevGetNumDataStreams = module["DevGetNumDataStreams"];
  decltype(&::DevGetDataStreamID) DevGetDataStreamID = module["DevGetDataStreamID"];
  decltype(&::DevOpenDataStream) DevOpenDataStream = module["DevOpenDataStream"];
  decltype(&::DevGetInfo) DevGetInfo = module["DevGetInfo"];
  decltype(&::DevClose) DevClose = module["DevClose"];
  decltype(&::DSAnnounceBuffer) DSAnnounceBuffer = module["DSAnnounceBuffer"];
  decltype(&::DSAllocAndAnnounceBuffer) DSAllocAndAnnounceBuffer =
      module["DSAllocAndAnnounceBuffer"];
  decltype(&::DSFlushQueue) DSFlushQueue = module["DSFlushQueue"];
  decltype(&::DSStartAcquisition) DSStartAcquisition = module["DSStartAcquisition"];
  decltype(&::DSStopAcquisition) DSStopAcquisition = module["DSStopAcquisition"];
  decltype(&::DSGetInfo) DSGetInfo = module["DSGetInfo"];
  decltype(&::DSGetBufferID) DSGetBufferID = module["DSGetBufferID"];
  decltype(&::DSClose) DSClose = module["DSClose"];
  decltype(&::DSRevokeBuffer) DSRevokeBuffer = module["DSRevokeBuffer"];
  decltype(&::DSQueueBuffer) DSQueueBuffer = module["DSQueueBuffer"];
  decltype(&::DSGetBufferInfo) DSGetBufferInfo = module["DSGetBufferInfo"];
  decltype(&::GCReadPort) GCReadPort = module["GCReadPort"];
  decltype(&::GCWritePort) GCWritePort = module["GCWritePort"];
  decltype(&::GCGetPortURL) GCGetPortURL = module["GCGetPortURL"];
  decltype(&::GCGetNumPortURLs) GCGetNumPortURLs = module["GCGetNumPortURLs"];
  decltype(&::GCGetPortInfo) GCGetPortInfo = module["GCGetPortInfo"];
  decltype(&::GCGetPortURLInfo) GCGetPortURLInfo = module["GCGetPortURLInfo"];
  decltype(&::GCReadPortStacked) GCReadPortStacked = module["GCReadPortStacked"];
  decltype(&::GCWritePortStacked) GCWritePortStacked = module["GCWritePortStacked"];
  decltype(&::GCRegisterEvent) GCRegisterEvent = module["GCRegisterEvent"];
  decltype(&::GCUnregisterEvent) GCUnregisterEvent = module["GCUnregisterEvent"];
  decltype(&::EventGetData) EventGetData = module["EventGetData"];
  decltype(&::EventGetDataInfo) EventGetDataInfo = module["EventGetDataInfo"];
  decltype(&::EventGetInfo) EventGetInfo = module["EventGetInfo"];
  decltype(&::EventFlush) EventFlush = module["EventFlush"];
  decltype(&::EventKill) EventKill = module["EventKill"];
};

#endif  // VEXTREL_TESTS_SAMPLES_PRODUCER_H
