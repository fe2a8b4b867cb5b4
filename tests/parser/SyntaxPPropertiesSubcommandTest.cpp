// SyntaxPPropertiesSubcommandTest.cpp - properties of computed categories and how a category list takes them
// up
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/data/TARN_Format.h"
#include "host/engine/ParsedCategory.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"

namespace {

using Codes = TableEncryptionCodes;

const ParsedCategory* ComputedOf(const KeptParse& parse, const std::string& variable) {
  for (const ParsedCategory* category : parse.Variable(variable)->GetParsedCategories()) {
    if (category->GetPCType() == ParsedCategory::kParsedComputed) {
      return category;
    }
  }
  return nullptr;
}

TEST(SyntaxPPropertiesSubcommandTest, ComputedCategoryTakesLabelFormatsAndHiding) {
  KeptParse parse(
      "QUILT /PCOMPUTE &top=EXPR([4]+[5]) /PPROPERTIES &top LABEL='Top two' FORMAT=COUNT F5.0 COLPCT.COUNT "
      "HIDESOURCECATS=YES /TABLE q1 BY gender [COUNT COLPCT.COUNT] /CATEGORIES VARIABLES=q1 [1 2 3 4 5 "
      "&top].", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const ParsedCategory* top = ComputedOf(parse, "q1");
  ASSERT_NE(top, nullptr);
  EXPECT_EQ(top->GetCategories(), std::vector<std::string>{"Top two"});
  EXPECT_TRUE(top->GetHideSource());
  EXPECT_EQ(top->GetStatCodes(), (std::vector<int>{Codes::kStatCount, Codes::kStatColPctCount}));
  ASSERT_EQ(top->GetFormats().size(), 2u);
  // COUNT has its own format, packed as TARN_Format does; COLPCT.COUNT has none (0).
  EXPECT_EQ(TARN_Format(static_cast<long>(top->GetFormats()[0])).Type(), kFormatF);
  EXPECT_EQ(TARN_Format(static_cast<long>(top->GetFormats()[0])).Decimals(), 0);
  EXPECT_EQ(top->GetFormats()[1], 0);
  // The PCOMPUTE knows who describes it.
  const std::vector<SyntaxPComputeSubcommand*> pComputes = parse.Root()->GetPComputeSubcommands();
  ASSERT_EQ(pComputes[0]->GetPPropertiesSyntax().size(), 1u);
  EXPECT_EQ(parse.Root()->GetPPropertiesSubcommands()[0]->GetPComputePtrs()[0], pComputes[0]);
}

// The refusals of PPROPERTIES are lines of diagnostics.txt.

}  // namespace
