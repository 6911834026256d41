// SPDX-License-Identifier: MIT
// The single looks of an examination.
#ifndef VEXTREL_PROGRAM_DOCTOR_LOOKS_H
#define VEXTREL_PROGRAM_DOCTOR_LOOKS_H

#include <filesystem>
#include <vector>

#include "doctor/diagnosis.h"
#include "doctor/examination.h"
#include "images/image.h"
#include "launching/search_path.h"

namespace vextrel::program {

// What several looks need to know, found once.
struct Facts {
  bool isSetUp = false;
  std::vector<PathEntry> entries;             // of GENICAM_GENTL64_PATH
  std::vector<std::filesystem::path> ours;    // our modules among what they show
  std::vector<std::filesystem::path> others;  // and the rest
  std::filesystem::path target;               // empty if unknown
  Image targetImage;
  bool targetIsSound = false;               // a 64-bit producer of this system
  std::vector<std::filesystem::path> logs;  // that the configuration names
};

void LookAtProgram(const Setup& setup, Diagnoses& diagnoses);
// Fills in `entries`, `ours` and `others`.
void LookAtVariables(const Setup& setup, Facts& facts, Diagnoses& diagnoses);
void LookAtStoredVariables(const Setup& setup, const Facts& facts, Diagnoses& diagnoses);
// The module of a set-up by hand.
void LookAtModule(const Facts& facts, Diagnoses& diagnoses);
// The one that 'vextrel trace' would choose, which depends on the target.
void LookAtModuleOfTrace(const Facts& facts, Diagnoses& diagnoses);
// Fills in `logs`.
void LookAtConfiguration(const Setup& setup, Facts& facts, Diagnoses& diagnoses);
// Fills in `target`, `targetImage` and `targetIsSound`.
void LookAtTarget(const Setup& setup, Facts& facts, Diagnoses& diagnoses);
void LookForASecondWayToTheTarget(const Facts& facts, Diagnoses& diagnoses);
void LookAtLibraries(const Setup& setup, const Facts& facts, Diagnoses& diagnoses);
void LookAtFunctions(const Facts& facts, Diagnoses& diagnoses);
// Loads the target, in a process of its own.
void LookAtLoading(const Setup& setup, const Facts& facts, Diagnoses& diagnoses);
void LookAtLog(const Setup& setup, const Facts& facts, Diagnoses& diagnoses);
void LookAtApplication(const Setup& setup, const Facts& facts, Diagnoses& diagnoses);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_LOOKS_H
