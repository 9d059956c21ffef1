// The export to delimited text: the bytes written, a round trip through the bridge's own text
// import, the definition brought up to date, and failures that leave no file behind.
#include <gtest/gtest.h>

#include "bridge_export.h"
#include "bridge_import.h"
#include "bridge_test_support.h"
#include "exchange/export_exchange.h"
#include "export_test_support.h"
#include "platform/file_system.h"

namespace verdal::sqlbridge {
namespace {

using testing::ExportTable;
using testing::FileText;
using testing::WriteText;
constexpr int32_t kDefinition = exchange::kExportDefinitionFile;
constexpr int32_t kCategories = exchange::kExportCategoryColumns;

class TextExportTest : public testing::ExportFixture {
 protected:
  // Exports through a definition with these keys into out.csv and gives the file's bytes.
  std::string ExportWith(const std::string& keys, int32_t flags = kDefinition | kCategories) {
    WriteText(folder_ / "def.exp", "[ODBC_EXPORT]\nDATASOURCE=out.csv\n" + keys);
    std::remove((folder_ / "out.csv").c_str());
    EXPECT_EQ(Export(folder_ / "def.exp", flags), 1) << keys;
    return FileText(folder_ / "out.csv");
  }
};

TEST_F(TextExportTest, DataFileNamedDirectly) {
  ASSERT_EQ(Export(folder_ / "plain.csv", kCategories), 1);
  EXPECT_EQ(FileText(folder_ / "plain.csv"),
            "Region;City;Name;Price;Qty;Day;At;Stamp;OK\r\n"
            "Nord;Kiel;\"Anna; \"\"A\"\"\";1,50;3;29.02.2024;13:05:09;01.03.2024 08:09:10;Ja\r\n"
            "S\xC3\xBC" "d;;\" Bert\r\nZeile 2 \";-2,25;12345678901;;;;Nein\r\n"
            ";;\xE2\x82\xAC & <b>'x'</b>;;;;;;\r\n");
  // Without the flag the companion is not read; a tab file takes tabs.
  ASSERT_EQ(Export(folder_ / "plain.TSV", 0), 1);
  EXPECT_EQ(FileText(folder_ / "plain.TSV").substr(0, 62),
            "Region\tCity\tName\tPrice\tQty\tDay\tAt\tStamp\tOK\r\n\t\t\"Anna; \"\"A\"\"\"\t1,");
}

TEST_F(TextExportTest, DefinitionKeys) {
  const std::pair<std::string, std::string> cases[] = {
      {"TXT_EXPORT_SEPTYPE=2\nTXT_EXPORT_STRING_DELIM='\nTXT_EXPORT_CHARSET=cp1252\nTXT_EXPORT_USECOLUMNS=0\n"
       "EXPORT_VALUES=INTERNAL\nEXPORT_FIELDS=price, NAME\n",
       "Nord,Kiel,1.50,Anna; \"A\"\r\nS\xFC" "d,,-2.25,' Bert\r\nZeile 2 '\r\n,,,'\x80 & <b>''x''</b>'\r\n"},
      {"TXT_EXPORT_SEPTYPE=3\nTXT_EXPORT_STRING_DELIM=\nEXPORT_FIELDS=name,ok\n",
       "Region City Name OK\r\nNord Kiel Anna;_\"A\" Ja\r\nS\xC3\xBC" "d  _Bert_Zeile_2_ Nein\r\n"
       "  \xE2\x82\xAC_&_<b>'x'</b> \r\n"},
      {"EXPORT_FORMAT=TSV\nEXPORT_COLUMN_NAMES=INTERNAL\nEXPORT_FIELDS=ok\nTXT_EXPORT_STRING_DELIM=\n",
       "CAT1\tCAT2\tok\r\nNord\tKiel\tJa\r\nS\xC3\xBC" "d\t\tNein\r\n\t\t\r\n"},
      {"TXT_EXPORT_SEPTYPE=4\nTXT_EXPORT_USER_SEP=|x\nEXPORT_FIELDS=qty\nTXT_EXPORT_USECOLUMNS=0\n",
       "Nord|Kiel|3\r\nS\xC3\xBC" "d||12345678901\r\n||\r\n"},
  };
  for (const auto& [keys, expected] : cases) EXPECT_EQ(ExportWith(keys), expected) << keys;
}

// Whatever the values hold, the bridge's own import of the written file gives them back.
TEST_F(TextExportTest, RoundTripThroughTheTextImport) {
  ExportTable t;
  t.columns = {{"a", "A", 12, 10}, {"b", "B", 12, 10}};
  const std::vector<std::vector<std::string>> values = {
      {"\xEF\xBB\xBF" "bom", ""}, {" lead", "trail "}, {"a;b,c", "q\"q 'it'"}, {"line1\r\nline2", "x\ry\nz"},
      {"\x80uro \xE4\x81", "\t tab"}, {"  ", ""}, {"", ""}};
  for (const auto& row : values) t.rows.push_back({row[0], row[0], row[1], row[1]});
  t.Write(exchange_);
  const char* formats[][3] = {{"1", "\"", "UTF-8"}, {"2", "'", "CP1252"}, {"0", "\"", "CP1252"}, {"3", "\"", "UTF-8"}};
  for (const auto& [separator, delimiter, charset] : formats) {
    for (const char* fields : {"a,b", "a"}) {  // one column: an empty value must not become a blank line
      const std::string keys = std::string("TXT_EXPORT_SEPTYPE=") + separator + "\nTXT_EXPORT_STRING_DELIM=" +
                               delimiter + "\nTXT_EXPORT_CHARSET=" + charset + "\nTXT_EXPORT_USECOLUMNS=0\n" +
                               "EXPORT_FIELDS=" + fields + "\n";
      ExportWith(keys);
      WriteText(folder_ / "in.imp", std::string("[ODBC_IMPORT]\nTXT_IMPORT_USE=1\nDATASOURCE=out.csv\n") +
                                        "TXT_IMPORT_USECOLUMNS=0\nNUM_SRC_FIELDS=2\nSRC_FIELD0=a\nSRC_FIELD1=b\n" +
                                        "TXT_IMPORT_SEPTYPE=" + separator + "\nTXT_IMPORT_STRING_DELIM=" + delimiter +
                                        "\nTXT_IMPORT_CHARSET=" + charset + "\n");
      const std::string definition = folder_ / "in.imp", back = folder_ / "back.tmp";
      ASSERT_EQ(RunImport(definition.c_str(), back.c_str(), nullptr, 0, 0, 0, nullptr, nullptr), 1) << keys;
      testing::Exchange x;
      ASSERT_TRUE(testing::ReadExchange(back, x));
      std::vector<std::vector<std::string>> expected = values;
      if (std::string(fields) == "a")
        for (auto& row : expected) row[1] = "";
      EXPECT_EQ(x.rows, expected) << keys;
    }
  }
}

TEST_F(TextExportTest, EditOnlyCompletesTheDefinitionAndWritesNothingElse) {
  const int32_t edit = kDefinition | exchange::kExportEditOnly;
  const std::string fresh = folder_ / "new.exp";
  ASSERT_EQ(RunExport(fresh.c_str(), nullptr, nullptr, edit), 1);
  EXPECT_EQ(FileText(fresh),
            "[ODBC_EXPORT]\r\nEXPORT_FORMAT=\r\nDATASOURCE=\r\nTXT_EXPORT_SEPTYPE=1\r\nTXT_EXPORT_USER_SEP=;\r\n"
            "TXT_EXPORT_STRING_DELIM=\"\r\nTXT_EXPORT_USECOLUMNS=1\r\nTXT_EXPORT_CHARSET=UTF-8\r\nEXPORT_VALUES=\r\n"
            "EXPORT_COLUMN_NAMES=DISPLAY\r\nEXPORT_FIELDS=\r\nODBC_CONNECT=\r\nODBC_DSN=\r\nODBC_USER=\r\n"
            "ODBC_PASSWORD=\r\nODBC_TABLE=\r\nODBC_TABLE_MODE=CREATE\r\n");
  // Values and other sections stay; a blank separator keeps its quotes; no data file is written.
  WriteText(folder_ / "old.exp", "[Other]\nk=v\n[odbc_export]\nDATASOURCE=out.csv\ntxt_export_user_sep=\" \"\n");
  ASSERT_EQ(Export(folder_ / "old.exp", edit), 1);
  const std::string old = FileText(folder_ / "old.exp");
  EXPECT_EQ(old.find("[Other]\r\nk=v\r\n[odbc_export]\r\nDATASOURCE=out.csv\r\ntxt_export_user_sep=\" \"\r\n"
                     "EXPORT_FORMAT=\r\n"),
            0u) << old;
  EXPECT_NE(old.find("ODBC_TABLE_MODE=CREATE\r\n"), std::string::npos);
  EXPECT_FALSE(platform::FileExists((folder_ / "out.csv").c_str()));
  // A file that is no definition, or cannot be read, stays as it was.
  WriteText(folder_ / "data.csv", "a;b\n1;2\n");
  EXPECT_EQ(Export(folder_ / "data.csv", edit), 0);
  EXPECT_EQ(FileText(folder_ / "data.csv"), "a;b\n1;2\n");
  EXPECT_EQ(Export(folder_.path(), edit), 0);
}

TEST_F(TextExportTest, FailuresLeaveNoFileAndTheOldOneAsItWas) {
  WriteText(folder_ / "keep.csv", "old");
  const std::string good = FileText(exchange_);
  const std::pair<std::string, std::string> cases[] = {
      {good.substr(0, good.size() - 3), ""},  // cut short
      {good + "x", ""},                       // longer than its rows
      {good, "EXPORT_FIELDS=nope\n"},
      {good, "EXPORT_FORMAT=PDF\n"},
      {good, "TXT_EXPORT_STRING_DELIM=\" \"\n"},
      {good, "EXPORT_VALUES=SOME\n"}};
  for (const auto& [bytes, keys] : cases) {
    WriteText(exchange_, bytes);
    WriteText(folder_ / "def.exp", "[ODBC_EXPORT]\nDATASOURCE=keep.csv\n" + keys);
    EXPECT_EQ(Export(folder_ / "def.exp", kDefinition), 0) << keys;
    EXPECT_EQ(FileText(folder_ / "keep.csv"), "old") << keys;
    EXPECT_FALSE(platform::FileExists((folder_ / "~keep.csv").c_str()));
  }
  WriteText(exchange_, good);
  EXPECT_EQ(Export(folder_ / "out.pdf", 0), 0);
  EXPECT_EQ(Export(folder_ / "missing/out.csv", 0), 0);
  EXPECT_EQ(RunExport((folder_ / "x.csv").c_str(), (folder_ / "none.tmp").c_str(), nullptr, 0), 0);
  // The host's path mapper is asked for the target.
  static std::string mapped;
  mapped = folder_ / "mapped.csv";
  auto mapper = [](char* path) { std::snprintf(path, 260, "%s", mapped.c_str()); };
  ASSERT_EQ(RunExport("C:\\host\\name.csv", exchange_.c_str(), mapper, 0), 1);
  EXPECT_EQ(FileText(mapped).substr(0, 7), "Region;");
}

}  // namespace
}  // namespace verdal::sqlbridge
