// SPDX-License-Identifier: MIT
// A strict consumer of GenTL 1.5: the functions it demands, and its use of parts, chunks and
// parents.
#ifndef VEXTREL_SAMPLES_GRAB_GENTL_1_5_H
#define VEXTREL_SAMPLES_GRAB_GENTL_1_5_H

#include "gentl/gentl_newer.h"
#include "session.h"

namespace grab {

// The producer lacks a function that a strict consumer demands.
class MissingFunction : public Error {
 public:
  using Error::Error;
};

// Throws MissingFunction unless the library exports all 57 functions of GenTL 1.5. The text names
// the first that is missing, in the order in which GenTL introduced them.
void DemandGenTL15(const Library& library);

// Uses the six functions that GenTL 1.3 to 1.5 added. Prints "-" for what the producer does not
// implement and for what a frame does not have. All members throw Error for any other failure.
class GenTL15 {
 public:
  // REQUIRES: the session outlives this object.
  explicit GenTL15(const Session& session) : session_(session) {}

  // Prints whether the parents are the modules that the session has opened.
  // REQUIRES: the session's stream is open.
  void PrintParents() const;
  // Print the contents of a filled buffer.
  void PrintParts(BUFFER_HANDLE buffer, const Frame& frame) const;
  void PrintChunks(BUFFER_HANDLE buffer) const;

 private:
  const Session& session_;
  const Producer& producer_ = session_.gentl;
  const Function<decltype(::DSGetBufferChunkData)> getChunkData_{producer_, "DSGetBufferChunkData"};
  const Function<decltype(::IFGetParentTL)> getParentTL_{producer_, "IFGetParentTL"};
  const Function<decltype(::DevGetParentIF)> getParentIF_{producer_, "DevGetParentIF"};
  const Function<decltype(::DSGetParentDev)> getParentDev_{producer_, "DSGetParentDev"};
  const Function<decltype(::DSGetNumBufferParts)> getNumParts_{producer_, "DSGetNumBufferParts"};
  const Function<decltype(::DSGetBufferPartInfo)> getPartInfo_{producer_, "DSGetBufferPartInfo"};
};

}  // namespace grab

#endif  // VEXTREL_SAMPLES_GRAB_GENTL_1_5_H
