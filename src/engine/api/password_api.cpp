// Exported functions for the password and the compression flag of a database. They change only
// the database in memory; the next save writes the envelope they ask for.
#include <string>

#include "io/text_buffer.h"
#include "dialogs/password_dialog.h"
#include "engine/api/api_frame.h"
#include "engine/pool_manager.h"
#include "ui/host.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;

namespace {

constexpr size_t kPasswordBuffer = 32;
constexpr size_t kMinimumLength = 5;

void FillOut(const engine::TDBManager& db, char* password, int32_t* compress) {
  CopyCut(password, kPasswordBuffer, db.password);
  if (compress != nullptr) *compress = db.compressed ? 1 : 0;
}

std::string TrimBlanks(const char* text) {
  std::string s = text != nullptr ? text : "";
  const size_t first = s.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_GetPWDAndCompression(VerdalHandle handle, char* password,
                                               int32_t* compress) {
  return api::WithDatabase("VERDAL_GetPWDAndCompression", handle, -1, Judge::kResult,
                           [&](engine::TDBManager& db) -> int32_t {
                             FillOut(db, password, compress);
                             return 1;
                           });
}

VERDAL_API int32_t VERDAL_SetPWDAndCompression(VerdalHandle handle, const char* password,
                                               int32_t compress) {
  const int32_t result = api::WithDatabase(
      "VERDAL_SetPWDAndCompression", handle, -1, Judge::kResult,
      [&](engine::TDBManager& db) -> int32_t {
        std::string text = TrimBlanks(password);
        if ((!text.empty() && text.size() < kMinimumLength) || text.size() >= kPasswordBuffer)
          return -2;
        db.password = text;
        db.enciphered = !text.empty();
        db.compressed = (compress & 0xFF) != 0;
        db.MarkDirty();
        // An empty password is remembered too: it stands for "this file has none now".
        engine::Pool().SetSessionPassword(db.fileName, db.password);
        return 1;
      });
  if (result == -2) api::TraceFailure("VERDAL_SetPWDAndCompression");
  return result;
}

VERDAL_API int32_t VERDAL_ConfigurePWDAndCompression(VerdalHandle handle, VerdalWindow window,
                                                     char* password, int32_t* compress) {
  return api::WithDatabase("VERDAL_ConfigurePWDAndCompression", handle, 0, Judge::kResult,
                           [&](engine::TDBManager& db) -> int32_t {
                             dialogs::TPassWordDialog dialog(db.password, db.compressed, window);
                             if (ui::CurrentHost().RunSheet(window, dialog)) {
                               db.password = dialog.Password();
                               db.compressed = dialog.Compress();
                               db.enciphered = !db.password.empty();
                             }
                             db.MarkDirty();
                             FillOut(db, password, compress);
                             return 1;
                           });
}

}  // extern "C"
