// CommandFuzzer.cpp - libFuzzer harness: any bytes as commands, run on a small survey through every writer
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "host/Utf8Text.h"
#include "host/data/ActiveDataSet.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"
#include "host/data/SplitGroupListener.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/CommandText.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"
#include "quilt.h"
#include "writers/OutputWriter.h"

namespace {

// The first 150 cases of the sample survey, as plain data, weighted and split into waves
// delivered separately, and split into waves laid out together.
std::vector<std::shared_ptr<Dataset>> g_dataSets;

std::string ReadFile(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

void LoadDataSets() {
  const std::string survey = ReadFile(std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv");
  const std::string dictionary = ReadFile(std::string(QUILT_SOURCE_DIR) + "/examples/survey.dict.json");
  std::size_t end = 0;
  for (int line = 0; line < 151 && end != std::string::npos; ++line) end = survey.find('\n', end + 1);
  const std::string csv = survey.substr(0, end == std::string::npos ? survey.size() : end + 1);
  DatasetLoadOptions plain;
  DatasetLoadOptions weightedSplit;
  weightedSplit.weightVariable = "wt";
  weightedSplit.splitVariables = {"wave"};
  weightedSplit.splitLayout = "separate";
  DatasetLoadOptions layered;
  layered.splitVariables = {"wave"};
  layered.splitLayout = "layered";
  for (const DatasetLoadOptions& options : {plain, weightedSplit, layered}) {
    g_dataSets.push_back(DatasetLoader::LoadText(csv, dictionary, options, "survey.csv", "survey.dict.json"));
  }
}

// The findings this harness looks for beyond crashes: output that is not valid UTF-8, and
// JSON output that does not parse.
void CheckOutput(const OutputDocument& document) {
  for (const char* format : {"text", "json", "html"}) {
    std::ostringstream out;
    OutputWriter::Create(format, WriterOptions())->Write(document, out);
    const std::string text = out.str();
    if (Utf8Text::FindInvalidByte(text) != Utf8Text::kAllValid) __builtin_trap();
    if (format == std::string("json") && !nlohmann::json::accept(text)) __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  LoadDataSets();
  return 0;
}

// The first byte picks the data set (bits 0-1) and the front end (bit 2); the rest is a
// command file, run command by command as the program runs it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::shared_ptr<Dataset>& dataset = g_dataSets[data[0] % g_dataSets.size()];
  const bool controlPackage = (data[0] & 4) != 0;
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  std::vector<CommandText> commands;
  try {
    commands = CommandSplitter::Split(text, /*requireFinalPeriod=*/false);
  } catch (const LexicalError&) {
    return 0;
  }
  ActiveDataSet::Install(dataset);
  SetUpHostRecords(*dataset, controlPackage);
  OutputDocument document;
  OutputDocument::Install(&document);
  SplitGroupListener::Install([](const SplitGroupPairs& pairs) { OutputDocument::Current().SetSplitPairs(pairs); });
  for (const CommandText& command : commands) {
    LexedCommand lexed;
    try {
      lexed = Lexer::Lex(command.text, command.firstLine);
    } catch (const LexicalError&) {
      continue;
    }
    lexed.origin = "fuzz";
    quilt_(&lexed);
  }
  SplitGroupListener::Install(nullptr);
  OutputDocument::Install(nullptr);
  CheckOutput(document);
  ActiveDataSet::Clear();
  return 0;
}
