// QuiltProgram.cpp - reads options, loads the active data set, runs each command, writes output
#include "QuiltProgram.h"

#include <CLI/CLI.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <sstream>
#include <thread>

#include "host/data/ActiveDataSet.h"
#include "host/data/DataError.h"
#include "host/data/DataProgress.h"
#include "host/data/DatasetLoader.h"
#include "host/data/HostRecords.h"
#include "host/data/SplitGroupListener.h"
#include "host/data/TextFile.h"
#include "host/output/BpError.h"
#include "host/output/BpString.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/CommandText.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/LexicalError.h"
#include "HelpTopics.h"
#include "ParseDumpCommand.h"
#include "TableDumpChannel.h"
#include "quilt.h"
#include "writers/OutputWriter.h"

#ifndef QUILT_EXAMPLES_DIR
#define QUILT_EXAMPLES_DIR "examples"
#endif

namespace {

// "origin:line:column: problem", the form of every position the program reports.
std::string DescribeLexicalError(const std::string& origin, const LexicalError& error) {
  return origin + ":" + std::to_string(error.GetLine()) + ":" + std::to_string(error.GetColumn()) + ": " +
         error.GetProblem();
}

// Checks that the output file can be written without touching what it holds now, so a run
// that fails later loses nothing. On failure `reason` is the system's word for it.
bool CanWriteFile(const std::string& path, std::string& reason) {
  struct stat status {};
  const bool existed = ::stat(path.c_str(), &status) == 0;
  if (existed && S_ISDIR(status.st_mode)) {
    reason = std::strerror(EISDIR);
    return false;
  }
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0666);
  if (descriptor < 0) {
    reason = std::strerror(errno);
    return false;
  }
  ::close(descriptor);
  if (!existed) ::unlink(path.c_str());
  return true;
}

// Writes `text` over the file at `path`. The text is complete before the file is opened, so
// only a failing disk can leave it half written, and then the run says so.
bool WriteFile(const std::string& path, const std::string& text, std::string& reason) {
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CREAT, 0666);
  if (descriptor < 0) {
    reason = std::strerror(errno);
    return false;
  }
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = ::write(descriptor, text.data() + written, text.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      reason = std::strerror(count < 0 ? errno : EIO);
      ::close(descriptor);
      return false;
    }
    written += static_cast<std::size_t>(count);
  }
  if (::close(descriptor) != 0) {
    reason = std::strerror(errno);
    return false;
  }
  return true;
}

}  // namespace

QuiltProgram::QuiltProgram(ProgramOptions options, std::ostream& errors)
    : _options(std::move(options)), _errors(errors) {}

std::string QuiltProgram::DefaultDataPath() { return std::string(QUILT_EXAMPLES_DIR) + "/survey.csv"; }

