// The option sheet as a user drives it: the names page over a collection (new, copy, delete,
// rename, import and export with their refusals), and the pages of each kind, which write only on
// OK. A host in C drives the sheets in tests/api/options_test.cpp.
#include "dialogs/option_sheet.h"

#include <gtest/gtest.h>

#include <fstream>

#include <cstring>

#include "api/temp_folder.h"
#include "engine/db_manager.h"
#include "model/fields.h"
#include "platform/language.h"
#include "sheet_driver.h"
#include "ui/scripted_host.h"

using namespace verdal;

namespace {

std::vector<std::string> Names(const options::TBaseConfigClass& c) {
  std::vector<std::string> names;
  for (int32_t i = 0; i < c.GetCount(); ++i) names.emplace_back(c.GetName(i));
  return names;
}

class OptionSheet : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::SetLanguageId(0x407);
    for (const char* name : {"Name", "Ort", "Geheim"}) {
      model::TDBFieldInfo f;
      f.name = name;
      f.type.hiddenField = name[0] == 'G';
      model::AddFieldInfo(db.store, f, -1);
    }
  }
  void TearDown() override { platform::SetLanguageId(0); }

  // Runs the sheet of the kind with the script; true when it was closed with OK.
  bool Run(int32_t kind, options::TBaseConfigClass& collection, const std::function<bool(SheetDriver&)>& script) {
    host.sheet = [&](ui::Sheet& s) {
      SheetDriver d(s);
      const bool ok = script(d);
      if (!ok) s.PressCancel();
      return ok && s.PressOk();
    };
    // The export page's bridge: appends the flags it was called with to the definition file.
    auto edit = [](const std::string& path, int32_t flags) {
      std::ofstream(path, std::ios::app) << "+" << flags;
      return true;
    };
    return dialogs::RunOptionSheet(host, nullptr, "Optionen", kind, collection, db.store, edit);
  }

  engine::TDBManager db{0};
  ScriptedHost host;
  TempFolder folder;
};

}  // namespace

TEST_F(OptionSheet, NamesPageMakesCopiesRenamesAndDeletes) {
  auto& views = db.options.fieldViews;
  views.owner = 3;
  EXPECT_FALSE(Run(6, views, [&](SheetDriver& d) {
    // An empty collection gets its first entry at once, selected and the default.
    EXPECT_EQ(d.Items(0, ""), std::vector<std::string>{"Neue Einstellung1"});
    EXPECT_EQ(views.defaultName, "Neue Einstellung1");
    d.Set(0, "Name:", "  Kunden ");
    d.Press(0, "&Neu");
    d.Set(0, "Kommentar:", "erste");
    d.Press(0, "&Neu");  // the name box holds a name in use
    d.Press(0, "&Kopieren");
    for (int i = 0; i < 2; ++i) {  // the second finds "Kopie von Kunden" taken: a number follows
      d.Set(0, "", "Kunden");
      d.Press(0, "&Kopieren");
    }
    EXPECT_EQ(d.Items(0, ""), (std::vector<std::string>{"Neue Einstellung1", "Kunden", "Neue Einstellung2",
                                                         "Kopie von Neue Einstellung2", "Kopie von Kunden",
                                                         "Kopie von Kunden2"}));
    EXPECT_EQ(views.At(1)->comment, "erste");  // stored when the selection left it
    d.Set(0, "", "kunden");                     // the list selects by its exact lines only
    EXPECT_EQ(d.Get(0, ""), "Kopie von Kunden2");
    for (const char* name : {"", "   ", "KUNDEN", "kopie von kunden2", " Stamm "}) {
      d.Set(0, "Name:", name);
      d.Press(0, "&Umbenennen");
    }
    EXPECT_EQ(host.messages, (std::vector<std::string>{"Ung\xFCltige Zeichenkettenl\xE4nge!",
                                                        "Ung\xFCltige Zeichenkettenl\xE4nge!",
                                                        "Eine Einstellung mit diesem Namen existiert bereits!"}));
    EXPECT_EQ(d.Get(0, ""), "Stamm");
    EXPECT_EQ(views.defaultName, "Stamm");
    host.messages.clear();
    host.boxAnswers = {ui::Answer::kNo, ui::Answer::kYes, ui::Answer::kYes};
    d.Set(0, "", "Neue Einstellung2");
    d.Press(0, "&L\xF6schen");  // answered no
    d.Press(0, "&L\xF6schen");
    EXPECT_EQ(d.Get(0, ""), "Kopie von Neue Einstellung2");  // the same position
    d.Set(0, "", "Stamm");
    d.Press(0, "&L\xF6schen");
    EXPECT_EQ(d.Get(0, ""), "Kopie von Kunden");  // the last one
    EXPECT_EQ(host.messages, std::vector<std::string>(3, "Soll dieser Eintrag wirklich gel\xF6scht werden?"));
    return false;
  }));
  // Cancelled: what the names page did stays. Every record took the collection's owner.
  EXPECT_EQ(Names(views), (std::vector<std::string>{"Neue Einstellung1", "Kunden", "Kopie von Neue Einstellung2",
                                                     "Kopie von Kunden"}));
  for (const auto& r : views.records) EXPECT_EQ(r.owner, 3);

  platform::SetLanguageId(0x409);
  views.defaultName = "Kunden";
  Run(6, views, [&](SheetDriver& d) {
    EXPECT_EQ(d.Get(0, "Name:"), "Kunden");
    EXPECT_EQ(d.Get(0, "Kommentar:"), "erste");
    d.Press(0, "&Neu");
    d.Press(0, "&Kopieren");
    EXPECT_EQ(d.Get(0, ""), "Copy of New Configuration1");
    return true;
  });
}

