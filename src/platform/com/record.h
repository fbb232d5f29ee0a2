#pragma once

#include "platform/com/convert.h"

/// Records between their two forms: members by name, or the memory that a record type describes.
namespace platform::com {

/// A record type. Members are read and written where the type's description places them: the system's own
/// access by name isn't to be relied on everywhere.
class RecordLayout {
 public:
  /// Throws Failure(type_mismatch) for what isn't described.
  explicit RecordLayout(ComPtr<IRecordInfo> info);

  [[nodiscard]] IRecordInfo* info() const noexcept { return info_.get(); }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }

  [[nodiscard]] std::shared_ptr<automation::Record> read(void* memory) const;
  /// Into the members that `record` has.
  void read(void* memory, automation::Record& record) const;
  /// A member that the type lacks fails.
  void write(const automation::Record& record, void* memory) const;

 private:
  struct Field {
    std::string name;
    VARTYPE type;
    std::size_t offset;
  };
  [[nodiscard]] static VARIANT place(const Field& field, void* memory);
  [[nodiscard]] const Field& field(const std::string& name) const;

  ComPtr<IRecordInfo> info_;
  std::string name_;
  std::size_t size_ = 0;
  std::vector<Field> fields_;
};

void record_to_variant(const automation::Record& record, RecordTypes& records, VARIANT& target);
automation::Value record_to_value(IRecordInfo* info, void* memory);

/// An array whose elements are all records of the first one's type.
void records_to_variant(const automation::Array& values, RecordTypes& records, VARIANT& target);
automation::Value records_to_value(SAFEARRAY* array, std::size_t count);

}  // namespace platform::com
