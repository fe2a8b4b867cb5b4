// StatisticList.h - the statistics and measurement mark read in a bracket or a PPROPERTIES FORMAT
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "host/engine/TableEncryptionCodes.h"

class Statistics;
class SyntaxComposite;

/// A run of statistic keywords, or the measurement mark S or C instead, as a statistics
/// bracket and a PPROPERTIES FORMAT both read them: the same refusals (statistics mixed with
/// a mark, a percentile left without its number) and the same duplicate rule in one place.
/// The statistics are children of the owner; the list only points at them.
class StatisticList {
 public:
  /// `owner` takes the statistics as children and names the place in messages; not owned.
  explicit StatisticList(SyntaxComposite* owner);

  /// A statistic keyword: a new Statistics, added to the owner and the list. nullptr when
  /// `text` names no statistic. Refused after S or C, and while a percentile owes its number.
  Statistics* ReadStatistic(const std::string& text);
  /// S or C: true when `text` is one of them. Refused after a statistic; a second one warns.
  bool ReadMeasurement(const std::string& text);
  /// Anything but a percentile's number has come: a percentile still owing it is refused
  /// (InvalidPTILE with `text`).
  void ClosePercentile(const std::string& text);
  /// Drops the earlier of two equal statistics, with a warning: the last thing written for a
  /// statistic is what counts.
  void DropEarlierRepeats();
  /// Starts again (a repeated FORMAT): the owner keeps the earlier nodes, which no longer count.
  void Clear();

  const std::vector<Statistics*>& GetStatistics() const { return _statistics; }
  bool HasMeasurement() const { return _measurementSeen; }
  TableEncryptionCodes::VariableCodes GetMeasurement() const { return _measurement; }
  /// The statistics' names as written, joined with ",".
  void DumpNames(std::ostream& out) const;
  /// "S" or "C".
  const char* MeasurementName() const;

 private:
  SyntaxComposite* _owner;
  std::vector<Statistics*> _statistics;      // in order; children of the owner
  Statistics* _pendingPercentile = nullptr;  // a PTILE or UPTILE still owing its number
  bool _statisticsSeen = false;              // a statistic was written
  bool _measurementSeen = false;             // S or C was written
  TableEncryptionCodes::VariableCodes _measurement = TableEncryptionCodes::kVariableCategorical;
};
