// VERDAL_GetFilter on a database whose filter the dialog made, kept over a save and a load: the
// C interface cannot make filters, so the test reaches the database behind the handle.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "api/field_helpers.h"
#include "dialogs/filter_dialog.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "ui/scripted_host.h"
#include "verdal.h"

using namespace verdal;
using dialogs::TFilterDialog;

TEST(FiltersApi, AFilterMadeInTheDialogSurvivesSaveAndLoad) {
  char folder[] = "/tmp/verdal_filters_XXXXXX";
  ASSERT_NE(mkdtemp(folder), nullptr);
  const std::string file = std::string(folder) + "/f.dbd";
  VerdalHandle db = VERDAL_OpenDB(file.c_str(), nullptr, 0, 0, nullptr, 0, 0, 0);
  ASSERT_NE(db, 0u);
  TDBFieldParams p = FieldParams("Ort", 0);
  ASSERT_EQ(VERDAL_AddField(db, &p, -1, 1), 0);

  engine::TDBManager* manager = engine::Handles().Lookup(db);
  ASSERT_NE(manager, nullptr);
  {
    ScriptedHost host;
    host.sheet = [](ui::Sheet& s) {
      auto& d = static_cast<TFilterDialog&>(s);
      d.NewRow();
      d.SetText(TFilterDialog::kValue, "Kiel");
      d.SetText(TFilterDialog::kBeginsWith, "1");
      return d.PressOk();
    };
    TFilterDialog dialog(manager->filters, manager->store);
    ASSERT_TRUE(ui::CurrentHost().RunSheet(nullptr, dialog));
  }
  const char* want = "   \\eval{Ort|*=|\"Kiel\"|12} ";
  EXPECT_STREQ(VERDAL_GetFilter(db, "neuer filter"), want);
  ASSERT_EQ(VERDAL_Save(db, nullptr), 1);
  ASSERT_EQ(VERDAL_CloseDB(db), 1);

  db = VERDAL_OpenDB(file.c_str(), nullptr, 0, 0, nullptr, 0, 0, 0);
  ASSERT_NE(db, 0u);
  EXPECT_STREQ(VERDAL_GetFilter(db, "Neuer Filter"), want);
  VERDAL_CloseAllDBs();
  std::system(("rm -rf " + std::string(folder)).c_str());
}
