// The e-mail action through the C interface against a real SMTP server on the loopback interface:
// options made on their sheet, addresses from the records' fields, templates merged per record,
// and what the user is told.
#include <gtest/gtest.h>

#include <ctime>
#include <functional>

#include "field_helpers.h"
#include "scripted_ui.h"
#include "support/smtp_sink.h"
#include "verdal.h"

namespace {

constexpr int32_t kAttach = 2, kTemplate = 4;
constexpr const char* kVariables[] = {"VERDAL_SMTP_URL", "VERDAL_SMTP_USER", "VERDAL_SMTP_PASSWORD", "VERDAL_SMTP_FROM", "TMPDIR"};

std::string Counts(int sent, int failed, int twice) {
  return "Verdal Mailtest|Es wurden " + std::to_string(sent) + " Emails versandt.\n" + std::to_string(failed) +
         " Emails konnten nicht versandt werden.\n" + std::to_string(twice) + " Emails waren mehrfach vorhanden.|0|64";
}

std::string g_mappedFolder;  // where the path mapper sends "X:\"
void MapDriveX(char path[260]) {
  if (std::string(path).rfind("X:\\", 0) == 0) std::snprintf(path, 260, "%s/%s", g_mappedFolder.c_str(), std::string(path + 3).c_str());
}

// The server, its login and a folder for temporary files in the environment; a user interface
// whose sheets the test runs, which records message boxes and opened documents and stops when
// asked the stopAt-th time.
class Mail : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(sink_.port(), 0) << "the SMTP server did not start";
    for (const char* name : kVariables)
      if (const char* value = getenv(name)) saved_.emplace_back(name, value);
    Configure();
    VERDAL_SetApplicationName("Verdal Mailtest");
    db_ = OpenMemoryDatabase();
    for (const char* name : {"NAME", "NAME2", "Mail", "Mail2"}) AddField(db_, name, 0);
  }
  void TearDown() override {
    for (const char* name : kVariables) unsetenv(name);
    for (const auto& [name, value] : saved_) setenv(name.c_str(), value.c_str(), 1);
    VERDAL_SetPathMapper(nullptr);
    VERDAL_CloseAllDBs();
  }
  void Configure() {
    setenv("VERDAL_SMTP_URL", sink_.url().c_str(), 1);
    setenv("VERDAL_SMTP_USER", "verdal", 1);
    setenv("VERDAL_SMTP_PASSWORD", "geheim", 1);
    setenv("VERDAL_SMTP_FROM", "rundbrief@verein.example", 1);
    setenv("TMPDIR", dir_.path().c_str(), 1);
  }

  std::vector<int32_t> Records(std::vector<std::vector<const char*>> rows) {
    std::vector<int32_t> cursors;
    for (const auto& values : rows) {
      cursors.push_back(VERDAL_AddRecord(db_, VERDAL_CURSOR_ROOT, "", 0, nullptr, -1, 0, nullptr));
      for (size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(VERDAL_SetData(db_, static_cast<int32_t>(i), values[i], cursors.back(), 0, nullptr, nullptr), 1);
    }
    return cursors;
  }

  // An e-mail option made on its sheet as a user would.
  void Option(const char* name, std::vector<const char*> fields, const std::string& attachment = "", int32_t flags = 0,
              const char* subject = "Rundbrief", const char* message = "Text") {
    MakeOption(ui_, db_, VERDAL_OPTION_EMAIL, name, {fields.begin(), fields.end()}, [&](const VerdalSheet* s) {
      Set(s, 1, "Betreff:", subject);
      Set(s, 1, "Nachricht:", message);
      Set(s, 1, "Dateianhang", flags & kAttach ? "1" : "0");
      Set(s, 1, "", attachment.c_str());
      Set(s, 1, "Es handelt sich um eine Templatedatei", flags & kTemplate ? "1" : "0");
    });
  }

  int32_t Run(const char* name, const std::vector<int32_t>& cursors) {
    return VERDAL_ExecAction(db_, VERDAL_OPTION_EMAIL, name, static_cast<int32_t>(cursors.size()), cursors.data());
  }

  std::vector<std::string> Recipients() const {
    std::vector<std::string> to;
    for (const SunkMail& mail : sink_.Mails()) to.insert(to.end(), mail.envelopeTo.begin(), mail.envelopeTo.end());
    return to;
  }

  SmtpSink sink_{{"--auth", "verdal:geheim", "--refuse", "abgelehnt"}};
  TempFolder dir_;
  std::vector<std::pair<std::string, std::string>> saved_;
  ScriptedUi ui_;
  VerdalHandle db_ = 0;
};

}  // namespace

