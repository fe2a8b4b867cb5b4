// BpComposite.cpp - templates with arguments, sublists and split pairs
#include "host/output/BpComposite.h"

#include "host/QuiltAssert.h"
#include "host/output/BpString.h"
#include "host/output/MessageCatalogue.h"
#include "host/output/OutputDocument.h"

struct BpComposite::Data {
  struct Argument {
    std::unique_ptr<BpCellText> text;  // single argument
    bool isList = false;
    std::vector<std::unique_ptr<BpCellText>> items;  // list elements
  };
  std::string templateText;
  bool translate = false;
  bool finished = false;
  bool listOpen = false;
  std::vector<Argument> arguments;

  Data() = default;
  Data(const Data& other)
      : templateText(other.templateText),
        translate(other.translate),
        finished(other.finished),
        listOpen(other.listOpen) {
    for (const Argument& argument : other.arguments) {
      Argument copy;
      copy.isList = argument.isList;
      if (argument.text) copy.text = argument.text->Clone();
      for (const auto& item : argument.items) copy.items.push_back(item->Clone());
      arguments.push_back(std::move(copy));
    }
  }

  std::vector<MessageArgument> Resolve() const {
    std::vector<MessageArgument> resolved;
    for (const Argument& argument : arguments) {
      MessageArgument message;
      message.isList = argument.isList;
      if (argument.isList) {
        for (const auto& item : argument.items) message.items.push_back(item->GetText());
        for (std::size_t i = 0; i < message.items.size(); ++i) {
          message.text += (i == 0 ? "" : ", ") + message.items[i];
        }
      } else {
        message.text = argument.text->GetText();
      }
      resolved.push_back(std::move(message));
    }
    return resolved;
  }
};

BpComposite::BpComposite(const std::string& templateText, bool translate) : _data(std::make_unique<Data>()) {
  _data->templateText = templateText;
  _data->translate = translate;
}

BpComposite::BpComposite(const BpComposite& other) : _data(std::make_unique<Data>(*other._data)) {}

BpComposite& BpComposite::operator=(const BpComposite& other) {
  if (this != &other) _data = std::make_unique<Data>(*other._data);
  return *this;
}

BpComposite::BpComposite(BpComposite&& other) noexcept = default;
BpComposite& BpComposite::operator=(BpComposite&& other) noexcept = default;
BpComposite::~BpComposite() = default;

void BpComposite::Add(const BpCellText& text) {
  QUILT_ASSERT(!_data->finished, "BpComposite::Add after Finish");
  if (_data->listOpen) {
    _data->arguments.back().items.push_back(text.Clone());
    return;
  }
  Data::Argument argument;
  argument.text = text.Clone();
  _data->arguments.push_back(std::move(argument));
}

void BpComposite::Sublist() {
  QUILT_ASSERT(!_data->listOpen, "BpComposite sublists do not nest");
  Data::Argument argument;
  argument.isList = true;
  _data->arguments.push_back(std::move(argument));
  _data->listOpen = true;
}

void BpComposite::EndSublist() {
  QUILT_ASSERT(_data->listOpen, "BpComposite::EndSublist without Sublist");
  _data->listOpen = false;
}

void BpComposite::SplitList() {
  QUILT_ASSERT(_data->listOpen, "BpComposite::SplitList outside a sublist");
  for (const auto& [variable, value] : OutputDocument::Current().GetSplitPairs()) {
    _data->arguments.back().items.push_back(std::make_unique<BpString>(variable, /*translate=*/false));
    _data->arguments.back().items.push_back(std::make_unique<BpString>(value, /*translate=*/false));
  }
}

void BpComposite::Finish() {
  if (_data->listOpen) _data->listOpen = false;
  _data->finished = true;
}

std::unique_ptr<BpCellText> BpComposite::Clone() const {
  return std::make_unique<BpComposite>(*this);
}

std::string BpComposite::GetText() const {
  const std::vector<MessageArgument> arguments = _data->Resolve();
  return _data->translate ? MessageCatalogue::Expand(_data->templateText, arguments)
                          : MessageCatalogue::ExpandTemplate(_data->templateText, arguments);
}

std::string BpComposite::GetIdentity() const {
  std::string identity = (_data->translate ? "CK:" : "CS:") + _data->templateText + "(";
  for (const Data::Argument& argument : _data->arguments) {
    if (argument.isList) {
      identity += "[";
      for (const auto& item : argument.items) identity += item->GetIdentity() + ";";
      identity += "]";
    } else {
      identity += argument.text->GetIdentity();
    }
    identity += "|";
  }
  return identity + ")";
}

std::string BpComposite::GetKey() const {
  return _data->templateText;
}

bool BpComposite::IsTranslated() const {
  return _data->translate;
}

bool BpComposite::IsFinished() const {
  return _data->finished;
}

std::vector<std::string> BpComposite::GetArguments() const {
  std::vector<std::string> texts;
  for (const MessageArgument& argument : _data->Resolve()) texts.push_back(argument.text);
  return texts;
}

void BpComposite::Dump(std::ostream& out) const {
  out << "composite " << (_data->translate ? "key" : "template") << " \"" << _data->templateText << "\" ->\""
      << GetText() << '"';
}
