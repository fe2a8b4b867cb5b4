// SubcommandTestSupport.h - drives one converter with events and collects what it threw and reported
#pragma once

#include <string>
#include <vector>

#include "ParserTestSupport.h"
#include "host/output/BpComposite.h"
#include "parser/SyntaxComposite.h"

/// What a run of events left behind.
struct EventOutcome {
  bool threw = false;                      // a parse error ended the run
  CatalogueMessage error;                  // the thrown message when it did
  std::vector<CatalogueMessage> reported;  // warnings reported on the way, in order
};

/// Runs `events` (a callable) while capturing reports; a thrown composite is caught.
template <class Events>
EventOutcome RunEvents(Events events) {
  EventOutcome outcome;
  MessageCapture capture;
  try {
    events();
  } catch (const BpComposite& composite) {
    outcome.threw = true;
    outcome.error = DescribeComposite(composite);
  }
  outcome.reported = capture.GetReported();
  return outcome;
}

/// Attaches every converter of the run to a small data set: numeric a, b, c, w, d1, d2 in this
/// dictionary order, the string variable s (between c and w), and the dichotomy set $dich of
/// d1 and d2. The data source is a static of the converters, so one call serves all.
void AttachTestDataSource(SyntaxConverter& anyConverter);

/// A stand-in for the converter a subcommand or statistic hangs under: it answers `name` to
/// GetSubcommandName and records the words handed up to it by String.
class RecordingParent : public SyntaxComposite {
 public:
  explicit RecordingParent(const std::string& name) : _name(name) {}
  std::string GetSubcommandName() const override { return _name; }
  SyntaxConverter* String(const std::string& text) override {
    _words.push_back(text);
    return this;
  }
  const std::vector<std::string>& GetWords() const { return _words; }

 private:
  std::string _name;
  std::vector<std::string> _words;
};
