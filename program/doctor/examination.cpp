// SPDX-License-Identifier: MIT
#include "doctor/examination.h"

#include <algorithm>

#include "doctor/looks.h"
#include "launching/search_path.h"

namespace vextrel::program {

bool IsSetUp(const Setup& setup) {
  if (setup.variables.Find(kTargetVariable) || setup.variables.Find(kConfigVariable)) {
    return true;
  }
  const auto producers = ProducersOf(
      ReadSearchPath(setup.variables.Find(kPathVariable).value_or(std::string()), kListSeparator));
  return std::any_of(producers.begin(), producers.end(), IsVextrel);
}

Diagnoses Examine(const Setup& setup) {
  Diagnoses diagnoses;
  Facts facts;
  facts.isSetUp = IsSetUp(setup);
  LookAtProgram(setup, diagnoses);
  LookAtVariables(setup, facts, diagnoses);
  LookAtStoredVariables(setup, facts, diagnoses);
  LookAtModule(facts, diagnoses);
  LookAtConfiguration(setup, facts, diagnoses);
  LookAtTarget(setup, facts, diagnoses);
  LookAtModuleOfTrace(facts, diagnoses);
  LookForASecondWayToTheTarget(facts, diagnoses);
  LookAtLibraries(setup, facts, diagnoses);
  LookAtFunctions(facts, diagnoses);
  LookAtLoading(setup, facts, diagnoses);
  LookAtLog(setup, facts, diagnoses);
  LookAtApplication(setup, facts, diagnoses);
  return diagnoses;
}

}  // namespace vextrel::program
