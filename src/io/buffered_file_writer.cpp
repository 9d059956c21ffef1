#include "io/buffered_file_writer.h"

#include "io/stream_io.h"

namespace verdal {
namespace {
constexpr size_t kBlock = 1u << 20;
}

BufferedFileWriter::~BufferedFileWriter() { file_.Close(); }

bool BufferedFileWriter::Open(const char* path) {
  failed_ = false;
  buffer_.clear();
  buffer_.reserve(kBlock + 4096);
  return file_.Open(path, TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate);
}

void BufferedFileWriter::PutRaw(const void* bytes, size_t count) {
  buffer_.append(static_cast<const char*>(bytes), count);
  if (buffer_.size() >= kBlock) Flush();
}

void BufferedFileWriter::PutString(std::string_view text) {
  const auto count = static_cast<uint32_t>(LengthBeforeNul(text.data(), text.size()));
  const char bytes[4] = {static_cast<char>(count), static_cast<char>(count >> 8),
                         static_cast<char>(count >> 16), static_cast<char>(count >> 24)};
  buffer_.append(bytes, 4);
  PutRaw(text.data(), count);
}

void BufferedFileWriter::Flush() {
  if (buffer_.empty() || failed_) return;
  try {
    if (file_.Write(buffer_.data(), static_cast<int32_t>(buffer_.size())) !=
        static_cast<int32_t>(buffer_.size()))
      failed_ = true;
  } catch (...) {
    failed_ = true;
  }
  buffer_.clear();
}

bool BufferedFileWriter::FinishWithLeadingCount(int32_t value) {
  Flush();
  try {
    if (!failed_ && file_.Seek(0) == 0) WriteInt32(value, file_);
    else failed_ = true;
  } catch (...) {
    failed_ = true;
  }
  return Finish();
}

bool BufferedFileWriter::Finish() {
  Flush();
  if (!file_.Close()) failed_ = true;
  return !failed_;
}

}  // namespace verdal
