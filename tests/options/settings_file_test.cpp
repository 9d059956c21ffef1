// Settings files: a saved collection loads whole into another, and a file that is not one, is cut
// short or is newer leaves the collection as it was.
#include <gtest/gtest.h>

#include "api/temp_folder.h"
#include "listing/list_display.h"
#include "options/config_container.h"
#include "options/settings_file.h"
#include "support/mem_bytes.h"

using namespace verdal;
using namespace verdal::options;
using test_support::WrittenBy;

namespace {

void Fill(TBaseConfigClass& c) {
  for (int32_t owner : {0, 4}) {
    c.owner = owner;
    c.Add("Eins");
    c.SetComment(0, "Kommentar " + std::to_string(owner));
  }
  c.SetDefault("Eins");
}

}  // namespace

TEST(SettingsFile, SavedCollectionsLoadWholeAndBadFilesChangeNothing) {
  TempFolder dir;
  TEmailContainer mails, mailsBack;
  listing::TListAndSortDisplayFieldInfoMananger lists, listsBack;
  const std::pair<TBaseConfigClass*, TBaseConfigClass*> pairs[] = {{&mails, &mailsBack}, {&lists, &listsBack}};
  for (auto [c, back] : pairs) {
    Fill(*c);
    back->Add("wird ersetzt");
    ASSERT_EQ(SaveSettingsFile(*c, dir / "s"), SettingsResult::kOk);
    std::vector<uint8_t> file = TempFolder::Read(dir / "s");
    EXPECT_EQ(std::vector<uint8_t>(file.begin() + 4, file.end()), WrittenBy(*c));
    file.resize(4);
    EXPECT_EQ(file, (std::vector<uint8_t>{0x4B, 0x66, 0x0B, 0x04}));
    ASSERT_EQ(LoadSettingsFile(*back, dir / "s"), SettingsResult::kOk);
    EXPECT_EQ(WrittenBy(*back), WrittenBy(*c));
  }
  EXPECT_EQ(LoadSettingsFile(mails, dir / "fehlt"), SettingsResult::kCannotOpen);

  // Damaged, of a newer version, and the list definitions (version 4) offered to e-mail records.
  ASSERT_EQ(SaveSettingsFile(mails, dir / "g"), SettingsResult::kOk);
  const std::vector<uint8_t> file = TempFolder::Read(dir / "g");
  std::vector<uint8_t> wrongMagic = file, cut(file.begin(), file.end() - 3), newer = file;
  wrongMagic[0] ^= 1;
  newer[8] = 2;  // the container version, behind file magic and container mark
  for (const auto& bytes : {wrongMagic, cut, newer, TempFolder::Read(dir / "s")}) {
    TempFolder::Write(dir / "b", bytes);
    TEmailContainer c;
    Fill(c);
    const std::vector<uint8_t> before = WrittenBy(c);
    EXPECT_EQ(LoadSettingsFile(c, dir / "b"), SettingsResult::kWrongFile);
    EXPECT_EQ(WrittenBy(c), before);
  }
}
