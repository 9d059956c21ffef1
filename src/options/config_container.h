#pragma once
// TBaseConfigClassContainer<T>: the entries of one option kind, in stored order, with the
// container's version and default name.
#include <cstdint>
#include <string>
#include <vector>

#include "io/stream_io.h"
#include "options/base_config.h"
#include "options/config_records.h"
#include "platform/collation.h"

namespace verdal::options {

template <class T>
class TBaseConfigClassContainer : public TBaseConfigClass {
 public:
  static constexpr int32_t kContainerVersion = 1;

  std::vector<T> records;
  int32_t version = kContainerVersion;
  std::string defaultName;

  int32_t GetCount() const override {
    int32_t n = 0;
    for (const T& r : records) n += Visible(r);
    return n;
  }
  const char* GetName(int32_t index) const override {
    const T* r = At(index);
    return r != nullptr ? r->name.c_str() : nullptr;
  }
  bool SetName(int32_t index, const std::string& name) override {
    T* r = At(index);
    if (r != nullptr) r->name = name;
    return r != nullptr;
  }
  const char* GetComment(int32_t index) const override {
    const T* r = At(index);
    return r != nullptr ? r->comment.c_str() : nullptr;
  }
  bool SetComment(int32_t index, const std::string& comment) override {
    T* r = At(index);
    if (r != nullptr) r->comment = comment;
    return r != nullptr;
  }

  bool Write(TBaseFile& f) override {
    WriteUInt32(kCollectionMark, f);
    WriteInt32(kContainerVersion, f);
    version = kContainerVersion;
    WriteString(defaultName, f);
    WriteInt32(static_cast<int32_t>(records.size()), f);
    for (const T& r : records) WriteRecord(r, f);
    return true;
  }

  bool Read(TBaseFile& f) override {
    records.clear();
    if (ReadUInt32(f) != kCollectionMark) return false;
    const int32_t v = ReadInt32(f);
    if (v > kContainerVersion) return false;
    version = v;
    ReadString(defaultName, f);
    const int32_t count = ReadInt32(f);
    if (!CountFits(f, count, kMinRecordBytes)) return false;
    for (int32_t i = 0; i < count; ++i) {
      T r;
      if (!ReadRecord(r, f)) return false;
      records.push_back(std::move(r));
    }
    return true;
  }

  int32_t Add(const std::string& name) override {
    if (IndexOf(name) >= 0) return -1;
    T r;
    r.name = name;
    r.owner = owner;
    r.recordVersion = T::kVersion;
    records.push_back(std::move(r));
    return IndexOf(name);
  }

  // No test for a name in use: the dialog picks a free one first.
  int32_t Copy(int32_t index, const char* newName) override {
    const T* source = At(index);
    if (source == nullptr) return -1;
    T copy = *source;
    copy.owner = owner;
    if (newName != nullptr) copy.name = newName;
    records.push_back(std::move(copy));
    return GetCount() - 1;
  }

  bool Remove(int32_t index) override {
    const T* r = At(index);
    if (r == nullptr) return false;
    records.erase(records.begin() + (r - records.data()));
    return true;
  }

  const std::string& GetDefault() const override { return defaultName; }
  void SetDefault(const std::string& name) override { defaultName = name; }
  const char* GetFileFilter() const override { return T::kFilter; }

  // The record behind a visible index; null for a bad one.
  T* At(int32_t index) {
    return const_cast<T*>(static_cast<const TBaseConfigClassContainer*>(this)->At(index));
  }
  const T* At(int32_t index) const {
    if (index < 0) return nullptr;
    for (const T& r : records)
      if (Visible(r) && index-- == 0) return &r;
    return nullptr;
  }

 private:
  // Mark and two versions, then at least a count or a length: the least a stored record takes.
  // Owner, name and comment are absent from header version 2 on, so they do not count here.
  static constexpr int64_t kMinRecordBytes = 3 * 4 + 4;

  bool Visible(const T& r) const { return r.owner == -1 || r.owner == owner; }
};

using TClipBoardContainer = TBaseConfigClassContainer<TClipBoardData>;
using TFieldViewContainer = TBaseConfigClassContainer<TDBFieldConfigData>;
using TFileExportContainer = TBaseConfigClassContainer<TFileExpData>;
using TEmailContainer = TBaseConfigClassContainer<TEmailData>;
using TReplaceContainer = TBaseConfigClassContainer<TReplaceData>;

}  // namespace verdal::options
