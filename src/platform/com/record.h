#pragma once

#include "platform/com/convert.h"

/// Records between their two forms: members by name, or the memory that a record type describes.
namespace platform::com {

/// Throw Failure(type_mismatch) for what is no record.
automation::Value record_to_value(IRecordInfo* info, void* memory);
void read_record(IRecordInfo* info, void* memory, automation::Record& record);
/// Members are matched by name; one that the type lacks fails.
void write_record(const automation::Record& record, IRecordInfo* info, void* memory);

void record_to_variant(const automation::Record& record, RecordTypes& records, VARIANT& target);

/// An array whose elements are all records of the first one's type.
void records_to_variant(const automation::Array& values, RecordTypes& records, VARIANT& target);
automation::Value records_to_value(SAFEARRAY* array, std::size_t count);

}  // namespace platform::com
