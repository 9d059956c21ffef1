#include "csv_reader.h"

#include "platform/file_system.h"

namespace verdal::sqlbridge {
namespace {

constexpr size_t kBufferSize = 1 << 16;

}  // namespace

CsvReader::CsvReader(CsvFormat format) : format_(format) {
  if (format_.delimiter == format_.separator) format_.delimiter = '\0';
}

CsvReader::~CsvReader() {
  if (file_ != nullptr) std::fclose(file_);
}

bool CsvReader::Open(const char* path) {
  if (file_ != nullptr) std::fclose(file_);
  file_ = std::fopen(platform::NativePath(path).c_str(), "rb");
  if (file_ == nullptr) return false;
  if (!buffer_) buffer_ = std::make_unique<char[]>(kBufferSize);
  data_ = buffer_.get();
  size_ = at_ = 0;
  started_ = readError_ = false;
  return true;
}

void CsvReader::Assign(std::string_view text) {
  if (file_ != nullptr) std::fclose(file_);
  file_ = nullptr;
  data_ = text.data();
  size_ = text.size();
  at_ = 0;
  started_ = readError_ = false;
}

bool CsvReader::Fill() {
  if (file_ == nullptr || readError_) return false;
  const size_t n = std::fread(buffer_.get(), 1, kBufferSize, file_);
  if (n == 0) {
    readError_ = std::ferror(file_) != 0;
    return false;
  }
  data_ = buffer_.get();
  size_ = n;
  at_ = 0;
  return true;
}

void CsvReader::SkipByteOrderMark() {
  started_ = true;
  if (Peek() != 0xEF) return;
  // The three bytes of the mark may straddle a refill only in a file shorter than the buffer's
  // first read, which then holds them all; anything else starting with 0xEF is data.
  if (size_ - at_ >= 3 && static_cast<unsigned char>(data_[at_ + 1]) == 0xBB &&
      static_cast<unsigned char>(data_[at_ + 2]) == 0xBF)
    at_ += 3;
}

CsvReader::Status CsvReader::Next(std::vector<std::string>& cells) {
  if (!started_) SkipByteOrderMark();
  const int separator = static_cast<unsigned char>(format_.separator);
  const int delimiter = format_.delimiter == '\0' ? -2 : static_cast<unsigned char>(format_.delimiter);
  cells.clear();
  std::string cell;
  size_t kept = 0;         // bytes of the cell that trimming must not touch
  bool cellStarted = false;
  bool enclosed = false;   // the record has an enclosed cell, so it is never blank
  bool any = false;        // the record has read a byte
  Status status = Status::kRecord;

  auto finishCell = [&]() {
    size_t end = cell.size();
    while (end > kept && IsBlank(static_cast<unsigned char>(cell[end - 1]))) --end;
    cell.resize(end);
    cells.push_back(std::move(cell));
    cell.clear();
    kept = 0;
    cellStarted = false;
  };

  for (;;) {
    int c = Get();
    if (c < 0) {
      if (readError_) return Status::kReadError;
      if (!any) return Status::kEnd;
      finishCell();
      if (cells.size() == 1 && cells[0].empty() && !enclosed) {
        cells.clear();
        return Status::kEnd;
      }
      return status;
    }
    any = true;
    if (c == '\r' || c == '\n') {
      if (c == '\r' && Peek() == '\n') ++at_;
      finishCell();
      if (cells.size() == 1 && cells[0].empty() && !enclosed) {
        // A blank line: no record, read on.
        cells.clear();
        any = false;
        continue;
      }
      return status;
    }
    if (c == separator) {
      finishCell();
      continue;
    }
    if (!cellStarted && IsBlank(c)) continue;
    if (c == delimiter && !cellStarted) {
      cellStarted = enclosed = true;
      for (;;) {
        c = Get();
        if (c < 0) {
          if (readError_) return Status::kReadError;
          status = Status::kUnterminated;
          break;
        }
        if (c == delimiter) {
          if (Peek() != delimiter) break;
          ++at_;
        }
        cell.push_back(static_cast<char>(c));
        // The run up to the next delimiter in one piece, where the buffer holds it.
        size_t end = at_;
        while (end < size_ && static_cast<unsigned char>(data_[end]) != delimiter) ++end;
        cell.append(&data_[at_], end - at_);
        at_ = end;
      }
      kept = cell.size();
      continue;
    }
    cellStarted = true;
    cell.push_back(static_cast<char>(c));
    // The rest of an unenclosed cell in one piece, where the buffer holds it.
    size_t end = at_;
    while (end < size_ && static_cast<unsigned char>(data_[end]) != separator && data_[end] != '\r' &&
           data_[end] != '\n')
      ++end;
    cell.append(&data_[at_], end - at_);
    at_ = end;
  }
}

}  // namespace verdal::sqlbridge