int QuiltProgram::Main(int argc, char** argv) {
  // `quilt help [NAME]` reads like the commands a user types at the prompt.
  if (argc >= 2 && std::string(argv[1]) == "help") {
    if (argc > 3) {
      std::cerr << "quilt: help takes one topic\n";
      return kExitBadInvocation;
    }
    return HelpTopics::Print(argc == 3 ? argv[2] : "", std::cout, std::cerr);
  }
  ProgramOptions options;
  CLI::App app{"quilt - tabulates survey data into pivot tables"};
  app.add_option("COMMAND_FILE", options.commandFiles, "command files, run in order ('-' reads standard input)");
  app.add_option("-d,--data", options.dataPath, "the active data set, CSV, gzip-compressed or not; - reads standard input (default: the bundled sample survey)");
  app.add_option("--dict", options.dictionaryPath, "its dictionary (default: NAME.dict.json beside NAME.csv)");
  std::string delimiter = ",";
  app.add_option("--delimiter", delimiter, "field separator of the CSV file (one character, or 'tab')");
  app.add_option("-e,--execute", options.commandTexts, "command text to run (repeatable; after the files)");
  app.add_option("-f,--format", options.format, "output format")
      ->check(CLI::IsMember({"text", "json", "html", "xlsx"}));
  app.add_option("-o,--output", options.outputPath, "write there instead of standard output");
  app.add_option("--weight", options.weightVariable, "case weight variable, overriding the dictionary");
  // One argument, split at commas here: a list option would also swallow the command files
  // that follow it.
  std::string splitList;
  app.add_option("--split", splitList, "split variables, comma separated, overriding the dictionary");
  app.add_option("--split-layout", options.splitLayout, "how split groups are laid out")
      ->check(CLI::IsMember({"separate", "layered"}));
  app.add_option("--threads", options.threads,
                 "threads of the data pass (default: the machine's cores; 2 or more read the data on a thread of its own)")
      ->check(CLI::Range(1, 1024));
  app.add_option("--width", options.width, "width of text output in characters")->check(CLI::Range(20, 100000));
  app.add_flag("--ascii", options.ascii, "draw text tables with plain characters");
  app.add_flag("--control-package", options.controlPackage, "run as the control package front end");
  app.add_flag("--dump-parse", options.dumpParse,
               "parse each command without running it and print its tables, expressions and sub-table cubes");
  app.add_flag("--dump-tables", options.dumpTables,
               "print each table's header trees and sub-table cubes after each split group, then the output");
  std::string helpTopic;
  app.add_option("--help-topic", helpTopic, "print the guide's page on a subcommand or statistic, and stop");
  bool listStatistics = false;
  // For the guide's tests: the statistic vocabulary, which the statistics page must cover.
  app.add_flag("--list-statistics", listStatistics)->group("");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int status = app.exit(error);
    return status == 0 ? kExitSuccess : kExitBadInvocation;
  }
  if (!helpTopic.empty()) {
    return HelpTopics::Print(helpTopic, std::cout, std::cerr);
  }
  if (listStatistics) {
    HelpTopics::ListStatistics(std::cout);
    return kExitSuccess;
  }
  if (delimiter == "tab") delimiter = "\t";
  if (delimiter.size() != 1) {
    std::cerr << "quilt: --delimiter: '" << delimiter << "' is not a single character\n";
    return kExitBadInvocation;
  }
  options.delimiter = delimiter[0];
  // A workbook's bytes would only garble a terminal, and dumps written ahead of them would
  // spoil the file.
  if (options.outputPath.empty() && OutputWriter::Create(options.format, {})->IsBinary() &&
      (::isatty(STDOUT_FILENO) || options.dumpTables || options.dumpParse)) {
    std::cerr << "quilt: -f " << options.format << " writes a binary file: name it with -o"
              << (options.dumpTables || options.dumpParse ? "" : ", or redirect standard output") << "\n";
    return kExitBadInvocation;
  }
  for (size_t start = 0; !splitList.empty() && start <= splitList.size();) {
    const size_t comma = std::min(splitList.find(',', start), splitList.size());
    if (comma > start) options.splitVariables.push_back(splitList.substr(start, comma - start));
    start = comma + 1;
  }
  if (options.commandFiles.empty() && options.commandTexts.empty()) options.commandFiles.push_back("-");
  if (options.dataPath == "-" &&
      std::find(options.commandFiles.begin(), options.commandFiles.end(), "-") != options.commandFiles.end()) {
    std::cerr << "quilt: -d -: standard input cannot hold both the data and the commands (give a command file or -e)\n";
    return kExitBadInvocation;
  }

  QuiltProgram program(std::move(options), std::cerr);
  try {
    return program.Run(std::cout);
  } catch (const std::bad_alloc&) {
    std::cerr << "quilt: out of memory\n";
  } catch (const std::exception& error) {
    // Nothing should get here; if something does, say so rather than abort.
    std::cerr << "quilt: internal error: " << error.what() << "\n";
  }
  return kExitInternalError;
}

bool QuiltProgram::CollectCommands(std::vector<Command>& commands) {
  // Every source must hold a command: an empty file or a closed standard input is far more
  // likely a mistake than a wish to run nothing.
  const auto split = [&](const std::string& text, const std::string& origin) {
    try {
      const std::size_t before = commands.size();
      for (const CommandText& piece : CommandSplitter::Split(text, /*requireFinalPeriod=*/false)) {
        commands.push_back({origin, piece.firstLine, piece.text});
      }
      if (commands.size() > before) return true;
      _errors << "quilt: " << origin << ": no command to run ("
              << (text.empty() ? "it is empty" : "it holds no QUILT command") << ")\n";
    } catch (const LexicalError& error) {
      _errors << "quilt: " << DescribeLexicalError(origin, error) << "\n";
    }
    return false;
  };
  for (const std::string& path : _options.commandFiles) {
    std::string text;
    try {
      text = TextFile::Read(path, "command file");
    } catch (const DataError& error) {
      _errors << "quilt: " << error.what() << "\n";
      return false;
    }
    if (!split(text, path == "-" ? "<stdin>" : path)) return false;
  }
  for (const std::string& text : _options.commandTexts) {
    if (!split(text, "-e")) return false;
  }
  return true;
}

namespace {

// A pass that takes over a second shows one line on standard error, rewritten at most four
// times a second and cleared at the end: rows and megabytes read, and the rate.
void ShowProgressOnTerminal() {
  using Clock = std::chrono::steady_clock;
  struct State {
    Clock::time_point start = Clock::now();
    Clock::time_point shown{};
    bool started = false;
    bool visible = false;
  };
  auto state = std::make_shared<State>();
  DataProgress::Install([state](std::size_t cases, std::size_t bytes, bool done) {
    const Clock::time_point now = Clock::now();
    if (done) {
      if (state->visible) std::fputs("\r\033[K", stderr);
      *state = State();
      return;
    }
    if (!state->started) {
      state->started = true;
      state->start = now;
    }
    const double seconds = std::chrono::duration<double>(now - state->start).count();
    if (seconds < 1.0 || now - state->shown < std::chrono::milliseconds(250)) return;
    state->shown = now;
    state->visible = true;
    const double megabytes = static_cast<double>(bytes) / 1e6;
    std::fprintf(stderr, "\rquilt: reading the data: %zu rows, %.0f MB, %.0f MB/s\033[K", cases, megabytes,
                 megabytes / seconds);
    std::fflush(stderr);
  });
}

}  // namespace

