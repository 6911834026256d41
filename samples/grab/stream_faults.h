// SPDX-License-Identifier: MIT
// Mistakes with a stream, its buffers and its events.
#ifndef VEXTREL_SAMPLES_GRAB_STREAM_FAULTS_H
#define VEXTREL_SAMPLES_GRAB_STREAM_FAULTS_H

#include "session.h"

namespace grab {

// REQUIRES: the acquisition is running.
void KeepAllBuffers(Session& session);
void ReadQueuedBuffer(Session& session);
void StartTwice(Session& session);
void KillWithoutWait(Session& session);
void FlushWhileRunning(Session& session);
void WaitForNothing(Session& session);
void WaitBriefly(Session& session);

// REQUIRES: the acquisition has been stopped.
void QueueTwice(Session& session);
void StopTwice(Session& session);
void RevokeQueued(Session& session);
void RegisterTwice(Session& session);
void QueueNothing(Session& session);
void QueueLate(Session& session);
void AnnounceEverMore(Session& session);
void StartWithSmallBuffer(Session& session);
void StartWrongly(Session& session);
void MixBuffers(Session& session);
void ShareMemory(Session& session);
void WaitUnderLock(Session& session);
// Doesn't return.
void EndWhileWaiting(Session& session);
void LeaveBuffers(Session& session);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_STREAM_FAULTS_H
