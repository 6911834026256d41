// SPDX-License-Identifier: MIT
// Mistakes with a stream, its buffers and its events.
#ifndef VEXTREL_SAMPLES_GRAB_STREAM_FAULTS_H
#define VEXTREL_SAMPLES_GRAB_STREAM_FAULTS_H

#include "session.h"

namespace grab {

// REQUIRES: the acquisition is running.
void AskForOneImage(Session& session, bool mended);
void FlushWhileRunning(Session& session, bool mended);
void KeepAllBuffers(Session& session, bool mended);
void KillWithoutWait(Session& session, bool mended);
void ReadQueuedBuffer(Session& session, bool mended);
void StartTwice(Session& session, bool mended);
void WaitForever(Session& session, bool mended);

// REQUIRES: the acquisition has been stopped.
void AnnounceEverMore(Session& session, bool mended);
void LeaveBuffers(Session& session, bool mended);
void MixBuffers(Session& session, bool mended);
void QueueLate(Session& session, bool mended);
void QueueNothing(Session& session, bool mended);
void QueueRevoked(Session& session, bool mended);
void QueueTwice(Session& session, bool mended);
void RegisterTwice(Session& session, bool mended);
void RevokeQueued(Session& session, bool mended);
void ShareMemory(Session& session, bool mended);
void StartWithSmallBuffer(Session& session, bool mended);
void StartWrongly(Session& session, bool mended);
void StopAtOnce(Session& session, bool mended);
void StopTwice(Session& session, bool mended);
void WaitUnregistered(Session& session, bool mended);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_STREAM_FAULTS_H
