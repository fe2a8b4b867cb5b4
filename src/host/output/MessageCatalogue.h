// MessageCatalogue.h - the English wording of catalogue keys and the expansion of templates
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// One argument of a template: a single text, or a list whose elements fill a list
/// construct [a:b:]n.
struct MessageArgument {
  std::string text;  // single argument; for a list, its elements joined by ", "
  bool isList = false;
  std::vector<std::string> items;  // list elements in order
};

/// The catalogue: each key's English wording with ^n placeholders (MessageCatalogue.def).
class MessageCatalogue {
 public:
  /// The wording of `key`, or null when the key has no entry.
  static const char* FindWording(const std::string& key);
  /// The key of the entry named `name` (the first field of QUILT_MESSAGE, as in
  /// `msg::k<name>`), or null when no entry has that name. For data files that name messages,
  /// such as the parser's diagnostic corpus; code uses the `msg::` constants instead.
  static const char* FindKey(std::string_view name);
  /// The wording of `key` (the key itself when it has none) with its placeholders and list
  /// constructs expanded from `arguments`.
  static std::string Expand(const std::string& key, const std::vector<MessageArgument>& arguments);
  /// Expands a template as it stands, without catalogue lookup.
  static std::string ExpandTemplate(const std::string& templateText,
                                    const std::vector<MessageArgument>& arguments);
  /// Every key with an entry.
  static std::vector<std::string> Keys();
};
