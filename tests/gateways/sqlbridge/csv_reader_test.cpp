#include "csv_reader.h"

#include <gtest/gtest.h>

#include "api/temp_folder.h"

namespace verdal::sqlbridge {
namespace {

using Records = std::vector<std::vector<std::string>>;

struct CsvCase {
  const char* name;
  char separator;
  char delimiter;
  std::string text;
  Records records;
  CsvReader::Status last = CsvReader::Status::kEnd;  // what ends the reading
};

const CsvCase kCases[] = {
    {"plain", ';', '"', "a;b\nc;d\n", {{"a", "b"}, {"c", "d"}}},
    {"no final line end", ';', '"', "a;b\nc;d", {{"a", "b"}, {"c", "d"}}},
    {"crlf and lone cr", ',', '"', "a,b\r\nc,d\re,f\r\n", {{"a", "b"}, {"c", "d"}, {"e", "f"}}},
    {"separator inside quotes", ';', '"', "\"a;b\";c\n", {{"a;b", "c"}}},
    {"doubled delimiter", ';', '"', "\"say \"\"hi\"\"\";x\n", {{"say \"hi\"", "x"}}},
    {"line breaks inside quotes", ';', '"', "\"l1\r\nl2\nl3\";z\nn;m\n", {{"l1\r\nl2\nl3", "z"}, {"n", "m"}}},
    {"byte order mark", ';', '"', "\xEF\xBB\xBFid;name\n1;x\n", {{"id", "name"}, {"1", "x"}}},
    {"blank lines skipped", ';', '"', "\n  \r\na;b\n\n\nc\n", {{"a", "b"}, {"c"}}},
    {"empty cells kept", ';', '"', ";;\n\"\"\n", {{"", "", ""}, {""}}},
    {"ragged rows", ';', '"', "a;b;c\nd\ne;f;g;h\n", {{"a", "b", "c"}, {"d"}, {"e", "f", "g", "h"}}},
    {"blanks trimmed outside quotes only", ';', '"', "  a b  ; \" c \" ;\t\"d\"x \n", {{"a b", " c ", "dx"}}},
    {"delimiter inside a cell is literal", ';', '"', "5\" disk;ab\"c\n", {{"5\" disk", "ab\"c"}}},
    {"no delimiter", ',', '\0', "\"a\",b\n", {{"\"a\"", "b"}}},
    {"tab separator keeps no tab as blank", '\t', '"', " a \t\tb\n", {{"a", "", "b"}}},
    {"blank separator", ' ', '\'', "a  'b c' d\n", {{"a", "", "b c", "d"}}},
    {"unterminated quote takes the rest", ';', '"', "a;b\n\"open;x\ny\n", {{"a", "b"}, {"open;x\ny\n"}}, CsvReader::Status::kUnterminated},
    {"delimiter equal to separator is none", ';', ';', "a;b\n", {{"a", "b"}}},
    {"only a byte order mark", ';', '"', "\xEF\xBB\xBF", {}},
};

Records ReadAll(CsvReader& reader, CsvReader::Status& last) {
  Records records;
  std::vector<std::string> cells;
  for (;;) {
    last = reader.Next(cells);
    if (last == CsvReader::Status::kEnd) break;
    records.push_back(cells);
    if (last != CsvReader::Status::kRecord) break;
  }
  return records;
}

TEST(CsvReaderTest, ReadsEachCaseFromMemoryAndFromAFile) {
  TempFolder folder;
  for (const CsvCase& c : kCases) {
    SCOPED_TRACE(c.name);
    CsvReader memory({c.separator, c.delimiter});
    memory.Assign(c.text);
    CsvReader::Status last;
    EXPECT_EQ(ReadAll(memory, last), c.records);
    EXPECT_EQ(last, c.last);

    const std::string path = folder / "case.csv";
    TempFolder::Write(path, std::vector<uint8_t>(c.text.begin(), c.text.end()));
    CsvReader file({c.separator, c.delimiter});
    ASSERT_TRUE(file.Open(path.c_str()));
    EXPECT_EQ(ReadAll(file, last), c.records);
    EXPECT_EQ(last, c.last);
  }
}

// Records that straddle the reader's buffer refills: a CRLF, a doubled delimiter and a quoted
// line break each fall on a boundary somewhere in the file.
TEST(CsvReaderTest, RecordsAcrossBufferBoundariesComeWhole) {
  TempFolder folder;
  std::string text;
  Records expected;
  for (int i = 0; text.size() < 300000; ++i) {
    const std::string cell(static_cast<size_t>(i % 97), 'x');
    text += "\"" + cell + "\"\"q\r\n\";" + std::to_string(i) + "\r\n";
    expected.push_back({cell + "\"q\r\n", std::to_string(i)});
  }
  const std::string path = folder / "big.csv";
  TempFolder::Write(path, std::vector<uint8_t>(text.begin(), text.end()));
  CsvReader reader({';', '"'});
  ASSERT_TRUE(reader.Open(path.c_str()));
  CsvReader::Status last;
  EXPECT_EQ(ReadAll(reader, last), expected);
  EXPECT_EQ(last, CsvReader::Status::kEnd);
}

TEST(CsvReaderTest, MissingFileDoesNotOpen) {
  CsvReader reader({';', '"'});
  EXPECT_FALSE(reader.Open("/nonexistent/verdal/none.csv"));
}

}  // namespace
}  // namespace verdal::sqlbridge
