#pragma once
// The passwords that open an enciphered database file: the session's password for its name, then
// what the user types at the prompt.
#include <string>

#include "storage/envelope.h"

namespace verdal::engine {

class FilePasswords : public storage::PasswordSource {
 public:
  explicit FilePasswords(std::string fileName) : fileName_(std::move(fileName)) {}
  std::optional<std::string> Remembered() override;
  std::optional<std::string> Ask() override;
  void Opened(const std::string& password) override;

 private:
  std::string fileName_;
};

}  // namespace verdal::engine
