#include "export_source.h"

#include "platform/collation.h"
#include "platform/file_system.h"

namespace verdal::sqlbridge {

bool ExportSource::Stream::Open(const std::string& path) {
  if (!file.Open(path.c_str(), TFileEx::kRead)) return false;
  const int32_t length = file.GetLength();
  if (length < 0) return false;
  in = std::make_unique<TReadAheadFile>(file, length);
  return true;
}

bool ExportSource::Open(const std::string& exchangePath, bool categories,
                        const ExportDefinition& definition, std::string& error) {
  const std::string path = platform::NativePath(exchangePath.c_str());
  if (!exchange_.Open(path)) {
    error = "The exchange file " + path + " cannot be opened.";
    return false;
  }
  try {
    exchange::ReadExportHeader(*exchange_.in, header_);
  } catch (...) {
    error = "The exchange file " + path + " is damaged (its header).";
    return false;
  }
  const std::string pathsName = path + exchange::kPathsSuffix;
  if (categories && header_.categoryColumns > 0 && platform::FileExists(pathsName.c_str())) {
    paths_ = std::make_unique<Stream>();
    if (!paths_->Open(pathsName)) {
      error = "The file of paths " + pathsName + " cannot be opened.";
      return false;
    }
  }
  // Every row takes 8 bytes a field in the exchange file and 2 in the companion at least; rows of
  // no bytes anywhere cannot be counted against a file, and a damaged count would make billions.
  const size_t fields = header_.columns.size() - static_cast<size_t>(header_.categoryColumns);
  const bool fits =
      (fields > 0 ? CountFits(*exchange_.in, header_.rowCount, 8 * static_cast<int64_t>(fields))
                  : paths_ || header_.rowCount == 0) &&
      (!paths_ || CountFits(*paths_->in, header_.rowCount, 2));
  if (!fits) {
    error = "The exchange file " + path + " is damaged (its row count).";
    return false;
  }

  displayValues_ = !definition.internalValues;
  auto describe = [&](const exchange::ExportColumn& c, int32_t category, size_t field) {
    OutputColumn column;
    column.name = definition.internalNames || c.displayName.empty() ? c.name : c.displayName;
    column.sqlType = c.sqlType;
    column.width = c.width;
    column.kind = category >= 0 || displayValues_ ? ValueKind::kText : KindOfSqlType(c.sqlType);
    column.category = category;
    column.field = field;
    columns_.push_back(std::move(column));
  };
  columns_.clear();
  for (int16_t i = 0; i < header_.categoryColumns; ++i) describe(header_.columns[static_cast<size_t>(i)], i, 0);
  const auto fieldColumn = [&](size_t field) -> const exchange::ExportColumn& {
    return header_.columns[static_cast<size_t>(header_.categoryColumns) + field];
  };
  if (definition.fields.empty()) {
    for (size_t f = 0; f < fields; ++f) describe(fieldColumn(f), -1, f);
  } else {
    for (const std::string& name : definition.fields) {
      size_t f = 0;
      while (f < fields && !platform::SameNameNoCase(fieldColumn(f).name, name)) ++f;
      if (f == fields) {
        error = "EXPORT_FIELDS names " + name + ", which is no field of the export.";
        return false;
      }
      describe(fieldColumn(f), -1, f);
    }
  }
  if (columns_.empty()) {
    error = "The export has no columns.";
    return false;
  }
  row_ = 0;
  return true;
}

ExportSource::Status ExportSource::Next() {
  try {
    if (row_ == header_.rowCount) {
      const bool ended = BytesLeft(*exchange_.in) == 0 && (!paths_ || BytesLeft(*paths_->in) == 0);
      return ended ? Status::kEnd : Status::kDamaged;
    }
    exchange::ReadExportRow(*exchange_.in, header_, internal_, display_);
    if (paths_) exchange::ReadExportPath(*paths_->in, names_);
    ++row_;
    return Status::kRow;
  } catch (...) {
    return Status::kDamaged;
  }
}

const std::string& ExportSource::Text(size_t column) const {
  const OutputColumn& c = columns_[column];
  if (c.category < 0) return displayValues_ ? display_[c.field] : internal_[c.field];
  // A path's last name is the row's own; the names before it are its categories.
  const size_t level = static_cast<size_t>(c.category);
  return level + 1 < names_.size() ? names_[level] : empty_;
}

}  // namespace verdal::sqlbridge
