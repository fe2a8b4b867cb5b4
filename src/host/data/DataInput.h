// DataInput.h - the bytes of a data file, read front to back in chunks, from a file, standard input or text
#pragma once

#include <cstddef>
#include <memory>
#include <string>

/// A source of data bytes that can be read from the start more than once: every command of
/// a run makes its own pass over the data. A plain file is read with read(2) and never held
/// whole. Standard input ("-") is copied to an unlinked temporary file as it is read, so a
/// later pass replays it from disk, not from memory. Gzip data (recognised by its first two
/// bytes, whatever the name) is inflated on the fly; data that ends inside the compressed
/// stream is a DataError naming the file, never a short file read as if whole.
class DataInput {
 public:
  /// Opens `path` ("-": standard input). `what` names the file's role in messages. Throws
  /// DataError when the file cannot be opened or is a directory.
  static std::unique_ptr<DataInput> OpenFile(const std::string& path, const std::string& what);
  /// Reads `text` itself (tests and tools). `name` is used in messages.
  static std::unique_ptr<DataInput> FromText(std::string text, const std::string& name);

  ~DataInput();
  DataInput(const DataInput&) = delete;
  DataInput& operator=(const DataInput&) = delete;

  /// Reads up to `capacity` bytes into `buffer`; 0 only at the end of the data. Throws
  /// DataError for a read error and for compressed data that ends early or is corrupt.
  std::size_t Read(char* buffer, std::size_t capacity);
  /// Starts again from the first byte.
  void Rewind();
  /// True for a file or standard input, false for text given in memory. A file holding a
  /// NUL byte is refused as a whole (it is not text); text given in memory is checked field
  /// by field.
  bool IsFile() const;
  /// The name used in messages: the path as given, "<stdin>" for standard input.
  const std::string& GetName() const;
  /// Bytes of data (after decompression) handed out since the last Rewind.
  std::size_t GetBytesRead() const;
  /// Bytes of the file itself (compressed bytes for gzip) read since the last Rewind.
  std::size_t GetRawBytesRead() const;

 private:
  DataInput();
  struct Data;
  std::unique_ptr<Data> _data;
};
