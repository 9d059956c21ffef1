#include "engine/last_error.h"

#include <string>

namespace verdal::engine {
namespace {

int32_t g_lastError = 0;
std::string g_actionMessage;

// Code page 1252: \xFC is u-umlaut, \xD6 O-umlaut, \xF6 o-umlaut.
const char* const kMessages[] = {
    "Es ist kein Fehler aufgetreten.",
    "Ung\xFCltiges Datenbank-Handle.",
    "Ung\xFCltige Datenfeldnummer.",
    "Ung\xFCltige Datenfeldnummer der Kreuztabelle.",
    "Fehler beim \xD6" "ffnen der Kreuztabelle.",
    "Ung\xFCltiger Datenbankcursor.",
    "Ung\xFCltiger Datenbankcursor einer Kategorie.",
    "Ung\xFCltige Kreuztabelle.",
    "Abbruch durch Benutzer.",
    "Versuch schreibgesch\xFCtztes Feld zu beschreiben.",
    "Ung\xFCltige Zieldaten.",
    "Ung\xFCltige Eingabedaten.",
    "Ung\xFCltige Ansicht.",
    "Fehler bei der Abfrage.",
    "Die Datei sqlbridge.dll konnte nicht geladen werden.",
    "Der Import wurde vom Benutzer abgebrochen oder es trat ein Fehler auf.",
    "Die Austauschdatei konnte nicht gefunden werden.",
    "Die Austauschdatei konnte nicht ge\xF6" "ffnet werden.",
    "Es konnte kein Datensatz in die darunterliegende Datenbank eingef\xFCgt werden.",
    "Unbekannter Fehler.",
    "Unbekannter Fehler.",
    "Unbekannter Fehler.",
    "Unbekannter Fehler.",
    "Es konnte kein Datensatz aus der darunterliegenden Datenbank entfernt werden.",
    "Es konnte kein Datensatz aus der darunterliegenden Datenbank upgedatet werden.",
    "Fehler beim Lesen der Datei!\nDie Datei ist defekt",
    "Fehler beim Schreiben der Datei!",
};
constexpr int32_t kMessageCount = sizeof kMessages / sizeof kMessages[0];
constexpr int32_t kActionMessageCode = VERDAL_ERR_ACTION;
static_assert(kMessageCount == VERDAL_ERR_WRITE_FILE + 1, "every code below the action message has its text");

}  // namespace

int32_t LastError() { return g_lastError; }
void SetLastError(VerdalError code) { g_lastError = code; }

const char* ErrorMessage(int32_t code) {
  if (code == kActionMessageCode) return g_actionMessage.c_str();
  if (code >= 0 && code < kMessageCount) return kMessages[code];
  return "Unbekannter Fehler.";
}

void SetActionMessage(const char* text) { g_actionMessage = text != nullptr ? text : ""; }

}  // namespace verdal::engine
