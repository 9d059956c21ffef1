#include "query/qx_err_defs.h"

namespace verdal::query {

const char* const QX_ErrDefs::kMessages[QX_ErrDefs::kCount] = {
    "Speicherreservierung fehlgeschlagen",
    "keine g\xFCltige Abfrage definiert",
    "leerer Eingabestring",
    "numerisches Argument erwartet",
    "Gleitkomma-Argument nicht im erlaubten Bereich",
    "Gleitkomma-Wertebereich \xFC" "berschritten",
    "Gleitkomma-Wertebereich unterschritten",
    "Division durch 0",
    "Arithmetischer Fehler",
    "Integer-Wertebereich \xFC" "berschritten",
    "String-Argument erwartet",
    "'var' erwartet",
    "Variablen-Name erwartet",
    "maximal m\xF6gliche Anzahl an Definitionen \xFC" "berschritten",
    "Identifier ist bereits definiert",
    "unbekannter Identifier",
    "illegaler Feldindex",
    "Feld-Zugriff fehlgeschlagen",
    "Zuweisung fehlgeschlagen",
    "Zuweisung an schreibgesch\xFCtztes Feld",
    "Eingabe-Name zu lang",
    "Eingabe-String zu lang",
    "fehlendes Anf\xFChrungszeichen am Stringende",
    "illegales Zeichen",
    "Syntax Fehler",
    "illegale Zuweisung",
    "':=' Zuweisung",
    "'dann' erwartet",
    "'mache' erwartet",
    "'bis' erwartet",
    "';' erwartet",
    "':' erwartet",
    "'}' erwartet",
    "')' erwartet",
    "'[' erwartet",
    "']' erwartet",
    "'(' als Anfang der Parameterliste erwartet",
    "',' bzw. Parameter erwartet",
    "')' als Ende der Parameterliste erwartet",
    "Abbruch durch Benutzer!",
    "Zugriff auf ung\xFCltigen Index in der Zeichenkette!",
};

int32_t QX_ErrDefs::IndexOf(QX_Error error) {
  for (int32_t i = 0; i < kCount; ++i) {
    if (kMessages[i] == error) return i;
  }
  return -1;
}

}  // namespace verdal::query
