// SPDX-License-Identifier: MIT
// The lines around each finding, as `vextrel show` has them.
#ifndef VEXTREL_PROGRAM_PAGE_EXCERPTS_H
#define VEXTREL_PROGRAM_PAGE_EXCERPTS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/session_model.h"
#include "rules/findings.h"

namespace vextrel::program {

enum class RowLook : std::uint8_t { Plain, Failed, Warning, Unreadable };

// One record.
struct ExcerptRow {
  std::uint64_t number = 0;  // of all records that could be rows
  LogPlace place;
  std::string time;  // of the day; empty without one
  std::uint32_t thread = 0;
  RowLook look = RowLook::Plain;
  std::string text;
};

class Excerpts {
 public:
  static constexpr std::size_t kMostRows = 3'000;
  static constexpr std::size_t kMostText = 240;  // bytes of a row
  static constexpr std::size_t kAround = 4;      // rows on either side of a finding's own line
  static constexpr std::size_t kAroundRelated = 1;

  // Plans for the gravest findings first, as far as the rows suffice.
  explicit Excerpts(const Findings& findings);

  // To be called with each record after the model.
  void Take(const SessionModel& model, const Record& record, const Message& message,
            const Context& context);

  // True iff the latest record is among the rows.
  [[nodiscard]] bool IsNear() const noexcept { return isNear_; }
  // In the order of the log.
  [[nodiscard]] const std::vector<ExcerptRow>& Rows() const noexcept { return rows_; }

 private:
  struct Wanted {
    LogPlace place;
    std::size_t around = 0;
  };

  void Want(const LogPlace& place, std::size_t around);
  static void Fill(ExcerptRow& row, const SessionModel& model, const Record& record,
                   const Message& message, const Context& context);

  std::vector<Wanted> wanted_;
  std::size_t planned_ = 0;  // rows
  std::uint64_t number_ = 0;
  std::size_t next_ = 0;    // into wanted_
  std::size_t behind_ = 0;  // rows that still belong to the latest one
  bool isNear_ = false;
  std::array<ExcerptRow, kAround> before_;  // a ring
  std::size_t beforeCount_ = 0;
  std::size_t beforeEnd_ = 0;
  std::vector<ExcerptRow> rows_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_EXCERPTS_H
