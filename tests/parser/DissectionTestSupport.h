// DissectionTestSupport.h - parses whole commands on a data set with categorical, scale and set variables, and summarizes the cubes
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ParserTestSupport.h"

class SubTableCube;
class SyntaxTableSubcommand;

/// What one command left behind, with the tables' cubes in a compact form.
struct TablesOutcome {
  bool succeeded = false;                      // ReadTokens returned normally
  CatalogueMessage error;                      // the thrown message when it did not
  std::vector<CatalogueMessage> reported;      // warnings reported on the way, in order
  std::vector<std::vector<std::string>> cubes; // per table, SummarizeCube of each cube
  std::string parseDump;                       // ParseDump of all tables
};

/// Parses `command` against the dissection data set and, when the parse succeeded, runs
/// `inspect` on the tables before they are released. The data set: categorical a, b, c
/// (nominal) and d, e (ordinal); a and b label 1 "Low" and 2 "High", c labels 2 "Top",
/// d labels 3 "Extra", e has no labels; scale x, y and w; the dichotomy set $dich and the
/// category set $cats.
TablesOutcome ParseTables(const std::string& command,
                          const std::function<void(std::vector<SyntaxTableSubcommand*>&)>& inspect = {});

/// A cube as "rows BY columns BY layers {scale}": nested variables joined by ">", an empty
/// axis as "-", the computational variable marked "*", scale variables in braces.
/// `a > b BY c` with the default on c reads "a>b BY c*"; `x + y` reads "{x,y}".
std::string SummarizeCube(const SubTableCube& cube);
