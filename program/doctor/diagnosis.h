// SPDX-License-Identifier: MIT
// What the doctor says of one thing that was looked at.
#ifndef VEXTREL_PROGRAM_DOCTOR_DIAGNOSIS_H
#define VEXTREL_PROGRAM_DOCTOR_DIAGNOSIS_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "launching/fault.h"

namespace vextrel::program {

enum class Verdict {
  Fine,
  Note,   // doesn't keep a trace from working
  Wrong,  // does
};

struct Diagnosis {
  std::string subject;
  Verdict verdict = Verdict::Fine;
  std::string text;
  std::string remedy;  // empty if there's nothing to do
};

class Diagnoses {
 public:
  void Fine(std::string subject, std::string text) {
    all_.push_back({std::move(subject), Verdict::Fine, std::move(text), ""});
  }
  void Note(std::string subject, std::string text, std::string remedy = "") {
    all_.push_back({std::move(subject), Verdict::Note, std::move(text), std::move(remedy)});
  }
  void Wrong(std::string subject, std::string text, std::string remedy) {
    all_.push_back({std::move(subject), Verdict::Wrong, std::move(text), std::move(remedy)});
  }
  void Wrong(std::string subject, Fault fault) {
    Wrong(std::move(subject), std::move(fault.text), std::move(fault.remedy));
  }
  [[nodiscard]] const std::vector<Diagnosis>& All() const noexcept { return all_; }
  // The first one that keeps a trace from working, of that subject if there's one, or null.
  [[nodiscard]] const Diagnosis* FirstWrong(std::string_view subject = {}) const noexcept {
    for (const Diagnosis& diagnosis : all_) {
      if (diagnosis.verdict == Verdict::Wrong &&
          (subject.empty() || diagnosis.subject == subject)) {
        return &diagnosis;
      }
    }
    return nullptr;
  }

 private:
  std::vector<Diagnosis> all_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_DIAGNOSIS_H
