// SPDX-License-Identifier: MIT
// Mistakes with a camera, and with more than one of them.
#ifndef VEXTREL_SAMPLES_GRAB_DEVICE_FAULTS_H
#define VEXTREL_SAMPLES_GRAB_DEVICE_FAULTS_H

#include "session.h"

namespace grab {

// REQUIRES: the acquisition is running.
void AskUnplugged(Session& session, bool mended);
void IgnoreErrors(Session& session, bool mended);

// REQUIRES: the acquisition has been stopped.
void QueueForeign(Session& session, bool mended);
void ReadClosed(Session& session, bool mended);
void UseSecondInterface(Session& session, bool mended);
void WriteReadOnly(Session& session, bool mended);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_DEVICE_FAULTS_H
