// NamedConverter.h - a converter whose subcommand word and type are fixed when it is made
#pragma once

#include <string>

/// Most subcommand converters answer GetSubcommandName and GetType with constants; this
/// states them once, in the constructor, instead of two overrides in every class. `Base` is
/// SyntaxConverter or SyntaxComposite.
template <class Base>
class NamedConverter : public Base {
 public:
  std::string GetSubcommandName() const override { return _name; }
  int GetType() const override { return _type; }

 protected:
  /// `name` is the subcommand's word as messages show it; `type` a SyntaxConverterType.
  NamedConverter(const char* name, int type) : _name(name), _type(type) {}

 private:
  const char* _name;
  int _type;
};
