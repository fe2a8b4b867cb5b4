// QuiltProgram.h - one invocation of the quilt program: data, commands, output and exit status
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "ProgramOptions.h"

class OutputDocument;

/// Exit statuses of the program.
enum QuiltExitStatus : int {
  kExitSuccess = 0,        // every command ran; warnings allowed
  kExitCommandError = 1,   // a command ended with an error
  kExitBadInvocation = 2,  // bad options, or data, dictionary or command file unreadable
};

/// Runs the commands of one invocation against the active data set and writes everything
/// they delivered, in order, in the chosen format.
class QuiltProgram {
public:
  /// The whole program: parses argv, runs, and returns the exit status.
  static int Main(int argc, char** argv);

  /// `errors` receives the program's own diagnostics (bad options, unreadable files).
  QuiltProgram(ProgramOptions options, std::ostream& errors);

  /// Runs every command and writes the output document to `output` (or to the output file
  /// of the options). Returns a QuiltExitStatus.
  int Run(std::ostream& output);

  /// Where the bundled sample survey lives.
  static std::string DefaultDataPath();

  /// One command as cut out of a file or a text.
  struct Command {
    std::string origin;  // file name, or "-e" for command-line text
    int firstLine = 1;   // line of the origin on which the command starts
    std::string text;
  };

  /// Runs one command against the active data set, delivering into the current output
  /// document; a command that cannot be read becomes a fatal message there. Other hosts of
  /// the procedure (the Python module) run their commands through here too.
  static void RunCommand(const Command& command);

private:
  bool CollectCommands(std::vector<Command>& commands);
  bool LoadActiveDataSet();
  int WriteDocument(const OutputDocument& document, std::ostream& output);

  ProgramOptions _options;
  std::ostream& _errors;
};
