// SPDX-License-Identifier: MIT
// Mistakes with time: what takes too long, is done too often, or hangs.
#ifndef VEXTREL_SAMPLES_GRAB_TIMING_FAULTS_H
#define VEXTREL_SAMPLES_GRAB_TIMING_FAULTS_H

#include "session.h"

namespace grab {

// REQUIRES: the acquisition is running.
void AskCounters(Session& session, bool mended);
void HoldBuffers(Session& session, bool mended);
void LagBehind(Session& session, bool mended);
void StopWhileWaiting(Session& session, bool mended);
void WaitBriefly(Session& session, bool mended);
void WaitForNothing(Session& session, bool mended);

// REQUIRES: the acquisition has been stopped.
void PollEvent(Session& session, bool mended);
void PollRegister(Session& session, bool mended);
void WaitUnderLock(Session& session, bool mended);
// Doesn't return unless it's mended.
void EndWhileWaiting(Session& session, bool mended);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_TIMING_FAULTS_H
