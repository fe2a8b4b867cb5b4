// MessageCatalogue.cpp - catalogue lookup and the expansion of ^n placeholders and list constructs
#include "host/output/MessageCatalogue.h"

#include <cctype>
#include <string_view>
#include <unordered_map>

namespace {

struct Entry {
  const char* name;
  const char* key;
  const char* wording;
};

constexpr Entry kEntries[] = {
#define QUILT_MESSAGE(name, key, wording) {#name, key, wording},
#include "host/output/MessageCatalogue.def"
#undef QUILT_MESSAGE
};

const std::unordered_map<std::string, const char*>& Index() {
  static const std::unordered_map<std::string, const char*> index = [] {
    std::unordered_map<std::string, const char*> built;
    for (const Entry& entry : kEntries) built.emplace(entry.key, entry.wording);
    return built;
  }();
  return index;
}

// Reads the digits at `position`; returns 0 when there are none.
int ReadNumber(std::string_view text, std::size_t& position) {
  int number = 0;
  bool any = false;
  while (position < text.size() && std::isdigit(static_cast<unsigned char>(text[position]))) {
    number = number * 10 + (text[position] - '0');
    ++position;
    any = true;
  }
  return any ? number : 0;
}

// The fields of element `element` of a list laid out with `width` fields per element.
std::string FieldOf(const std::vector<std::string>& items, std::size_t element, int field, int width) {
  const std::size_t index = element * static_cast<std::size_t>(width) + static_cast<std::size_t>(field - 1);
  return index < items.size() ? items[index] : std::string();
}

// The highest field number named by `marker` (% or ^) in a pattern.
int FieldCount(std::string_view pattern) {
  int highest = 1;
  for (std::size_t position = 0; position < pattern.size(); ++position) {
    if (pattern[position] != '%' && pattern[position] != '^') continue;
    std::size_t next = position + 1;
    const int number = ReadNumber(pattern, next);
    if (number > highest) highest = number;
  }
  return highest;
}

std::string FillPattern(std::string_view pattern, char marker, const std::vector<std::string>& items,
                        std::size_t element, int width) {
  std::string out;
  for (std::size_t position = 0; position < pattern.size();) {
    if (pattern[position] == marker) {
      std::size_t next = position + 1;
      const int field = ReadNumber(pattern, next);
      if (field > 0) {
        out += FieldOf(items, element, field, width);
        position = next;
        continue;
      }
    }
    out += pattern[position++];
  }
  return out;
}

// Lays out a list: the first element by `first` (fields %n), each further one by `rest`
// (fields ^n). An empty `first` means that every element uses `rest`, which is how
// "[:^1:]1" joins the pieces of a long text directly.
std::string ExpandList(std::string_view first, std::string_view rest, const MessageArgument& argument) {
  std::vector<std::string> items = argument.isList ? argument.items : std::vector<std::string>{argument.text};
  const int width = std::max(FieldCount(first), FieldCount(rest));
  const std::size_t elements =
      (items.size() + static_cast<std::size_t>(width) - 1) / static_cast<std::size_t>(width);
  std::string out;
  for (std::size_t element = 0; element < elements; ++element) {
    if (element == 0 && !first.empty()) {
      out += FillPattern(first, '%', items, element, width);
    } else {
      out += FillPattern(rest, '^', items, element, width);
    }
  }
  return out;
}

}  // namespace

const char* MessageCatalogue::FindWording(const std::string& key) {
  const auto found = Index().find(key);
  return found == Index().end() ? nullptr : found->second;
}

const char* MessageCatalogue::FindKey(std::string_view name) {
  for (const Entry& entry : kEntries) {
    if (name == entry.name) return entry.key;
  }
  return nullptr;
}

std::string MessageCatalogue::Expand(const std::string& key, const std::vector<MessageArgument>& arguments) {
  const char* wording = FindWording(key);
  // A key without wording still reaches the reader, as itself with its placeholders filled.
  return ExpandTemplate(wording == nullptr ? key : wording, arguments);
}

std::string MessageCatalogue::ExpandTemplate(const std::string& templateText,
                                             const std::vector<MessageArgument>& arguments) {
  const std::string_view text(templateText);
  std::string out;
  std::size_t position = 0;
  // An argument that expands to nothing between two blanks takes one of them along, so that
  // "In split ^1 there" with no split reads "In split there".
  auto skipDoubledBlank = [&](std::size_t before) {
    if (out.size() == before && !out.empty() && out.back() == ' ' && position < text.size() &&
        text[position] == ' ') {
      ++position;
    }
  };
  while (position < text.size()) {
    const char current = text[position];
    if (current == '[') {
      // [first:rest:]n
      const std::size_t firstEnd = text.find(':', position + 1);
      const std::size_t restEnd =
          firstEnd == std::string_view::npos ? firstEnd : text.find(":]", firstEnd + 1);
      if (restEnd != std::string_view::npos) {
        std::size_t next = restEnd + 2;
        const int number = ReadNumber(text, next);
        if (number > 0) {
          const std::string_view first = text.substr(position + 1, firstEnd - position - 1);
          const std::string_view rest = text.substr(firstEnd + 1, restEnd - firstEnd - 1);
          const std::size_t before = out.size();
          if (static_cast<std::size_t>(number) <= arguments.size()) {
            out += ExpandList(first, rest, arguments[static_cast<std::size_t>(number) - 1]);
          }
          position = next;
          skipDoubledBlank(before);
          continue;
        }
      }
    } else if (current == '^') {
      std::size_t next = position + 1;
      const int number = ReadNumber(text, next);
      if (number > 0) {
        const std::size_t before = out.size();
        if (static_cast<std::size_t>(number) <= arguments.size()) {
          out += arguments[static_cast<std::size_t>(number) - 1].text;
        } else {
          out.append(text.substr(position, next - position));  // kept visible: an argument is missing
        }
        position = next;
        skipDoubledBlank(before);
        continue;
      }
    }
    out += current;
    ++position;
  }
  return out;
}

std::vector<std::string> MessageCatalogue::Keys() {
  std::vector<std::string> keys;
  for (const Entry& entry : kEntries) keys.emplace_back(entry.key);
  return keys;
}
