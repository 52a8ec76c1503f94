// Reports of progress in percent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace tarnvale {

/// Reports a percent only when it differs from the last one, which is 0 at first.
class PercentReport {
 public:
  using Handler = std::function<void(std::int16_t)>;
  explicit PercentReport(Handler handler) : handler_(std::move(handler)) {}

  /// Rounds to the nearest whole number, halves to the even one, and reports it.
  void Report(double percent);
  std::int16_t Last() const { return last_; }

 private:
  Handler handler_;
  std::int16_t last_ = 0;
};

/// One loop over `total` indexes: the part of the whole that it stands for, and
/// how often it looks. At index i it reports i / total * scale, plus the two
/// offsets one after the other.
struct ReportPhase {
  double total = 1;
  std::size_t step = 1;
  double scale = 0;
  double offset = 0;
  double second_offset = 0;

  double PercentAt(std::size_t index) const {
    return static_cast<double>(index) / total * scale + offset + second_offset;
  }
};

/// Walks through the reports of one phase without visiting every index.
class PhaseReports {
 public:
  PhaseReports(PercentReport& report, const ReportPhase& phase) : report_(report), phase_(phase) {}

  /// The first multiple of the step in [`from`, `end`) at which the percent
  /// differs from the last one reported; `end` when there is none.
  std::size_t NextDue(std::size_t from, std::size_t end) const;
  /// Reports at an index.
  void ReportAt(std::size_t index) { report_.Report(phase_.PercentAt(index)); }
  /// Makes all reports in [`from`, `end`).
  void ReportAll(std::size_t from, std::size_t end);

 private:
  PercentReport& report_;
  ReportPhase phase_;
};

/// Runs `work(begin, end)` over [0, `end`) in as few pieces as the reports
/// allow, each report coming before the index that it is due at.
template <class Work>
void RunWithReports(PhaseReports& reports, std::size_t end, Work&& work) {
  std::size_t at = 0;
  while (at < end) {
    const std::size_t due = reports.NextDue(at, end);
    if (due > at) work(at, due);
    if (due < end) reports.ReportAt(due);
    at = due;
  }
}

}  // namespace tarnvale
