// Arbitrary bytes as a stream of stored strings and numbers read back through a TMemFile, as the
// format readers do: only the stream's own exceptions may come out, and no string may be longer
// than the bytes the stream held.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "io/memfile.h"
#include "io/stream_io.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  verdal::TMemFile file(static_cast<int32_t>(size));
  if (size > 0) file.Write(data, static_cast<int32_t>(size));
  file.SeekToBegin();
  std::string text;
  try {
    // The first byte of each step picks what to read next, so mixed layouts are reached too.
    for (;;) {
      switch (verdal::ReadUInt8(file) % 4) {
        case 0: verdal::ReadInt16(file); break;
        case 1: verdal::ReadExtended(file); break;
        default:
          verdal::ReadString(text, file);
          if (text.size() > size) std::abort();
          break;
      }
    }
  } catch (const verdal::TReadWriteException&) {
  } catch (const verdal::TMemFileReadWriteException&) {
  }
  return 0;
}