TEST_F(Mail, TemplateMergedForEachAddressOfEachRecord) {
  std::ofstream(dir_ / "brief.html") << "$NAME2/$name $DATE";
  g_mappedFolder = dir_.path();
  VERDAL_SetPathMapper(MapDriveX);
  Option("Brief", {"Mail", "Mail2"}, "X:\\brief.html", kAttach | kTemplate, "Gr\xFC\xDF" "e", "Hallo,\nder Brief.");
  ASSERT_EQ(Run("brief", Records({{"Anna", "Zeile 1\r\nZeile 2", "anna@verein.example", "anna@privat.example"},
                                  {"Bodo", "$DATE", "bodo@verein.example"}})), 1);
  char today[16];
  const std::time_t now = std::time(nullptr);
  std::strftime(today, sizeof today, "%d.%m.%Y", std::localtime(&now));
  const std::string anna = std::string("Zeile 1<br>Zeile 2/Anna ") + today, bodo = today + ("/Bodo " + std::string(today));
  const std::pair<std::string, std::string> expected[] = {
      {"anna@verein.example", anna}, {"anna@privat.example", anna}, {"bodo@verein.example", bodo}};
  const std::vector<SunkMail> mails = sink_.Mails();
  ASSERT_EQ(mails.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(mails[i].envelopeTo, std::vector<std::string>{expected[i].first});
    EXPECT_EQ(mails[i].headers.at("To"), expected[i].first);
    EXPECT_EQ(mails[i].headers.at("From"), "rundbrief@verein.example");
    EXPECT_EQ(mails[i].headers.at("Subject"), "Gr\xC3\xBC\xC3\x9F" "e");
    EXPECT_NE(mails[i].headers.at("Message-ID"), mails[(i + 1) % 3].headers.at("Message-ID"));
    EXPECT_EQ(mails[i].body, "Hallo,\r\nder Brief.");
    EXPECT_EQ(mails[i].attachments, (std::map<std::string, std::string>{{"brief.html", expected[i].second}}));
  }
  EXPECT_EQ(ui_.boxes, std::vector<std::string>{Counts(3, 0, 0)});
  EXPECT_TRUE(ui_.opened.empty());
  for (const auto& entry : std::filesystem::directory_iterator(dir_.path()))
    EXPECT_EQ(entry.path().filename(), "brief.html");  // the run's temporary folder is gone
}

TEST_F(Mail, EachAddressOnceFailuresListedAndOpened) {
  Option("Rund", {"Mail", "NAME"}, "", kAttach);  // an empty path: no attachment
  ASSERT_EQ(Run("Rund", Records({{"kein Name", "", "a@verein.example; B@verein.example\nkeine Adresse"},
                                 {"c@verein.example", "", "mailto:A@VEREIN.EXAMPLE"},
                                 {"ohne", "", "abgelehnt@verein.example"},
                                 {"b@VEREIN.example", "", "MAILTO:c@verein.example"}})), 1);
  // "MAILTO:" in capitals stays: another address, which the server refuses as malformed.
  EXPECT_EQ(Recipients(), (std::vector<std::string>{"a@verein.example", "B@verein.example", "c@verein.example"}));
  for (const SunkMail& mail : sink_.Mails()) EXPECT_TRUE(mail.attachments.empty());
  EXPECT_EQ(ui_.boxes, std::vector<std::string>{Counts(3, 3, 2)});
  ASSERT_EQ(ui_.opened.size(), 1u);
  const std::vector<uint8_t> failed = TempFolder::Read(ui_.opened[0]);
  EXPECT_EQ(ui_.opened[0].substr(ui_.opened[0].size() - 4), ".txt");
  EXPECT_EQ(std::string(failed.begin(), failed.end()),
            "keine Adresse\r\nabgelehnt@verein.example\r\nMAILTO:c@verein.example\r\n");
}

TEST_F(Mail, ARunThatCannotStartSaysWhyAndSendsNothing) {
  const std::string missing = dir_ / "fehlt.rtf";
  Option("Fehlt", {"Mail"}, missing, kAttach);
  Option("Ohne", {"Mail"});
  const std::vector<int32_t> record = Records({{"Anna", "", "anna@verein.example"}});
  const std::string noMapi = "Die MAPI-Schnittstelle kann nicht initialisiert werden!";
  const struct {
    const char* option;
    const char* variable;
    const char* value;  // null: unset
    int32_t error;
    std::string message;
  } cases[] = {
      {"Fehlt", "", "", VERDAL_ERR_ACTION, "Der Dateianhang '" + missing + "' konnte nicht gefunden werden!"},
      {"Ohne", "VERDAL_SMTP_URL", nullptr, VERDAL_ERR_ACTION, noMapi},
      {"Ohne", "VERDAL_SMTP_URL", "http://127.0.0.1/", VERDAL_ERR_ACTION, noMapi},
      {"Ohne", "VERDAL_SMTP_URL", "smtp://127.0.0.1:1", VERDAL_ERR_ACTION, "Fehler beim Logon!"},  // a closed port
      {"Ohne", "VERDAL_SMTP_PASSWORD", "falsch", VERDAL_ERR_ACTION, "Fehler beim Logon!"},
      {"Keine", "", "", VERDAL_ERR_INPUT, "Ung\xFCltige Eingabedaten."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    Configure();
    if (c.value == nullptr) unsetenv(c.variable);
    else if (*c.variable != '\0') setenv(c.variable, c.value, 1);
    EXPECT_EQ(Run(c.option, record), 0);
    EXPECT_EQ(VERDAL_GetLastError(), c.error);
    EXPECT_EQ(VERDAL_GetLastErrorString(c.error), c.message);
  }
  EXPECT_TRUE(sink_.Mails().empty());
  EXPECT_TRUE(ui_.boxes.empty());
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));  // no temporary folder left behind
}

TEST_F(Mail, AStopEndsTheRunBetweenRecords) {
  Option("Rund", {"Mail", "Mail2"});
  ui_.stopAfter = 3;
  ASSERT_EQ(Run("Rund", Records({{"a", "", "a@verein.example", "a2@verein.example"}, {"b", "", "b@verein.example"},
                                 {"c", "", "c@verein.example"}})), 1);
  EXPECT_EQ(Recipients(), (std::vector<std::string>{"a@verein.example", "a2@verein.example", "b@verein.example"}));
  EXPECT_EQ(ui_.boxes, std::vector<std::string>{Counts(3, 0, 0)});
}
