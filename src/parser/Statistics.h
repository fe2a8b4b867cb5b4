// Statistics.h - one statistic requested in square brackets, with its label, percentile and display format
#pragma once

#include <memory>
#include <string>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxComposite.h"

class TARN_Format;

/// One statistic of a bracket or of PPROPERTIES FORMAT: `[MEAN 'Average' F5.2]`,
/// `[PTILE 25 COMMA10.1]`. It stays current while its label, cut point and format words
/// arrive, in any order, and hands the first word it cannot use back to its parent (the
/// next statistic). A percentile must get its number before anything else.
class Statistics : public SyntaxComposite {
 public:
  using StatisticCodes = TableEncryptionCodes::StatisticCodes;
  using StatisticConf = TableEncryptionCodes::StatisticConf;
  using StatisticsGroup = TableEncryptionCodes::StatisticsGroup;
  using DisplayFormat = PresentationCodes::DisplayFormat;

  /// `keywordAsTyped` is the statistic word as the user wrote it; `defaultLabel` the label of
  /// the vocabulary, which for confidence limits holds "^1" for the level.
  Statistics(StatisticCodes code, const std::string& keywordAsTyped, const std::string& defaultLabel);
  ~Statistics() override;

  int GetType() const override;
  /// A format word is kept; any other word goes to the parent.
  SyntaxConverter* String(const std::string& text) override;
  /// The user's label; ")CILEVEL" in a confidence-limit label becomes the level's placeholder.
  SyntaxConverter* Literal(const std::string& text) override;
  /// The cut point of PTILE and UPTILE, strictly between 0 and 100.
  SyntaxConverter* Number(double value, const std::string& text) override;
  /// A percentile without its number raises InvalidPTILE.
  void ValidateAndCommit(const std::string& text) override;

  virtual StatisticCodes GetStatType() const;
  virtual StatisticCodes GetPrimaryStatistic() const;
  virtual StatisticConf GetConfSubType() const;
  /// Same code, and for percentiles the same cut point.
  virtual bool operator==(const Statistics& other) const;

  bool HasCutPoint() const;
  double GetCutPoint() const;
  /// The keyword as typed; for a percentile followed by a blank and the cut point as typed.
  std::string GetNameToken() const;
  std::string GetLabel() const;
  std::string GetDefaultLabel() const;
  bool HasDefaultLabel() const;
  /// True when the label holds "^1", to be filled with the confidence level at display time.
  bool HasLabelParameter() const;
  /// The format the user gave (owned by this statistic), or null.
  const TARN_Format* GetFormat() const;
  bool HasFormat() const;
  DisplayFormat GetStatDisplayFormat() const;
  StatisticsGroup GetStatGroup() const;
  void SetStatGroup(StatisticsGroup group);
  void SetCILevel(double value, const std::string& text);
  double GetCILevelValue() const;
  std::string GetCILevelString() const;
  /// Everything written for this statistic so far, for messages.
  std::string GetStatText() const;

  /// Tries every format keyword in order on `text`. True when one fits; then `type`,
  /// `width` (always 40) and `decimals` describe it. Raises the format errors of a word
  /// that starts like a format but is malformed.
  bool SetFormat(const std::string& text, int& type, int& width, int& decimals);
  /// Whether `text` is `keyword` followed by a width and optional decimals.
  bool IsItThisFormat(const std::string& text, const std::string& keyword, int& width, int& decimals,
                      bool decimalsAllowed);

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  bool IsPercentile() const;

  struct Data;
  std::unique_ptr<Data> _data;
};
