// SyntaxConverterType.h - the kinds of parse node, as GetType reports them to code that must tell them apart
#pragma once

/// What SyntaxConverter::GetType answers. The values are shared by the parser, the table
/// builder and the renderer, so they never change; a class that does not override GetType
/// answers the value of its nearest base (kConverterPlain or kConverterComposite).
enum SyntaxConverterType : int {
  kConverterStatistics = 0,        // Statistics
  kConverterBy = 1,                // SyntaxBy
  kConverterCategories = 2,        // SyntaxCategoriesSubcommand, SyntaxCategoriesParen, SyntaxCatVarList
  kConverterCLabels = 3,           // SyntaxTableKeywordSubcommand::CLabels
  kConverterComposite = 4,         // SyntaxComposite
  kConverterPlain = 5,             // SyntaxConverter
  kConverterDummy = 6,             // SyntaxDummy
  kConverterGreaterThan = 7,       // SyntaxGreaterThan
  kConverterMRSet = 8,             // SyntaxMRVariableSet
  kConverterParen = 9,             // SyntaxParen
  kConverterPlus = 10,             // SyntaxPlus
  kConverterSLabels = 11,          // SyntaxTableKeywordSubcommand::SLabels
  kConverterCommand = 12,          // SyntaxTablesCommand
  kConverterTable = 13,            // SyntaxTableSubcommand
  kConverterTotals = 14,           // SyntaxTotals
  kConverterVariable = 15,         // SyntaxVariableName
  kConverterPCompute = 16,         // SyntaxPComputeSubcommand
  kConverterPProperties = 17,      // SyntaxPPropertiesSubcommand
  kConverterHideSmallCounts = 18,  // SyntaxHideSmallCountsSubcommand
};
