// TextFile.cpp - whole-file reading in chunks, with the checks that keep binary input out
#include "host/data/TextFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "host/data/DataError.h"

namespace {

// Closes a descriptor on every way out.
struct Descriptor {
  int value = -1;
  ~Descriptor() {
    if (value > 0) ::close(value);
  }
};

}  // namespace

void TextFile::CheckNotDirectory(const std::string& path, const std::string& what) {
  struct stat status {};
  if (path != "-" && ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    throw DataError(path + ": is a directory, not a " + what);
  }
}

void TextFile::CheckNoNulByte(std::string_view text, const std::string& path, const std::string& what) {
  if (text.empty()) return;  // its data may be null, which memchr must not see
  const void* found = std::memchr(text.data(), '\0', text.size());
  if (found == nullptr) return;
  const auto offset = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
  const std::size_t line =
      1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + offset, '\n'));
  throw DataError(path + ":" + std::to_string(line) + ": byte 0x00 at byte " + std::to_string(offset + 1) +
                  " of the file: the " + what + " is not text");
}

std::string TextFile::Read(const std::string& path, const std::string& what) {
  CheckNotDirectory(path, what);
  Descriptor descriptor;  // standard input, descriptor 0, is not closed
  descriptor.value = path == "-" ? 0 : ::open(path.c_str(), O_RDONLY);
  if (descriptor.value < 0) {
    throw DataError(path + ": cannot open the " + what + " (" + std::strerror(errno) + ")");
  }
  const int input = descriptor.value;
  std::string text;
  constexpr std::size_t kChunk = 1 << 16;
  while (true) {
    const std::size_t start = text.size();
    text.resize(start + kChunk);
    const ssize_t count = ::read(input, text.data() + start, kChunk);
    if (count < 0 && errno == EINTR) {
      text.resize(start);
      continue;
    }
    if (count < 0) {
      throw DataError(path + ": cannot read the " + what + " (" + std::strerror(errno) + ")");
    }
    text.resize(start + static_cast<std::size_t>(count));
    if (count == 0) break;
    // A device such as /dev/zero never ends: stop at its first chunk.
    if (std::memchr(text.data() + start, '\0', static_cast<std::size_t>(count)) != nullptr) {
      CheckNoNulByte(text, path, what);
    }
  }
  return text;
}
