#pragma once
// Drives a ui::Sheet as a user would: controls found by their page and label, buttons pressed,
// lists read as their items. StoredBytes tells whether a collection changed.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/memfile.h"
#include "options/base_config.h"
#include "ui/host.h"

inline std::vector<uint8_t> StoredBytes(verdal::options::TBaseConfigClass& collection) {
  verdal::TMemFile f(256);
  collection.Write(f);
  return {f.Data(), f.Data() + f.GetLength()};
}

class SheetDriver {
 public:
  explicit SheetDriver(verdal::ui::Sheet& sheet) : sheet_(sheet) {}

  std::vector<std::string> Pages() const { return sheet_.Pages(); }
  verdal::ui::Control Find(int32_t page, const std::string& label) const {
    for (const verdal::ui::Control& c : sheet_.Controls())
      if (c.page == page && c.label == label) return c;
    ADD_FAILURE() << "no control " << label << " on page " << page;
    return {};
  }
  void Set(int32_t page, const std::string& label, const std::string& text) { sheet_.SetText(Find(page, label).id, text); }
  void Press(int32_t page, const std::string& label) { Set(page, label, "1"); }
  std::string Get(int32_t page, const std::string& label) const { return sheet_.Text(Find(page, label).id); }
  std::vector<std::string> Items(int32_t page, const std::string& label) const { return Find(page, label).items; }
  bool Enabled(int32_t page, const std::string& label) const { return Find(page, label).enabled; }
  // The enabled state of several controls, as "1" and "0" in their order.
  std::string EnabledOf(int32_t page, const std::vector<std::string>& labels) const {
    std::string out;
    for (const std::string& label : labels) out += Enabled(page, label) ? '1' : '0';
    return out;
  }

 private:
  verdal::ui::Sheet& sheet_;
};
