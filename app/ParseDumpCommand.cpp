// ParseDumpCommand.cpp - parses one command without running it and writes what it asks for (quilt --dump-parse)
#include "ParseDumpCommand.h"

#include <cstdint>
#include <ostream>

#include "host/data/AdjustMeasurementLevels.h"
#include "host/data/HostRecords.h"
#include "host/data/ProcedureDataSource.h"
#include "host/output/BpComposite.h"
#include "host/output/BpError.h"
#include "host/output/BpString.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/ParseDump.h"
#include "parser/SyntaxReader.h"

void ParseDumpCommand::Run(const std::string& text, int firstLine, const std::string& origin, std::ostream& out) {
  out << "== command at " << origin << ":" << firstLine << "\n";
  LexedCommand lexed;
  try {
    lexed = Lexer::Lex(text, firstLine);
    lexed.origin = origin;
  } catch (const LexicalError& error) {
    const std::string where = origin + ":" + std::to_string(error.GetLine()) + ":" + std::to_string(error.GetColumn());
    BpError(BpString(where + ": " + error.GetProblem(), /*translate=*/false), kBpShowAlways, kBpLevelFatal);
    out << "not parsed: the command cannot be read\n\n";
    return;
  }
  // WEIGHT changes the host's weight word during a parse, as in a run; a dump leaves the
  // host as it found it for the commands after it.
  const std::int64_t savedWeightWord = ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset);
  const std::int64_t savedSecondWord = ReadHostWord(CmnGlb, kCmnGlbSecondWordOffset);
  {
    TARN_TokenSequence tokens(&lexed, /*flag=*/true);
    ProcedureDataSource dataSource;
    AdjustMeasurementLevels(dataSource);
    SyntaxReader reader;
    reader.SetDataSource(&dataSource);
    try {
      reader.ReadTokens(&tokens);
      ParseDump::Write(out, reader.GetTable());
    } catch (const BpComposite& composite) {
      BpErrorAt(composite, kBpShowAlways, kBpLevelFatal, tokens.GetLocation());
      out << "not parsed: see the messages\n";
    }
  }
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, savedWeightWord);
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, savedSecondWord);
  out << "\n";
}
