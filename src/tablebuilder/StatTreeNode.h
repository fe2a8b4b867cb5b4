// StatTreeNode.h - a statistic in a header tree: its codes, label, format family and confidence level
#pragma once

#include <memory>
#include <string>

#include "host/engine/TableEncryptionCodes.h"
#include "tablebuilder/HeaderTreeNode.h"

class Statistics;

/// A header tree node of kind kHNodeTypeStatistic. It carries what the renderer needs of one
/// requested statistic, copied from the parsed Statistics so that the trees outlive nothing.
class StatTreeNode : public HeaderTreeNode {
 public:
  using StatisticCodes = TableEncryptionCodes::StatisticCodes;
  using StatisticConf = TableEncryptionCodes::StatisticConf;

  /// The host format family a cell value of the statistic is rendered with.
  enum StatFormatCodes {
    kStatFormatCount = 0,
    kStatFormatPercent = 1,
    kStatFormatMean = 2,
    kStatFormatVariable = 3,
    kStatFormatStdDev = 4,
    kStatFormatSum = 5,
    kStatFormatDifference = 6,
    kStatFormatGeneral = 7,       // the chi-square value of a test table; never derived
    kStatFormatSignificance = 8,  // a significance of a test table; never derived
  };

  /// Copies codes, cut point, confidence level and labels of `statistics`.
  explicit StatTreeNode(const Statistics& statistics);
  ~StatTreeNode() override;

  /// A lone copy with every statistic field, the empty state, the include-empty flag, the
  /// child location and the slot; no tree links.
  HeaderTreeNode* Clone() const override;
  bool IsSameStatistic(const HeaderTreeNode& other) const override;

  /// The format family of a statistic: counts, percentages (everything unlisted), means and
  /// percentiles, values of the variable, spreads (and any standard error), sums, ranges.
  static StatFormatCodes DetermineStatFormatCode(int primary, int conf);

  StatisticCodes GetStatType() const;
  StatisticCodes GetPrimaryStatistic() const;
  StatisticConf GetConfSubType() const;
  double GetPtileValue() const;
  double GetCILevelValue() const;
  const std::string& GetCILevelString() const;
  StatFormatCodes GetStatFormatCode() const;
  const std::string& GetLabel() const;
  void SetLabel(const std::string& label);
  const std::string& GetDefaultLabel() const;
  bool IsLabelDefault() const;
  bool HasLabelParameter() const;
  bool IsHidden() const;
  void SetHidden(bool hidden);

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  StatTreeNode();

  struct StatData;
  std::unique_ptr<StatData> _statData;
};
