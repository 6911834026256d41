// SPDX-License-Identifier: MIT
#include "library.h"

#include <utility>

namespace simulated_camera {
namespace {

std::mutex currentMutex;
// A plain pointer, because no destructor may touch the library when the module is unloaded.
std::shared_ptr<Library>* current = nullptr;

}  // namespace

void Library::Init() {
  const std::scoped_lock lock(currentMutex);
  if (current != nullptr) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the library is initialised already");
  }
  current = new std::shared_ptr<Library>(std::make_shared<Library>(ReadSettings()));
}

void Library::Close() {
  std::unique_ptr<std::shared_ptr<Library>> closing;
  {
    const std::scoped_lock lock(currentMutex);
    closing.reset(std::exchange(current, nullptr));
  }
  if (closing == nullptr) {
    throw Failure(GC_ERR_NOT_INITIALIZED, "the library is not initialised");
  }
  Library& library = **closing;
  const auto lock = library.LockTree();
  library.closed_ = true;
  if (const auto transportLayer = library.transportLayer_.lock()) {
    transportLayer->Close(library.handles_);
  }
}

std::shared_ptr<Library> Library::Current() {
  const std::scoped_lock lock(currentMutex);
  if (current == nullptr) {
    throw Failure(GC_ERR_NOT_INITIALIZED, "the library is not initialised");
  }
  return *current;
}

void* Library::OpenTransportLayer() {
  if (closed_) {
    throw Failure(GC_ERR_NOT_INITIALIZED, "the library is closing");
  }
  if (const auto former = transportLayer_.lock(); former != nullptr && !former->Closed()) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the transport layer is open already");
  }
  const auto transportLayer = std::make_shared<TransportLayer>(settings_);
  transportLayer_ = transportLayer;
  return handles_.Add(transportLayer);
}

}  // namespace simulated_camera
