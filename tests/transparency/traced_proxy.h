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

  // Makes one call, and compares the two sides of it: see the checks in the implementation.
  void ExpectNothingChanged(const UniformFunction& function, Shape shape, const Answer& answer);

  // Makes one call that nobody answers: the consumer gets that result, and nothing else changes.
  void ExpectNobodyThere(const UniformFunction& function, Shape shape, GC_ERROR result);

  // Opens a transport layer, an interface, a device and a data stream, announces a buffer and
  // registers an event, with the handles that ConsumerCall has: the calls find records then.
  void OpenRecords();

  // What the two sides leave in a call.
  FloatEnvironment consumerFloats;
  FloatEnvironment targetFloats;

  [[nodiscard]] int calls() const { return calls_; }

 private:
  struct Seen;

  // Before a call and behind it the target is bound, but for GCInitLib, which finds it unbound.
  void PrepareFor(const UniformFunction& function);
  void TidyUpAfter(const UniformFunction& function);
  void ExpectMemory(const ConsumerCall& call, const ConsumerMemory::Bytes& expected,
                    std::string_view whose) const;

  Module target_;
  TargetScript& script_;
  int calls_ = 0;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_TRACED_PROXY_H
