// HelpTopics.h - the user's guide pages compiled into the program, shown by `quilt help NAME`
#pragma once

#include <iosfwd>
#include <string>

/// One page of the guide: its file name without extension ("categories") and its markdown.
struct HelpPage {
  const char* name;
  const char* text;
};

/// The pages of docs/reference/ and docs/guide/, generated at build time (HelpPages.cpp), so
/// that an installed program carries its own reference.
extern const HelpPage kHelpPages[];
extern const int kHelpPageCount;

/// Prints guide pages in the terminal.
class HelpTopics {
 public:
  /// Prints what `name` names, in any letter case: a page ("categories", or a subcommand
  /// abbreviated to three letters or more, "CAT"), or a statistic keyword ("colpct.count"),
  /// for which the section of the statistics page that lists it is printed. An empty name
  /// prints the index page and the list of topics. Returns 0, or 2 with a message on
  /// `errors` when nothing has that name.
  static int Print(const std::string& name, std::ostream& out, std::ostream& errors);

  /// Every statistic keyword the program knows, aliases included, one per line.
  static void ListStatistics(std::ostream& out);
};
