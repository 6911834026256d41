// SPDX-License-Identifier: MIT
// Mistakes with the library, the modules, their lists, and questions to them.
#ifndef VEXTREL_SAMPLES_GRAB_MODULE_FAULTS_H
#define VEXTREL_SAMPLES_GRAB_MODULE_FAULTS_H

#include "session.h"

namespace grab {

// REQUIRES: the acquisition is running.
void CloseWhileRunning(Session& session, bool mended);

// REQUIRES: the acquisition has been stopped.
void AskBehindTheEnd(Session& session, bool mended);
void AskOnAnotherThread(Session& session, bool mended);
void AskOptional(Session& session, bool mended);
void AskTooSmall(Session& session, bool mended);
void CloseNothing(Session& session, bool mended);
void CloseTwice(Session& session, bool mended);
void CountUnlisted(Session& session, bool mended);
void InitTwice(Session& session, bool mended);
void LeaveOpen(Session& session, bool mended);
void LeaveSizeUnset(Session& session, bool mended);
void OpenTwice(Session& session, bool mended);
void OpenUnlisted(Session& session, bool mended);
void UpdateBriefly(Session& session, bool mended);
void UpdateWhileReading(Session& session, bool mended);
void UseClosedLibrary(Session& session, bool mended);
void UseUnknownHandle(Session& session, bool mended);
void UseWrongKind(Session& session, bool mended);

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_MODULE_FAULTS_H
