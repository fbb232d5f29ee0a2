#pragma once

#include <array>
#include <cstdint>

#include "host/knowledge_base.h"

/// The records of the knowledge base: type name and members, in the order that the host's library gives them.
namespace host {

enum class MemberKind : std::uint8_t { text, whole_16, whole_32, number };

struct RecordMember {
  const char* name;
  MemberKind kind;
};

template <std::size_t N>
struct RecordType {
  const char* name;
  std::array<RecordMember, N> members;
};

inline constexpr RecordType<3> ToolGroupRecord{
    "ToolGroupRecord",
    {{{"Name", MemberKind::text}, {"Id", MemberKind::text}, {"ParentName", MemberKind::text}}}};

inline constexpr RecordType<2> StandardRecord{"StandardRecord",
                                              {{{"Name", MemberKind::text}, {"Id", MemberKind::text}}}};

/// Cutter material, class, condition, operation.
inline constexpr RecordType<3> NamedRecord{
    "NamedRecord",
    {{{"Name", MemberKind::text}, {"Id", MemberKind::text}, {"StandardId", MemberKind::text}}}};

/// The last member is the host's own and stays 0.
inline constexpr RecordType<4> PartMaterialRecord{"PartMaterialRecord",
                                                  {{{"Name", MemberKind::text},
                                                    {"Id", MemberKind::text},
                                                    {"StandardId", MemberKind::text},
                                                    {"Reserved", MemberKind::whole_32}}}};

inline constexpr RecordType<4> PartMaterialGroupRecord{"PartMaterialGroupRecord",
                                                       {{{"Id", MemberKind::text},
                                                         {"ClassId", MemberKind::text},
                                                         {"ConditionId", MemberKind::text},
                                                         {"StandardId", MemberKind::text}}}};

/// A tool; the host makes it when it is asked for one.
inline constexpr RecordType<2> KbToolRecord{"KbToolRecord",
                                            {{{"Id", MemberKind::text}, {"Kind", MemberKind::whole_16}}}};

inline constexpr RecordType<3> KbToolParameterRecord{
    "KbToolParameterRecord",
    {{{"ToolRecordId", MemberKind::text}, {"Value", MemberKind::text}, {"Code", MemberKind::whole_16}}}};

/// C stands before D in the imperial members and behind it in the metric ones.
inline constexpr RecordType<15> SpeedFeedRecord{"SpeedFeedRecord",
                                                {{{"Id", MemberKind::text},
                                                  {"OperationId", MemberKind::text},
                                                  {"PartMaterialGroupId", MemberKind::text},
                                                  {"CutterMaterialId", MemberKind::text},
                                                  {"ValueAImperial", MemberKind::number},
                                                  {"ValueAMetric", MemberKind::number},
                                                  {"ValueBImperial", MemberKind::number},
                                                  {"ValueBMetric", MemberKind::number},
                                                  {"ValueCImperial", MemberKind::number},
                                                  {"ValueDImperial", MemberKind::number},
                                                  {"Factor", MemberKind::number},
                                                  {"Note", MemberKind::text},
                                                  {"StandardId", MemberKind::text},
                                                  {"ValueDMetric", MemberKind::number},
                                                  {"ValueCMetric", MemberKind::number}}}};

/// A record with empty texts and zeros.
template <std::size_t N>
RecordRef make_record(const RecordType<N>& type) {
  auto record = std::make_shared<automation::Record>();
  record->type = type.name;
  record->members.reserve(N);
  for (const RecordMember& member : type.members) {
    automation::Value start;
    switch (member.kind) {
      case MemberKind::text:
        start = "";
        break;
      case MemberKind::whole_16:
        start = std::int16_t{0};
        break;
      case MemberKind::whole_32:
        start = std::int32_t{0};
        break;
      case MemberKind::number:
        start = 0.0;
        break;
    }
    record->members.emplace_back(member.name, std::move(start));
  }
  return record;
}

}  // namespace host
