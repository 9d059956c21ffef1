// Option containers: every record shape against bytes built from the format tables, the
// refusals at reading, and which records an owner sees.
#include <gtest/gtest.h>

#include <tuple>

#include "options/config_container.h"
#include "support/mem_bytes.h"

using namespace verdal;
using namespace verdal::options;
using test_support::Bytes;
using test_support::WrittenBy;

namespace {

using S = std::string;
using L = std::vector<std::string>;

Bytes Container(int32_t version, const std::string& defaultName, int32_t count) {
  return Bytes().Le(kCollectionMark, 4).I32(version).Str(defaultName).I32(count);
}
Bytes Head(int32_t recordVersion, int32_t owner, const std::string& name, const std::string& comment) {
  return Bytes().Le(kEntryMark, 4).I32(recordVersion).I32(1).I32(owner).Str(name).Str(comment);
}

// Reads `in` and checks that it writes `out`; the container, for its members.
template <class C>
C ReadBack(const Bytes& in, const Bytes& out) {
  C c;
  EXPECT_TRUE(c.Read(*test_support::FileOf(in)));
  EXPECT_EQ(WrittenBy(c), out.b);
  return c;
}

}  // namespace

TEST(ConfigContainer, EachRecordShapeReadsAndWritesBackByteForByte) {
  Bytes view = Container(1, "Ansicht", 1).Append(Head(2, 7, "Ansicht", "Kommentar")).I32(2).Str("Name").Str("Ort");
  auto v = ReadBack<TFieldViewContainer>(view, view).records.at(0);
  EXPECT_EQ(std::tie(v.owner, v.name, v.comment, v.fields),
            std::make_tuple(7, S("Ansicht"), S("Kommentar"), L{"Name", "Ort"}));

  Bytes clip = Container(1, "", 1).Append(Head(2, -1, "K", "")).U8(3).U8(1).I32(1).Str("Name");
  auto c = ReadBack<TClipBoardContainer>(clip, clip).records.at(0);
  EXPECT_EQ(std::tie(c.recordSeparator, c.fieldSeparator, c.fields),
            std::make_tuple(uint8_t{3}, uint8_t{1}, L{"Name"}));

  Bytes exp = Container(1, "", 2).Append(Head(1, -1, "E", "")).I32(3).U8(7).U8(0).U8(9);
  exp.Append(Head(1, -1, "Leer", "")).I32(0);
  auto e = ReadBack<TFileExportContainer>(exp, exp).records;
  EXPECT_EQ(e.at(0).definition, (std::vector<uint8_t>{7, 0, 9}));
  EXPECT_TRUE(e.at(1).definition.empty());

  Bytes mail = Container(1, "", 1).Append(Head(2, -1, "M", "")).I32(1).Str("Mail");
  mail.Str("Betreff").Str("Text").Str("/tmp/a").I32(TEmailData::kAttach | TEmailData::kTemplate);
  auto m = ReadBack<TEmailContainer>(mail, mail).records.at(0);
  EXPECT_EQ(std::tie(m.fields, m.subject, m.message, m.attachment, m.flags),
            std::make_tuple(L{"Mail"}, S("Betreff"), S("Text"), S("/tmp/a"), 6));

  // The first e-mail version had no address fields; it is written back in the current form.
  Bytes old = Container(1, "", 1).Append(Head(1, -1, "M", "")).Str("B").Str("").Str("").I32(1);
  Bytes current = Container(1, "", 1).Append(Head(2, -1, "M", "")).I32(0).Str("B").Str("").Str("").I32(1);
  auto o = ReadBack<TEmailContainer>(old, current).records.at(0);
  EXPECT_EQ(std::tie(o.subject, o.flags), std::make_tuple(S("B"), TEmailData::kSpool));

  Bytes repl = Container(1, "", 1).Append(Head(1, 2, "R", "")).I32(1).Str("Ort").Str("neu").I32(-9);
  auto r = ReadBack<TReplaceContainer>(repl, repl).records.at(0);
  EXPECT_EQ(std::tie(r.owner, r.fields, r.text, r.spare), std::make_tuple(2, L{"Ort"}, S("neu"), -9));

  // A header version from 2 on carries no owner, name or comment: 16 bytes for this record.
  Bytes bare = Container(1, "", 1).Le(kEntryMark, 4).I32(2).I32(2).I32(0);
  ReadBack<TFieldViewContainer>(bare, Container(1, "", 1).Append(Head(2, -1, "", "")).I32(0));
}

TEST(ConfigContainer, RefusesNewerVersionsKeepingTheRecordsBefore) {
  TFieldViewContainer c;
  c.Add("vorher");
  EXPECT_FALSE(c.Read(*test_support::FileOf(Container(2, "", 0))));
  EXPECT_TRUE(c.records.empty());

  Bytes good = Head(2, -1, "gut", "").I32(0);
  EXPECT_FALSE(c.Read(*test_support::FileOf(Container(1, "", 2).Append(good).Append(Head(3, -1, "neu", "")).I32(0))));
  ASSERT_EQ(c.records.size(), 1u);
  EXPECT_EQ(c.records[0].name, "gut");
  TFileExportContainer e;  // a kind of record version 1 refuses 2
  EXPECT_FALSE(e.Read(*test_support::FileOf(Container(1, "", 1).Append(Head(2, -1, "b", "")).I32(0))));
}

TEST(ConfigContainer, OwnersSeeTheirOwnAndSharedRecords) {
  TClipBoardContainer c;
  for (int32_t owner : {-1, 7, 8}) {
    c.records.emplace_back();
    c.records.back().owner = owner;
    c.records.back().name = "von " + std::to_string(owner);
  }
  c.owner = 7;
  ASSERT_EQ(c.GetCount(), 2);
  EXPECT_STREQ(c.GetName(1), "von 7");
  EXPECT_EQ(c.GetName(2), nullptr);
  TClipBoardContainer back;
  ASSERT_TRUE(back.Read(*test_support::FileOf(Bytes{WrittenBy(c)})));
  EXPECT_EQ(back.records.size(), 3u);  // Write takes every owner's records

  EXPECT_EQ(c.Add("VON 7"), -1);  // only case differs
  EXPECT_EQ(c.Add("von 8"), 2);   // the owner 8 record is not visible here
  ASSERT_EQ(c.records.size(), 4u);
  EXPECT_EQ(c.records[3].owner, 7);
  c.owner = 3;
  EXPECT_EQ(c.Copy(0, "Kopie"), 1);  // the copy of the shared record becomes owner 3's
  EXPECT_EQ(std::tie(c.records.back().owner, c.records.back().name), std::make_tuple(3, S("Kopie")));
  EXPECT_EQ(c.Copy(5, nullptr), -1);
}
