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

/// One event of a subcommand: a keyword (followed by "="), a word, a literal or a number.
struct Event {
  enum Kind { kKeyword, kWord, kLiteral, kNumber, kTo } kind;
  std::string text;
  double value = 0;
};

inline Event Key(const std::string& text) {
  return {Event::kKeyword, text};
}
inline Event Word(const std::string& text) {
  return {Event::kWord, text};
}
inline Event Lit(const std::string& text) {
  return {Event::kLiteral, text};
}
inline Event Num(double value, const std::string& text) {
  return {Event::kNumber, text, value};
}
inline Event To() {
  return {Event::kTo, "TO"};
}

/// Delivers the events as the reader would, each to the converter the previous one returned.
/// Returns the converter current at the end.
inline SyntaxConverter* Deliver(SyntaxConverter& converter, const std::vector<Event>& events) {
  SyntaxConverter* current = &converter;
  for (const Event& event : events) {
    switch (event.kind) {
      case Event::kKeyword:
        current = current->AttributeString(event.text, nullptr);
        break;
      case Event::kWord:
        current = current->String(event.text);
        break;
      case Event::kLiteral:
        current = current->Literal(event.text);
        break;
      case Event::kNumber:
        current = current->Number(event.value, event.text);
        break;
      case Event::kTo:
        current = current->To(event.text);
        break;
    }
  }
  return current;
}

/// Delivers `events` to `subcommand` as the reader would, then commits it as the "/" or "."
/// in `commitText` would; what either threw or reported is captured. The one way the tests
/// run a subcommand on its own.
inline EventOutcome RunSubcommand(SyntaxConverter& subcommand, const std::vector<Event>& events,
                                  const std::string& commitText = "/") {
  return RunEvents([&] {
    Deliver(subcommand, events);
    subcommand.ValidateAndCommit(commitText);
  });
}

/// Attaches every converter of the run to the test dictionary (TestDataset). The data source
/// is a static of the converters, so one call serves all.
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
