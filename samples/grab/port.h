// The remote device's port: its description and its registers.
#ifndef VEXTREL_SAMPLES_GRAB_PORT_H
#define VEXTREL_SAMPLES_GRAB_PORT_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "features.h"
#include "gentl_functions.h"

namespace grab {

// Where a description lies: "local:NAME;ADDRESS;SIZE" with hexadecimal numbers.
struct LocalUrl {
  std::string fileName;
  std::uint64_t address = 0;
  std::size_t size = 0;
};

// Throws Error when the URL is none of a file in the device.
[[nodiscard]] LocalUrl ParseLocalUrl(std::string_view url);

class Port {
 public:
  // The functions must outlive the port; the handle belongs to the device.
  Port(const GenTl& functions, PORT_HANDLE port) : gentl(functions), handle(port) {}

  // All members throw Error when the producer refuses.
  void PrintInfo() const;

  // Reads the description in one go and prints where it came from. Empty when it is not readable
  // text (a compressed file).
  [[nodiscard]] std::string ReadDescription() const;

  [[nodiscard]] std::uint64_t Read(const Register& source) const;
  void Write(const Register& target, std::uint64_t value) const;

  // Several registers in one call, or one after the other if the producer has no such call.
  [[nodiscard]] std::vector<std::uint64_t> ReadStacked(std::span<const Register> sources) const;

 private:
  const GenTl& gentl;
  PORT_HANDLE handle;
};

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_PORT_H
