#include "engine/file_passwords.h"

#include "engine/pool_manager.h"
#include "platform/language.h"
#include "ui/host.h"

namespace verdal::engine {

namespace {
constexpr int32_t kPasswordLimit = 31;
}

std::optional<std::string> FilePasswords::Remembered() {
  if (const std::string* session = Pool().SessionPassword(fileName_)) return *session;
  return std::nullopt;
}

std::optional<std::string> FilePasswords::Ask() {
  const char* prompt = platform::IsGerman() ? "Bitte geben Sie das Pa\xDFwort ein:"
                                            : "Please enter the password:";
  return ui::CurrentHost().PromptPassword(nullptr, ui::ApplicationName(), prompt, kPasswordLimit);
}

void FilePasswords::Opened(const std::string& password) {
  Pool().SetSessionPassword(fileName_, password);
}

}  // namespace verdal::engine
