#include "crypto/method.h"

#include <cstring>
#include <stdexcept>

namespace verdal::crypto {

void IMethod::CheckReady() const {
  if (!ready) throw std::runtime_error("Crypto: Error#1!");
}

void IMethod::CheckMode(int32_t value) {
  if (value < kECB || value > kCFB) throw std::runtime_error("Crypto: Error#2!");
}

void IMethod::CheckPadding(int32_t value) {
  if (value < kPadZero || value > kPadCount) throw std::runtime_error("Crypto: Error#3!");
}

void IMethod::SetMode(int32_t value) {
  CheckReady();
  CheckMode(value);
  mode = value;
}

void IMethod::SetPadding(int32_t value) {
  CheckReady();
  CheckPadding(value);
  padding = value;
}

int32_t IMethod::GetKeyLength() const {
  CheckReady();
  return keyLength;
}

int32_t IMethod::GetBlockSize() const {
  CheckReady();
  return blockSize;
}

int32_t IMethod::GetMode() const {
  CheckReady();
  return mode;
}

int32_t IMethod::GetPadding() const {
  CheckReady();
  return padding;
}

void IMethod::XorBlock(uint8_t* target, const uint8_t* other) const {
  CheckReady();
  for (int32_t i = 0; i < blockSize; ++i) target[i] ^= other[i];
}

int32_t IMethod::Pad(uint8_t* buffer, int32_t count) const {
  CheckReady();
  const int32_t missing = count % blockSize == 0 ? 0 : blockSize - count % blockSize;
  if (missing == 0) return count;
  int fill = 0;
  switch (padding) {
    case kPadBlank: fill = 0x20; break;
    case kPadCount: fill = missing; break;
    default: fill = 0; break;
  }
  std::memset(buffer + count, fill, static_cast<size_t>(missing));
  return count + missing;
}

}  // namespace verdal::crypto
