#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/facade.h"

namespace host {

/// A record of the knowledge base; a store writes into the one that it is given.
using RecordRef = std::shared_ptr<automation::Record>;

class Field : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] automation::Value Value() const { return get("Value"); }
};

class Fields : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] Field Item(std::string_view name) const { return child<Field>("Item", name); }
};

/// The rows of a select, standing on the first one.
class Recordset : public Facade {
 public:
  using Facade::Facade;
  /// EOF: no current row. (The plain name is a macro of the C library.)
  [[nodiscard]] bool at_eof() const { return get("EOF").to_bool(); }
  /// The number of all rows of the result.
  [[nodiscard]] std::int32_t RecordCount() const { return get("RecordCount").to_int32(); }
  void MoveFirst() const { call("MoveFirst"); }
  /// `count` rows on from the first row.
  void move_from_first(std::int32_t count) const { call("Move", count, first_row); }
  [[nodiscard]] host::Fields Fields() const { return child<host::Fields>("Fields"); }

 private:
  static constexpr std::int32_t first_row = 1;
};

/// An open connection to the database behind the knowledge base.
class Connection : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] Recordset Execute(std::string_view statement) const {
    constexpr std::int32_t no_options = -1;
    return Recordset(call("Execute", statement, automation::missing, no_options).to_object());
  }
};

class Database : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] host::Connection Connection() const { return child<host::Connection>("Connection"); }
};

/// Groups, standards, materials, classes, conditions, operations.
class Store : public Facade {
 public:
  using Facade::Facade;
  /// Makes the row and writes its identifier into the record's `Id`, whatever stood there.
  void Add(const RecordRef& record) const { call("Add", record); }
};

class SpeedFeedRows : public Store {
 public:
  using Store::Store;
  /// Writes the record into the row that its `Id` names.
  void Update(const RecordRef& record) const { call("Update", record); }
};

class KbTools : public Facade {
 public:
  using Facade::Facade;
  /// A KbToolRecord; its `Id` is empty where the tool isn't stored.
  [[nodiscard]] RecordRef Find(std::string_view tool_id) const { return call("Find", tool_id).to_record(); }
  /// False where the tool can't be stored.
  [[nodiscard]] bool Add(const RecordRef& tool) const { return call("Add", tool).to_bool(); }
  void Link(const RecordRef& tool, std::string_view group_id) const { call("Link", tool, group_id); }
};

/// The parameters of a tool, stored as one array of KbToolParameterRecord.
class KbToolParameters : public Facade {
 public:
  using Facade::Facade;
  /// The tool id again where parameters of that tool are stored.
  [[nodiscard]] std::string Find(std::string_view tool_id) const { return call("Find", tool_id).to_text(); }
  void Add(const automation::Array& parameters) const { call("Add", parameters); }
  void Update(const automation::Array& parameters) const { call("Update", parameters); }
};

class KnowledgeBase : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] host::Database Database() const { return child<host::Database>("Database"); }
  /// A fresh identifier.
  [[nodiscard]] std::string NewId() const { return call("NewId").to_text(); }

  [[nodiscard]] Store CuttingToolGroups() const { return child<Store>("CuttingToolGroups"); }
  [[nodiscard]] Store PartMaterialStandards() const { return child<Store>("PartMaterialStandards"); }
  [[nodiscard]] Store CutterMaterials() const { return child<Store>("CutterMaterials"); }
  [[nodiscard]] Store PartMaterials() const { return child<Store>("PartMaterials"); }
  [[nodiscard]] Store PartMaterialClasses() const { return child<Store>("PartMaterialClasses"); }
  [[nodiscard]] Store PartMaterialConditions() const { return child<Store>("PartMaterialConditions"); }
  [[nodiscard]] Store PartMaterialGroups() const { return child<Store>("PartMaterialGroups"); }
  [[nodiscard]] Store KbOperations() const { return child<Store>("KbOperations"); }
  [[nodiscard]] host::SpeedFeedRows SpeedFeedRows() const {
    return child<host::SpeedFeedRows>("SpeedFeedRows");
  }
  [[nodiscard]] host::KbTools KbTools() const { return child<host::KbTools>("KbTools"); }
  [[nodiscard]] host::KbToolParameters KbToolParameters() const {
    return child<host::KbToolParameters>("KbToolParameters");
  }
};

}  // namespace host
