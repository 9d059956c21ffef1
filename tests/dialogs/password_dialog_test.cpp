// The password dialog as a user drives it: the texts it shows, the refusals with their stop
// messages, and what OK takes over.
#include "dialogs/password_dialog.h"

#include <gtest/gtest.h>

#include "platform/language.h"
#include "ui/scripted_host.h"

namespace {

using verdal::dialogs::TPassWordDialog;

class PasswordDialog : public ::testing::Test {
 protected:
  void TearDown() override { verdal::platform::SetLanguageId(0); }
  ScriptedHost host;
};

TEST_F(PasswordDialog, OpensWithTheCurrentSettings) {
  TPassWordDialog d("geheim123", true);
  EXPECT_EQ(d.Title(), "Passwort und Kompression einstellen");
  EXPECT_EQ(d.Text(TPassWordDialog::kPassword), "geheim123");
  EXPECT_EQ(d.Text(TPassWordDialog::kRepeat), "geheim123");
  EXPECT_EQ(d.Text(TPassWordDialog::kCompress), "1");
  const std::vector<verdal::ui::Control> controls = d.Controls();
  ASSERT_EQ(controls.size(), 4u);
  EXPECT_EQ(controls[0].kind, verdal::ui::ControlKind::kMaskedEdit);
  EXPECT_EQ(controls[0].limit, 31);
  EXPECT_EQ(controls[2].kind, verdal::ui::ControlKind::kCheckBox);
}

TEST_F(PasswordDialog, RefusesUntilTheInputHolds) {
  struct Case {
    uint16_t language;
    const char* password;
    const char* repeat;
    const char* message;  // null: accepted
  } cases[] = {
      {0x407, "geheim123", "Geheim123", "Pa\xDFwort und Best\xE4tigungspa\xDFwort stimmen nicht \xFC" "berein!"},
      {0x409, "geheim123", "geheim12", "Password and confirmation password must equal!"},
      {0x0C07, "abcd", "abcd", "Das Pa\xDFwort mu\xDF mindestens 5 Zeichen lang sein!"},
      {0x409, "abcde", "abcde", nullptr},
      {0x407, "", "", nullptr},
      {0x407, "  ab ", "  ab ", nullptr},  // five characters: blanks count and stay
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.password);
    verdal::platform::SetLanguageId(c.language);
    host.messages.clear();
    TPassWordDialog d("alt-passwort", false);
    d.SetText(TPassWordDialog::kPassword, c.password);
    d.SetText(TPassWordDialog::kRepeat, c.repeat);
    d.SetChecked(true);
    EXPECT_EQ(d.PressOk(), c.message == nullptr);
    if (c.message != nullptr) {
      ASSERT_EQ(host.messages.size(), 1u);
      EXPECT_EQ(host.messages[0], c.message);
    } else {
      EXPECT_TRUE(host.messages.empty());
      EXPECT_EQ(d.Password(), c.password);
      EXPECT_TRUE(d.Compress());
    }
  }
}

TEST_F(PasswordDialog, EditsHoldAtMost31Characters) {
  TPassWordDialog d("", false);
  const std::string longer(40, 'x');
  d.SetText(TPassWordDialog::kPassword, longer);
  d.SetText(TPassWordDialog::kRepeat, longer);
  EXPECT_EQ(d.Text(TPassWordDialog::kPassword).size(), 31u);
  ASSERT_TRUE(d.PressOk());
  EXPECT_EQ(d.Password(), std::string(31, 'x'));
  d.SetText(TPassWordDialog::kCompress, "1");
  EXPECT_TRUE(d.Checked());
  d.SetText(TPassWordDialog::kCompress, "0");
  EXPECT_FALSE(d.Checked());
}

}  // namespace
