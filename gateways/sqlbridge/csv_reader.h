#pragma once
// CsvReader: the records of a delimited text file, read as a stream so that a file of any size
// costs one buffer. The rules, as users' files have them:
//   - records end at LF, CRLF or a lone CR; a UTF-8 byte order mark at the very start is skipped;
//   - a line holding nothing but blanks is no record (a line of separators is one, of empty cells);
//   - a cell that starts, after blanks, with the delimiter is enclosed: up to the next single
//     delimiter it may hold separators, line breaks (kept as they are in the file) and the
//     delimiter doubled; text after the closing delimiter is taken literally up to the separator;
//   - a delimiter anywhere else in a cell is an ordinary character;
//   - blanks (space, and tab unless tab is the separator) at both ends of a cell are dropped, but
//     never those inside the delimiters;
//   - an enclosed cell still open at the end of the file takes everything up to that end, and
//     Next reports kUnterminated for its record, so that a caller may refuse the file.
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace verdal::sqlbridge {

struct CsvFormat {
  char separator = ';';
  char delimiter = '"';  // '\0' for none; a delimiter equal to the separator counts as none
};

class CsvReader {
 public:
  enum class Status { kRecord, kEnd, kUnterminated, kReadError };

  explicit CsvReader(CsvFormat format);
  ~CsvReader();
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  // Reads the file at `path` from its start; false when it cannot be opened.
  bool Open(const char* path);
  // Reads text in memory, which must outlive the reader.
  void Assign(std::string_view text);

  // The next record's cells (at least one). kEnd when no record is left; kUnterminated gives the
  // last record with its open cell; kReadError when the file could not be read on.
  Status Next(std::vector<std::string>& cells);

 private:
  // The next byte, or -1 at the end (or on a read error, which Fill notes).
  int Get() {
    if (at_ == size_ && !Fill()) return -1;
    return static_cast<unsigned char>(data_[at_++]);
  }
  int Peek() {
    if (at_ == size_ && !Fill()) return -1;
    return static_cast<unsigned char>(data_[at_]);
  }
  bool Fill();
  bool IsBlank(int c) const { return (c == ' ' || c == '\t') && c != format_.separator; }
  void SkipByteOrderMark();

  CsvFormat format_;
  FILE* file_ = nullptr;
  std::unique_ptr<char[]> buffer_;
  const char* data_ = nullptr;
  size_t size_ = 0;
  size_t at_ = 0;
  bool started_ = false;
  bool readError_ = false;
};

}  // namespace verdal::sqlbridge
