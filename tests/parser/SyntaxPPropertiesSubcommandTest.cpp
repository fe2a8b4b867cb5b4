// SyntaxPPropertiesSubcommandTest.cpp - properties of computed categories and how a category list takes them
// up
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/data/TARN_Format.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/MessageKeys.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"

namespace {

using Codes = TableEncryptionCodes;

constexpr int kWarning = 2;

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

TEST(SyntaxPPropertiesSubcommandTest, NamesLabelsAndSwitches) {
  struct Case {
    const char* properties;
    std::vector<std::string> names;
    std::vector<std::string> labels;
    bool hide;
  };
  const std::string label120(120, 'x');
  const Case cases[] = {
      // One set of properties for both names.
      {"&a &b LABEL='x'", {"a", "b"}, {"x"}, false},
      // A name no earlier PCOMPUTE defines is passed over.
      {"&a &nosuch HIDESOURCECATS=YES", {"a"}, {}, true},
      // Blanks only are one blank; several literals make several labels.
      {"&b LABEL='   ' 'second'", {"b"}, {" ", "second"}, false},
      {"&a HIDESOURCECATS=YES HIDESOURCECATS=MAYBE", {"a"}, {}, true},
      {"&a HIDESOURCECATS=YES HIDESOURCECATS=NO", {"a"}, {}, false},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.properties);
    KeptParse parse(std::string("QUILT /PCOMPUTE &a=EXPR([1]) /PCOMPUTE &b=EXPR([2]) /PPROPERTIES ") +
                    test.properties + " /TABLE q1.", SurveyDataset());
    ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
    const SyntaxPPropertiesSubcommand& properties = *parse.Root()->GetPPropertiesSubcommands().at(0);
    EXPECT_EQ(properties.GetCatNameVector(), test.names);
    EXPECT_EQ(properties.GetPLabel(), test.labels);
    EXPECT_EQ(properties.IsHideSourceSet(), test.hide);
  }
  // The count of 120 is taken after trailing blanks are trimmed.
  KeptParse longest("QUILT /PCOMPUTE &a=EXPR([1]) /PPROPERTIES &a LABEL='" + label120 + "   ' /TABLE q1.", SurveyDataset());
  ASSERT_TRUE(longest.Succeeded()) << longest.Error().key;
  EXPECT_EQ(longest.Root()->GetPPropertiesSubcommands()[0]->GetPLabel()[0].size(), 120u);
}

TEST(SyntaxPPropertiesSubcommandTest, LaterFormatOfTheSameStatisticWins) {
  KeptParse parse("QUILT /PCOMPUTE &a=EXPR([1]) /PPROPERTIES &a FORMAT=COUNT F4.0 COUNT F6.1 /TABLE q1.", SurveyDataset());
  ASSERT_TRUE(parse.Succeeded()) << parse.Error().key;
  const std::vector<Statistics*>& formats = parse.Root()->GetPPropertiesSubcommands()[0]->GetPFormat();
  ASSERT_EQ(formats.size(), 1u);
  ASSERT_EQ(parse.Reported().size(), 1u);
  EXPECT_EQ(parse.Reported()[0].key, msg::kDuplicateWarning);
  EXPECT_EQ(parse.Reported()[0].arguments, (std::vector<std::string>{"PPROPERTIES", "COUNT"}));
  EXPECT_EQ(parse.Reported()[0].level, kWarning);
}

// The refusals of PPROPERTIES are lines of diagnostics.txt.

}  // namespace
