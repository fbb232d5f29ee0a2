#include "deskhost/knowledgebase/knowledge_base.h"

#include <unordered_map>

#include "deskhost/knowledgebase/recordset.h"
#include "deskhost/knowledgebase/stores.h"

namespace deskhost {

using automation::Args;
using automation::Member;
using automation::Value;

namespace {

using BaseRef = std::shared_ptr<Base>;

class KbConnection : public DeskObject {
 public:
  explicit KbConnection(BaseRef base) : base_(std::move(base)) {}
  [[nodiscard]] std::string trace_name() const override { return "Connection"; }
  Value call(Member member, Args args) override {
    if (member != Member("Execute")) return DeskObject::call(member, args);
    Rows rows = base_->query(argument(args, 0).to_text());
    return Value(std::make_shared<Recordset>(base_->next_recordset_number(), std::move(rows)));
  }

 private:
  BaseRef base_;
};

class KbDatabase : public DeskObject {
 public:
  explicit KbDatabase(BaseRef base) : base_(std::move(base)) {}
  [[nodiscard]] std::string trace_name() const override { return "Database"; }
  Value get(Member member, Args args) override {
    if (member != Member("Connection")) return DeskObject::get(member, args);
    return Value(std::make_shared<KbConnection>(base_));
  }

 private:
  BaseRef base_;
};

class KnowledgeBase : public DeskObject {
 public:
  explicit KnowledgeBase(BaseRef base) : base_(std::move(base)) {}

  [[nodiscard]] std::string trace_name() const override { return "KnowledgeBase"; }

  Value get(Member member, Args args) override {
    if (member == Member("Database")) return Value(std::make_shared<KbDatabase>(base_));
    std::shared_ptr<DeskObject>& store = stores_[member.id()];
    if (!store) store = make_store(base_, member);
    if (!store) return DeskObject::get(member, args);
    return automation::Ref(store);
  }

  Value call(Member member, Args args) override {
    if (member != Member("NewId")) return DeskObject::call(member, args);
    return base_->new_id();
  }

 private:
  BaseRef base_;
  std::unordered_map<std::uint64_t, std::shared_ptr<DeskObject>> stores_;
};

}  // namespace

std::shared_ptr<DeskObject> make_knowledge_base(BaseRef base) {
  base->revive();
  return std::make_shared<KnowledgeBase>(std::move(base));
}

std::function<automation::Ref()> knowledge_base_maker(const std::string& source) {
  auto base = std::make_shared<BaseRef>();
  if (!source.empty()) *base = std::make_shared<Base>(base_source(source), Base::Open::create);
  return [base]() -> automation::Ref {
    if (!*base) *base = std::make_shared<Base>(temporary_base(), Base::Open::create);
    return make_knowledge_base(*base);
  };
}

}  // namespace deskhost
