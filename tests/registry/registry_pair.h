// SPDX-License-Identifier: MIT
// The handle registry in step with its model: the same random operations on both, and everything
// compared after each of them.
#ifndef VEXTREL_TESTS_REGISTRY_REGISTRY_PAIR_H
#define VEXTREL_TESTS_REGISTRY_REGISTRY_PAIR_H

#include <cstdint>
#include <functional>
#include <vector>

#include "model/log.h"
#include "model/registry.h"
#include "registry/line_recorder.h"
#include "registry/transport_layer_node.h"

namespace vextrel_test {

// Returns a number from 0 to count - 1.
using Dice = std::function<std::uint64_t(std::uint64_t count)>;

// Throws std::runtime_error as soon as results, lines or records differ.
class RegistryPair {
 public:
  RegistryPair(void* transportLayer, log4cpp::Category& logger, LineRecorder& recorder);

  // One operation on both.
  void Step(const Dice& dice);
  // The reports of what is left on the root.
  void Report();
  // Gives back the registry's records, which it would forget. No other call may follow.
  void DeleteRecords();

  // A record or registration, and the record that has it.
  struct Object {
    const void* object;
    const void* owner;
  };
  [[nodiscard]] std::vector<Object> Objects() const;
  // Returns how many lines of that format have been written.
  [[nodiscard]] int CountOf(const char* format) const { return log_.CountOf(format); }
  // True iff the latest step let registrations go without destroying them.
  [[nodiscard]] bool HasReleasedEvents() const { return hasReleasedEvents_; }

 private:
  void Operate(const Dice& dice);
  void Deliver(const Dice& dice, void* event, void* buffer);
  void AddDataStreamOnAnyDevice(const Dice& dice, void* added);
  void Compare();
  void CompareLines();

  log4cpp::Category& logger_;
  LineRecorder& recorder_;
  vextrel::TransportLayerNode root_;
  model::Log log_;
  model::Registry model_{log_};
  bool hasReleasedEvents_ = false;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_REGISTRY_REGISTRY_PAIR_H
