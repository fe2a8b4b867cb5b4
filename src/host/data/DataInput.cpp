// DataInput.cpp - plain, spooled and gzip reading of a data file in chunks, restartable
#include "host/data/DataInput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "host/data/DataError.h"
#include "host/data/TextFile.h"

namespace {

enum RawKind {
  kRawFile,   // a regular file, read again by seeking to its start
  kRawSpool,  // a pipe or standard input, copied to a temporary file as it is read
  kRawText,   // text in memory
};

constexpr std::size_t kRawChunk = 1 << 18;

}  // namespace

struct DataInput::Data {
  std::string _name;
  RawKind _kind = kRawText;
  int _descriptor = -1;       // the file, or the pipe a spool copies
  bool _ownsDescriptor = false;
  std::FILE* _spool = nullptr;  // kRawSpool: what has been read so far
  std::size_t _spooled = 0;     // kRawSpool: bytes in _spool
  std::string _text;            // kRawText
  std::size_t _rawPosition = 0;  // raw bytes handed out since the rewind
  std::size_t _bytesRead = 0;    // data bytes handed out since the rewind
  // What was read ahead of the caller: the first bytes that tell gzip from text, and the
  // compressed input of inflate.
  std::vector<char> _raw;
  std::size_t _rawBegin = 0;
  std::size_t _rawEnd = 0;
  bool _rawEnded = false;  // the raw source has no more bytes
  bool _started = false;   // the first bytes since the rewind have been looked at
  bool _gzip = false;
  bool _inflating = false;   // _stream is initialised
  bool _memberEnded = true;  // no gzip member is open (only then may the data end)
  z_stream _stream{};

  ~Data() {
    if (_inflating) inflateEnd(&_stream);
    if (_spool != nullptr) std::fclose(_spool);
    if (_ownsDescriptor && _descriptor >= 0) ::close(_descriptor);
  }

  [[noreturn]] void FailRead(int error) const {
    throw DataError(_name + ": cannot read the data file (" + std::strerror(error) + ")");
  }

  // Reads raw bytes of the file; 0 at its end.
  std::size_t ReadRaw(char* buffer, std::size_t capacity) {
    std::size_t count = 0;
    switch (_kind) {
      case kRawText:
        count = std::min(capacity, _text.size() - std::min(_rawPosition, _text.size()));
        std::memcpy(buffer, _text.data() + _rawPosition, count);
        break;
      case kRawFile:
        count = ReadDescriptor(buffer, capacity);
        break;
      case kRawSpool:
        if (_rawPosition < _spooled) {
          const std::size_t wanted = std::min(capacity, _spooled - _rawPosition);
          if (std::fseek(_spool, static_cast<long>(_rawPosition), SEEK_SET) != 0) FailRead(errno);
          count = std::fread(buffer, 1, wanted, _spool);
          if (count != wanted) FailRead(errno != 0 ? errno : EIO);
        } else {
          count = ReadDescriptor(buffer, capacity);
          if (count > 0) {
            if (std::fseek(_spool, 0, SEEK_END) != 0 || std::fwrite(buffer, 1, count, _spool) != count) {
              throw DataError(_name + ": cannot keep a copy of the data for the next command (" +
                              std::strerror(errno) + ")");
            }
            _spooled += count;
          }
        }
        break;
    }
    _rawPosition += count;
    return count;
  }

  std::size_t ReadDescriptor(char* buffer, std::size_t capacity) {
    while (true) {
      const ssize_t count = ::read(_descriptor, buffer, capacity);
      if (count >= 0) return static_cast<std::size_t>(count);
      if (errno != EINTR) FailRead(errno);
    }
  }

  // Tops up the read-ahead buffer; false when nothing is left in it or the file.
  bool FillRaw() {
    if (_rawBegin < _rawEnd) return true;
    _rawBegin = _rawEnd = 0;
    if (_rawEnded) return false;
    _raw.resize(kRawChunk);
    _rawEnd = ReadRaw(_raw.data(), _raw.size());
    if (_rawEnd == 0) _rawEnded = true;
    return _rawEnd > 0;
  }

  // Looks at the first bytes: gzip data starts with 1f 8b.
  void Start() {
    _started = true;
    _raw.resize(kRawChunk);
    while (_rawEnd < 2 && !_rawEnded) {
      const std::size_t count = ReadRaw(_raw.data() + _rawEnd, _raw.size() - _rawEnd);
      if (count == 0) _rawEnded = true;
      _rawEnd += count;
    }
    _gzip = _rawEnd >= 2 && static_cast<unsigned char>(_raw[0]) == 0x1f &&
            static_cast<unsigned char>(_raw[1]) == 0x8b;
    if (!_gzip) return;
    _stream = z_stream{};
    if (inflateInit2(&_stream, 16 + MAX_WBITS) != Z_OK) {
      throw DataError(_name + ": cannot start reading the gzip data (out of memory)");
    }
    _inflating = true;
    _memberEnded = false;
  }

