// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <cstdio>

#include "support/debug_output.h"

namespace vextrel_test {
namespace {

struct RedirectedError {
  std::FILE* file = std::tmpfile();
  int standardError = ::dup(STDERR_FILENO);
};

}  // namespace

DebugOutput::DebugOutput() {
  auto* redirection = new RedirectedError;
  ::dup2(::fileno(redirection->file), STDERR_FILENO);
  state_ = redirection;
}

DebugOutput::~DebugOutput() {
  auto* redirection = static_cast<RedirectedError*>(state_);
  ::dup2(redirection->standardError, STDERR_FILENO);
  ::close(redirection->standardError);
  std::fclose(redirection->file);
  delete redirection;
}

std::string DebugOutput::Text() const {
  const int file = ::fileno(static_cast<const RedirectedError*>(state_)->file);
  std::string text(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)), '\0');
  const auto size = ::pread(file, text.data(), text.size(), 0);
  text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return text;
}

}  // namespace vextrel_test