bool QuiltProgram::LoadActiveDataSet() {
  if (::isatty(STDERR_FILENO)) ShowProgressOnTerminal();
  DatasetLoadOptions loadOptions;
  loadOptions.delimiter = _options.delimiter;
  loadOptions.weightVariable = _options.weightVariable;
  loadOptions.splitVariables = _options.splitVariables;
  loadOptions.splitLayout = _options.splitLayout;
  // Each command reads the cases from the file as it runs; none is held in memory.
  loadOptions.stream = true;
  loadOptions.threads =
      _options.threads > 0 ? _options.threads : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  const std::string dataPath = _options.dataPath.empty() ? DefaultDataPath() : _options.dataPath;
  try {
    ActiveDataSet::Install(DatasetLoader::LoadFiles(dataPath, _options.dictionaryPath, loadOptions));
  } catch (const DataError& error) {
    DataProgress::Finish();
    DataProgress::Install(nullptr);
    _errors << "quilt: " << error.what() << "\n";
    return false;
  }
  SetUpHostRecords(*ActiveDataSet::Get(), _options.controlPackage);
  return true;
}

void QuiltProgram::RunCommand(const Command& command) {
  LexedCommand lexed;
  try {
    lexed = Lexer::Lex(command.text, command.firstLine);
    lexed.origin = command.origin;
  } catch (const LexicalError& error) {
    // A command that cannot be read is reported where the user reads the rest of the run.
    BpString text(DescribeLexicalError(command.origin, error), /*translate=*/false);
    BpError(text, kBpShowAlways, kBpLevelFatal);
    return;
  }
  quilt_(&lexed);
}

int QuiltProgram::WriteDocument(const OutputDocument& document, std::ostream& output) {
  WriterOptions writerOptions;
  writerOptions.width = _options.width;
  writerOptions.ascii = _options.ascii;
  std::unique_ptr<OutputWriter> writer = OutputWriter::Create(_options.format, writerOptions);
  if (_options.outputPath.empty()) {
    writer->Write(document, output);
    output.flush();
    return output ? kExitSuccess : kExitBadInvocation;
  }
  std::ostringstream text;
  writer->Write(document, text);
  std::string reason;
  if (!WriteFile(_options.outputPath, text.str(), reason)) {
    _errors << "quilt: " << _options.outputPath << ": cannot write the output file (" << reason << ")\n";
    return kExitBadInvocation;
  }
  return kExitSuccess;
}

int QuiltProgram::Run(std::ostream& output) {
  std::string reason;
  if (!_options.outputPath.empty() && !CanWriteFile(_options.outputPath, reason)) {
    _errors << "quilt: " << _options.outputPath << ": cannot write the output file (" << reason << ")\n";
    return kExitBadInvocation;
  }
  std::vector<Command> commands;
  if (!CollectCommands(commands)) return kExitBadInvocation;
  if (!LoadActiveDataSet()) return kExitBadInvocation;

  OutputDocument document;
  OutputDocument::Install(&document);
  // Split group headings and messages name the group the data pass is in.
  SplitGroupListener::Install([](const SplitGroupPairs& pairs) { OutputDocument::Current().SetSplitPairs(pairs); });
  // The dumps go out as the tables are built, ahead of the document written at the end.
  if (_options.dumpTables) TableDumpChannel::Install(&output);
  try {
    for (const Command& command : commands) {
      // A parse dump reads no case: the command is parsed as a run would parse it, and only
      // its messages reach the document.
      if (_options.dumpParse) {
        ParseDumpCommand::Run(command.text, command.firstLine, command.origin, output);
      } else {
        RunCommand(command);
      }
    }
  } catch (const DataError& error) {
    // The cases are read as each command runs, so bad data can surface here: the run ends
    // without output, as it does when the data cannot be loaded.
    TableDumpChannel::Install(nullptr);
    SplitGroupListener::Install(nullptr);
    OutputDocument::Install(nullptr);
    ActiveDataSet::Clear();
    DataProgress::Finish();
    DataProgress::Install(nullptr);
    _errors << "quilt: " << error.what() << "\n";
    return kExitBadInvocation;
  }
  TableDumpChannel::Install(nullptr);
  SplitGroupListener::Install(nullptr);
  OutputDocument::Install(nullptr);
  DataProgress::Install(nullptr);

  const int writeStatus = WriteDocument(document, output);
  ActiveDataSet::Clear();
  if (writeStatus != kExitSuccess) return writeStatus;
  return document.HasMessageAtLeast(kBpLevelError) ? kExitCommandError : kExitSuccess;
}
