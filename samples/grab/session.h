// What the program does with one producer. The functions must be those of an initialised producer;
// output goes to standard output. Everything throws Error.
#ifndef VEXTREL_SAMPLES_GRAB_SESSION_H
#define VEXTREL_SAMPLES_GRAB_SESSION_H

#include "gentl_functions.h"
#include "options.h"

namespace grab {

// Prints the interfaces and devices.
void ListDevices(const GenTl& gentl);

// Opens the first device that lets it, grabs, and closes everything, badly on request.
void GrabFrames(const GenTl& gentl, const Options& options);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_SESSION_H
