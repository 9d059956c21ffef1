#pragma once
// The five kinds of option record, each with the members every record has (name, comment, owner,
// versions) and its own part, and how each part is stored.
#include <cstdint>
#include <string>
#include <vector>

#include "io/base_file.h"

namespace verdal::options {

struct TConfigRecordHeader {
  std::string name;
  std::string comment;
  int32_t owner = -1;  // -1: visible to every owner
  int32_t headerVersion = 1;
  int32_t recordVersion = 0;
};

// The six separators of clipboard copies, by their codes.
enum class Separator : uint8_t { kLineBreak, kTab, kBlank, kSemicolon, kComma, kNone };
constexpr int kSeparatorCount = 6;
// "Zeilenumbruch", "Tabulator", ...: the name shown for a code; null beyond the six.
const char* SeparatorName(int code);

struct TDBFieldConfigData : TConfigRecordHeader {
  static constexpr int32_t kVersion = 2;
  static constexpr const char* kFilter = "Ansichts-Einstellung (*.view)|*.view|";
  std::vector<std::string> fields;
};

struct TClipBoardData : TConfigRecordHeader {
  static constexpr int32_t kVersion = 2;
  static constexpr const char* kFilter = "Clipboard-Einstellung (*.clip)|*.clip|";
  std::vector<std::string> fields;
  uint8_t recordSeparator = 0;
  uint8_t fieldSeparator = 0;
};

// The export definition is the gateway's own file; the engine only keeps its bytes.
struct TFileExpData : TConfigRecordHeader {
  static constexpr int32_t kVersion = 1;
  static constexpr const char* kFilter = "Export-Einstellung (*.export)|*.export|";
  std::vector<uint8_t> definition;
};

struct TEmailData : TConfigRecordHeader {
  static constexpr int32_t kVersion = 2;
  static constexpr const char* kFilter = "Email-Einstellung (*.email)|*.email|";
  static constexpr int32_t kSpool = 1;       // "Emails in den Spooler stellen": kept, no effect
  static constexpr int32_t kAttach = 2;      // "Dateianhang"
  static constexpr int32_t kTemplate = 4;    // "Es handelt sich um eine Templatedatei"
  std::vector<std::string> fields;  // the fields that hold addresses
  std::string subject;
  std::string message;
  std::string attachment;
  int32_t flags = 0;
};

struct TReplaceData : TConfigRecordHeader {
  static constexpr int32_t kVersion = 1;
  static constexpr const char* kFilter = "Ersetzen-Einstellung (*.replace)|*.replace|";
  std::vector<std::string> fields;
  std::string text;
  int32_t spare = 0;  // stored and read back, no other use
};

// Each kind's own part, after the common header. ReadPart sees the record version already read;
// a stream that ends early or a list longer than the bytes left throws the read exception.
void WritePart(const TDBFieldConfigData& r, TBaseFile& f);
void ReadPart(TDBFieldConfigData& r, TBaseFile& f);
void WritePart(const TClipBoardData& r, TBaseFile& f);
void ReadPart(TClipBoardData& r, TBaseFile& f);
void WritePart(const TFileExpData& r, TBaseFile& f);
void ReadPart(TFileExpData& r, TBaseFile& f);
void WritePart(const TEmailData& r, TBaseFile& f);
void ReadPart(TEmailData& r, TBaseFile& f);
void WritePart(const TReplaceData& r, TBaseFile& f);
void ReadPart(TReplaceData& r, TBaseFile& f);

// A name list: a count and that many strings.
void WriteNameList(const std::vector<std::string>& names, TBaseFile& f);
void ReadNameList(std::vector<std::string>& names, TBaseFile& f);

// The header and part of one record, behind the entry mark. Read gives false for a wrong mark or
// a record version newer than the kind's.
template <class T>
void WriteRecord(const T& r, TBaseFile& f);
template <class T>
bool ReadRecord(T& r, TBaseFile& f);

}  // namespace verdal::options