  std::size_t Inflate(char* buffer, std::size_t capacity) {
    _stream.next_out = reinterpret_cast<Bytef*>(buffer);
    _stream.avail_out = static_cast<uInt>(std::min<std::size_t>(capacity, 1u << 30));
    while (_stream.avail_out == static_cast<uInt>(std::min<std::size_t>(capacity, 1u << 30))) {
      if (!FillRaw()) {
        if (!_memberEnded) {
          throw DataError(_name + ": the gzip data ends early: the file is truncated, and no table is made from it");
        }
        break;
      }
      if (_memberEnded) {
        // Another member follows (files written in parts are concatenated members).
        inflateReset(&_stream);
        _memberEnded = false;
      }
      _stream.next_in = reinterpret_cast<Bytef*>(_raw.data() + _rawBegin);
      _stream.avail_in = static_cast<uInt>(_rawEnd - _rawBegin);
      const int status = inflate(&_stream, Z_NO_FLUSH);
      _rawBegin = _rawEnd - _stream.avail_in;
      if (status == Z_STREAM_END) {
        _memberEnded = true;
      } else if (status == Z_NEED_DICT || status == Z_DATA_ERROR) {
        const std::string reason = _stream.msg != nullptr ? _stream.msg : "corrupt data";
        throw DataError(_name + ": the gzip data is corrupt (" + reason + ")");
      } else if (status == Z_MEM_ERROR) {
        throw DataError(_name + ": cannot read the gzip data (out of memory)");
      }
    }
    return static_cast<std::size_t>(_stream.next_out - reinterpret_cast<Bytef*>(buffer));
  }
};

DataInput::DataInput() : _data(std::make_unique<Data>()) {}
DataInput::~DataInput() = default;

std::unique_ptr<DataInput> DataInput::OpenFile(const std::string& path, const std::string& what) {
  std::unique_ptr<DataInput> input(new DataInput());
  Data& data = *input->_data;
  TextFile::CheckNotDirectory(path, what);
  const bool standardInput = path == "-";
  data._name = standardInput ? "<stdin>" : path;
  data._descriptor = standardInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY);
  if (data._descriptor < 0) {
    throw DataError(path + ": cannot open the " + what + " (" + std::strerror(errno) + ")");
  }
  data._ownsDescriptor = !standardInput;
  struct stat status {};
  if (::fstat(data._descriptor, &status) == 0 && S_ISREG(status.st_mode) && !standardInput) {
    data._kind = kRawFile;
    ::posix_fadvise(data._descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
  } else {
    data._kind = kRawSpool;
    data._spool = std::tmpfile();
    if (data._spool == nullptr) {
      throw DataError(data._name + ": cannot make a temporary copy of the " + what + " (" +
                      std::strerror(errno) + ")");
    }
  }
  return input;
}

std::unique_ptr<DataInput> DataInput::FromText(std::string text, const std::string& name) {
  std::unique_ptr<DataInput> input(new DataInput());
  input->_data->_name = name;
  input->_data->_kind = kRawText;
  input->_data->_text = std::move(text);
  return input;
}

std::size_t DataInput::Read(char* buffer, std::size_t capacity) {
  Data& data = *_data;
  if (capacity == 0) return 0;
  if (!data._started) data.Start();
  std::size_t count = 0;
  if (data._gzip) {
    count = data.Inflate(buffer, capacity);
  } else if (data._rawBegin < data._rawEnd) {
    count = std::min(capacity, data._rawEnd - data._rawBegin);
    std::memcpy(buffer, data._raw.data() + data._rawBegin, count);
    data._rawBegin += count;
  } else if (!data._rawEnded) {
    count = data.ReadRaw(buffer, capacity);
    if (count == 0) data._rawEnded = true;
  }
  data._bytesRead += count;
  return count;
}

void DataInput::Rewind() {
  Data& data = *_data;
  if (data._kind == kRawFile && ::lseek(data._descriptor, 0, SEEK_SET) != 0) data.FailRead(errno);
  if (data._inflating) inflateEnd(&data._stream);
  data._inflating = false;
  data._memberEnded = true;
  data._rawPosition = 0;
  data._bytesRead = 0;
  data._rawBegin = data._rawEnd = 0;
  data._rawEnded = false;
  data._started = false;
  data._gzip = false;
}

bool DataInput::IsFile() const {
  return _data->_kind != kRawText;
}

const std::string& DataInput::GetName() const {
  return _data->_name;
}

std::size_t DataInput::GetBytesRead() const {
  return _data->_bytesRead;
}

std::size_t DataInput::GetRawBytesRead() const {
  return _data->_rawPosition;
}