TEST_F(OptionSheet, ImportAndExportGoThroughSettingsFiles) {
  auto& replacements = db.options.replacements;
  replacements.Add("Alt");
  replacements.Add("Zweit");
  replacements.defaultName = "Zweit";
  const std::vector<uint8_t> before = StoredBytes(replacements);
  const std::string file = folder / "ersetzen.replace";
  const std::string junk = folder / "junk.replace";
  TempFolder::Write(junk, {0x4B, 0x66, 0x0B, 0x04, 0xF3, 0xEE, 0x27});  // cut short
  host.files = {file, folder / "fehlt/x.replace", junk, folder / "fehlt.replace", file};
  Run(10, replacements, [&](SheetDriver& d) {
    d.Set(0, "Kommentar:", "mit Kommentar");
    d.Press(0, "&Export");  // the comment box goes into the file
    d.Press(0, "&Export");
    d.Press(0, "&Neu");
    d.Press(0, "&Import");
    d.Press(0, "&Import");
    EXPECT_EQ(d.Items(0, "").size(), 3u);  // refused files change nothing
    d.Set(0, "", "Alt");
    d.Press(0, "&Import");
    EXPECT_EQ(d.Items(0, ""), (std::vector<std::string>{"Alt", "Zweit"}));
    EXPECT_EQ(d.Get(0, ""), "Zweit");  // the file's default
    EXPECT_EQ(d.Get(0, "Kommentar:"), "mit Kommentar");
    return false;
  });
  EXPECT_EQ(host.messages, (std::vector<std::string>{"Fehler beim Schreiben!", "Falscher Dateityp oder Datei defekt!",
                                                     "Falscher Dateityp oder Datei defekt!"}));
  ASSERT_EQ(host.fileRequests.size(), 5u);
  for (size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(host.fileRequests[i].filter, "Ersetzen-Einstellung (*.replace)|*.replace|");
    EXPECT_EQ(host.fileRequests[i].save, i < 2);
  }
  replacements.At(1)->comment.clear();
  EXPECT_EQ(StoredBytes(replacements), before);
}

