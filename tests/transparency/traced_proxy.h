// SPDX-License-Identifier: MIT
// The proxy between a consumer and a target that both look closely.
#ifndef VEXTREL_TESTS_TRANSPARENCY_TRACED_PROXY_H
#define VEXTREL_TESTS_TRANSPARENCY_TRACED_PROXY_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/proxy.h"
#include "transparency/consumer_call.h"
#include "transparency/float_environment.h"

namespace vextrel_test {

// Where the log goes.
enum class Log : std::uint8_t {
  File,             // a file, with everything that a line may carry in front
  BelowPriority,    // a file that takes errors only
  FolderAsFile,     // a file that cannot be opened
  NoAppender,       // a configuration that log4cpp refuses
  NoConfiguration,  // the variable is not set
};

class TracedProxy : public ProxyFiles {
 protected:
  TracedProxy();
  ~TracedProxy() override;

  void SetUpLog(Log log);
  // Loads the proxy, and initialises it with the scripted target.
  void Start(Log log);

  // Makes one call, and expects that neither side sees anything of the proxy.
  void ExpectNothingChanged(const UniformFunction& function, Shape shape, const Answer& answer);

  // Makes one call that no target answers, and expects that result and nothing else.
  void ExpectNobodyThere(const UniformFunction& function, Shape shape, GC_ERROR result);

  // Opens a transport layer, an interface, a device and a data stream, announces a buffer and
  // registers an event, with the handles that ConsumerCall has: the calls find records then.
  void OpenRecords();

  // What each side sets before its half of a call.
  FloatEnvironment consumerFloats;
  FloatEnvironment targetFloats;

  [[nodiscard]] int Calls() const { return calls_; }

 private:
  struct Seen;

  // The target is bound before and after each call, except that GCInitLib finds it unbound.
  void PrepareFor(const UniformFunction& function);
  void TidyUpAfter(const UniformFunction& function);
  void ExpectMemory(const ConsumerCall& call, const ConsumerMemory::Bytes& expected,
                    std::string_view whose) const;

  HeldTarget target_;
  TargetScript& script_;
  int calls_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_TRACED_PROXY_H
