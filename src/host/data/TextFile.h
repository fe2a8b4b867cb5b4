// TextFile.h - reads a whole command, data or dictionary file, refusing what is not a text file
#pragma once

#include <string>
#include <string_view>

/// Reads files that must hold text. A directory, an unreadable file and a file with a NUL
/// byte (binary data, or a device such as /dev/zero that never ends) are DataErrors naming
/// the file, and for a NUL byte its line. Static functions only.
class TextFile {
 public:
  /// The whole content of `path`; "-" reads standard input. `what` names the file's role
  /// in messages ("command file"). Reading stops at the first chunk that holds a NUL byte.
  static std::string Read(const std::string& path, const std::string& what);

  /// Throws the error for the first NUL byte of `text`, if any. Fast: memchr over the text.
  static void CheckNoNulByte(std::string_view text, const std::string& path, const std::string& what);

  /// Throws when `path` names a directory; the loaders call it before opening a file.
  static void CheckNotDirectory(const std::string& path, const std::string& what);
};
