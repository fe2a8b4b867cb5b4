// ProgramOptions.h - what the quilt command line asks for, as a plain record
#pragma once

#include <string>
#include <vector>

/// The settings of one invocation of the quilt program. Defaults are what a user gets by
/// typing `quilt` with nothing else.
struct ProgramOptions {
  std::string dataPath;                  // the active data set (CSV); empty: the bundled sample survey
  std::string dictionaryPath;            // its dictionary; empty: NAME.dict.json beside the data, if present
  char delimiter = ',';                  // field separator of the CSV file
  std::vector<std::string> commandFiles; // command files, run in the order given ("-" is standard input)
  std::vector<std::string> commandTexts; // commands given with -e, run after the files
  std::string format = "text";           // text | json | html | xlsx
  std::string outputPath;                // empty: standard output
  std::string weightVariable;            // overrides the dictionary's weight when not empty
  std::vector<std::string> splitVariables;  // overrides the dictionary's split variables when not empty
  std::string splitLayout;               // separate | layered; empty: the dictionary's choice
  int threads = 0;                       // threads of the data pass; 0: the machine's cores
  int width = 0;                         // text width; 0: the terminal's, else 100
  bool ascii = false;                    // draw text tables with plain characters
  bool controlPackage = false;           // run as the control package front end
  bool dumpTables = false;               // print each built table's header trees and cubes first
  bool dumpParse = false;                // print how each command was parsed instead of running it
};
