// LexerFuzzer.cpp - libFuzzer harness: any bytes as a command file, through the splitter and the lexer
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/tokens/CommandSplitter.h"
#include "host/tokens/CommandText.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"

// A LexicalError is the expected answer to bad text; anything else escaping (an assertion,
// a standard exception) ends the run as a crash, which is the finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    for (const CommandText& piece : CommandSplitter::Split(text, /*requireFinalPeriod=*/false)) {
      try {
        (void)Lexer::Lex(piece.text, piece.firstLine);
      } catch (const LexicalError&) {
      }
    }
  } catch (const LexicalError&) {
  }
  return 0;
}
