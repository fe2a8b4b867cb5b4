// SyntaxPPropertiesSubcommand.h - PPROPERTIES: label, formats and source hiding of computed categories
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "parser/NamedConverter.h"
#include "parser/StatisticList.h"
#include "parser/SyntaxComposite.h"

class Statistics;
class SyntaxPComputeSubcommand;

/// `PPROPERTIES &a &b LABEL='..' FORMAT=COUNT F5.0 HIDESOURCECATS=YES`. The properties do
/// nothing by themselves: a computed category reads them when an explicit category list
/// refers to it, and the renderer follows the link from its PCOMPUTE.
class SyntaxPPropertiesSubcommand : public NamedConverter<SyntaxComposite> {
 public:
  SyntaxPPropertiesSubcommand();
  ~SyntaxPPropertiesSubcommand() override;

  /// LABEL, FORMAT or HIDESOURCECATS; other words are passed over.
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// A label text, in whatever state (a statistic that is current takes it as its own).
  SyntaxConverter* Literal(const std::string& text) override;
  /// The names are told apart by the state, so "&" itself needs nothing.
  SyntaxConverter* Ampersand(const std::string& text) override;
  /// A category name, a FORMAT statistic or measurement, or the HIDESOURCECATS answer.
  SyntaxConverter* String(const std::string& text) override;
  /// A percentile left without its number raises InvalidPTILE.
  void ValidateAndCommit(const std::string& text) override;

  /// The names of the computed categories that a PCOMPUTE before this one defined.
  const std::vector<std::string>& GetCatNameVector() const;
  /// The label texts in order; a label may have several.
  const std::vector<std::string>& GetPLabel() const;
  bool IsLabelSet() const;
  bool IsFormatSet() const;
  /// The FORMAT statistics, a later repeat replacing an earlier one; children of this node.
  const std::vector<Statistics*>& GetPFormat() const;
  /// HIDESOURCECATS=YES was the last answer.
  bool IsHideSourceSet() const;
  const std::vector<SyntaxPComputeSubcommand*>& GetPComputePtrs() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  /// FORMAT = statistic ... | S | C
  SyntaxConverter* FormatString(const std::string& text);

  struct PPROPERTIESData;
  std::unique_ptr<PPROPERTIESData> _ppData;
  StatisticList _formats;  // the FORMAT statistics or S/C mark; a repeated FORMAT starts again
  std::vector<SyntaxPComputeSubcommand*> _pComputePtrs;  // the PCOMPUTE of each name; not owned
};