TEST_F(OptionSheet, KindPagesWriteOnlyOnOk) {
  const std::string pick = folder / "anhang.txt";
  struct Case {
    int32_t kind;
    options::TBaseConfigClass& collection;
    std::vector<std::string> pages;
    std::function<void(SheetDriver&)> edit;
    std::function<void()> check;
  };
  auto choose = [](SheetDriver& d, int32_t page, const char* list) {
    d.Set(page, list, "Ort");
    d.Press(page, "-->");
  };
  auto& o = db.options;
  const std::vector<std::string> ort{"Ort"};
  Case cases[] = {
      {5, o.clipboard, {"Einstellungen", "Datenfelder", "Separatoren"},
       [&](SheetDriver& d) {
         choose(d, 1, "Verf\xFCgbare Felder:");
         d.Set(2, "Feldendezeichen:", "Semikolon");
         EXPECT_EQ(d.Items(2, "Satzendezeichen:").back(), "Kein Trennzeichen");
       },
       [&] {
         EXPECT_EQ(o.clipboard.At(0)->fields, ort);
         EXPECT_EQ(o.clipboard.At(0)->fieldSeparator, 3);
       }},
      {6, o.fieldViews, {"Einstellungen", "Datenfelder"}, [&](SheetDriver& d) { choose(d, 1, "Verf\xFCgbare Felder:"); },
       [&] { EXPECT_EQ(o.fieldViews.At(0)->fields, ort); }},
      {7, o.exports, {"Einstellungen", "Bearbeiten"}, [&](SheetDriver& d) { d.Press(1, "Bearbeiten..."); },
       [&] {
         // The bridge had the definition as a file, for editing only, and its answer was taken.
         const std::vector<uint8_t>& r = o.exports.At(0)->definition;
         EXPECT_EQ(std::string(r.begin(), r.end()), "alt+17408");
       }},
      {8, o.emails, {"Einstellungen", "Email-Einstellungen", "Datenfelder"},
       [&](SheetDriver& d) {
         d.Set(1, "Betreff:", "Hallo");
         d.Set(1, "Dateianhang", "1");
         d.Press(1, "...");
         choose(d, 2, "Verf\xFCgbare Felder:");
       },
       [&] {
         const options::TEmailData& r = *o.emails.At(0);
         EXPECT_EQ(r.subject, "Hallo");
         EXPECT_EQ(r.attachment, pick);
         EXPECT_EQ(r.flags, options::TEmailData::kAttach | options::TEmailData::kTemplate);
         EXPECT_EQ(r.fields, ort);
       }},
      {10, o.replacements, {"Einstellungen", "Ersetzen-Einstellungen", "Datenfelder"},
       [&](SheetDriver& d) {
         d.Set(1, "Geben Sie hier den Ersetzungstext ein:", "neu");
         choose(d, 2, "Verf\xFCgbare Felder:");
       },
       [&] {
         EXPECT_EQ(o.replacements.At(0)->text, "neu");
         EXPECT_EQ(o.replacements.At(0)->fields, ort);
       }},
      {3, db.lists, {"Einstellungen", "Sortierung"},
       [&](SheetDriver& d) { choose(d, 1, "Verf\xFCgbare Datenfelder:"); },
       [&] { EXPECT_EQ(db.lists.At(0)->items.at(0).fieldName, "Ort"); }},
  };
  db.lists.owner = 1;
  o.emails.Add("Eins");
  o.exports.Add("Eins");
  o.exports.At(0)->definition = {'a', 'l', 't'};
  o.emails.At(0)->flags = options::TEmailData::kTemplate;
  for (Case& c : cases) {
    SCOPED_TRACE(c.kind);
    c.collection.Add("Eins");
    c.collection.SetDefault("Eins");
    const std::vector<uint8_t> before = StoredBytes(c.collection);
    for (bool ok : {false, true}) {
      host.files = {pick};
      EXPECT_EQ(Run(c.kind, c.collection, [&](SheetDriver& d) {
        EXPECT_EQ(d.Pages(), c.pages);
        c.edit(d);
        return ok;
      }), ok);
      if (!ok) {
        EXPECT_EQ(StoredBytes(c.collection), before);
      }
    }
    c.check();
  }
  EXPECT_EQ(host.fileRequests.at(0).filter, "Alle Dateien (*.*)|*.*|");
}

