#pragma once
// TBaseConfigClass: the one interface over every kind of named option set a database carries
// (clipboard, field view, export, e-mail, replacement, and the list display and sort definitions),
// so that one dialog, one settings-file mechanism and one set of exported functions serve them all.
//
// `owner` scopes entries to a part of the host: the host sets it before each call, and only the
// entries it selects are visible. Indexes are visible indexes: the i-th visible entry in stored
// order. Read and Write take every entry, visible or not.
//
// The dialog pages of each kind are made by the dialogs above this layer (they know the kinds);
// this interface stays free of anything the surface needs.
#include <cstdint>
#include <string>

#include "io/base_file.h"

namespace verdal::options {

// What reading or writing a collection's exchange file gave. kWrongKind: a file of the right form
// holding an entry of another option kind (print configurations only).
enum class SettingsResult { kOk, kCannotOpen, kWrongFile, kCannotWrite, kWrongKind };

class TBaseConfigClass {
 public:
  virtual ~TBaseConfigClass() = default;

  int32_t owner = 0;

  virtual int32_t GetCount() const = 0;
  // Null for an index that is no visible entry.
  virtual const char* GetName(int32_t index) const = 0;
  virtual bool SetName(int32_t index, const std::string& name) = 0;
  virtual const char* GetComment(int32_t index) const = 0;
  virtual bool SetComment(int32_t index, const std::string& comment) = 0;
  // Replaces every entry by what the stream holds; false on a wrong mark or a refused version,
  // keeping what was read before it. A stream that ends early throws its read exception.
  virtual bool Read(TBaseFile& file) = 0;
  virtual bool Write(TBaseFile& file) = 0;
  // The visible index of the new entry, or -1 (what a name in use gives differs by kind).
  virtual int32_t Add(const std::string& name) = 0;
  // A copy of the entry, renamed when newName is not null; its visible index, -1 for a bad index.
  virtual int32_t Copy(int32_t index, const char* newName) = 0;
  virtual bool Remove(int32_t index) = 0;
  virtual const std::string& GetDefault() const = 0;
  virtual void SetDefault(const std::string& name) = 0;
  // The filter of the file pickers, "Name (*.ext)|*.ext|".
  virtual const char* GetFileFilter() const = 0;

  // The exchange file of the names page's Import and Export buttons: the settings file
  // (options/settings_file.h) unless a kind has a file of its own, as the print configurations do.
  virtual SettingsResult ImportFile(const std::string& path);
  virtual SettingsResult ExportFile(const std::string& path);

  // The visible index of the entry of that name, ignoring case; -1 if none.
  int32_t IndexOf(const std::string& name) const;
};

// The settings file of any kind: its magic number, then the collection's stream form.
constexpr uint32_t kSettingsFileMagic = 0x040B664B;
// Both collection forms begin with this mark; records and definitions with kEntryMark.
constexpr uint32_t kCollectionMark = 0x0427EEF3;
constexpr uint32_t kEntryMark = 0x41524D59;

// Removes blanks at the end; the list definitions and the dialog's new names are stored so.
std::string TrimTrailingBlanks(const std::string& text);

}  // namespace verdal::options
