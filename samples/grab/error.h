// What ends the program: main writes the text to standard error.
#ifndef VEXTREL_SAMPLES_GRAB_ERROR_H
#define VEXTREL_SAMPLES_GRAB_ERROR_H

#include <stdexcept>

namespace grab {

// The text is one sentence for the user, without a line end.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The command line cannot be understood.
class UsageError : public Error {
 public:
  using Error::Error;
};

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_ERROR_H
