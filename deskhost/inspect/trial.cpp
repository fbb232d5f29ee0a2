#include "deskhost/inspect/trial.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

#include "deskhost/console/base_trouble.h"
#include "deskhost/console/output.h"
#include "deskhost/document/document_file.h"
#include "deskhost/inspect/trial_shop.h"
#include "deskhost/knowledgebase/copy.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/knowledgebase/schema.h"
#include "deskhost/session/session.h"
#include "deskhost/system/file_path.h"
#include "formats/tool_list.h"
#include "platform/text.h"

namespace deskhost::inspect {
namespace {

using BaseRef = std::shared_ptr<Base>;

constexpr const char* empty_document = R"({ "Name": "" })";

/// A base of the trial's own, with what is in the user's.
BaseRef own_base(const std::string& source, const TrialShop& shop) {
  const auto copy = [&](const std::string& from) {
    return std::make_shared<Base>(copy_of_base(from, shop.file("knowledge-base.db")), Base::Open::create);
  };
  if (source.empty()) return copy(source);
  try {
    return with_base(source, copy);
  } catch (const WrongUse& wrong) {
    throw WrongUse(std::string("--kb: ") + wrong.what(), wrong.hint);
  }
}

std::string columns_of(const Table& table) {
  std::string columns;
  for (const Column& column : table.columns) {
    if (column.member == nullptr || column.kind == ColumnKind::id) continue;
    columns += (columns.empty() ? "" : ", ") + std::string(column.name);
  }
  return columns;
}

std::unordered_multiset<std::string> speeds_in(Base& base) {
  std::unordered_multiset<std::string> rows;
  const Table& table = tables::speed_feed_data;
  for (const auto& row : base.query("select " + columns_of(table) + " from " + table.name).rows) {
    rows.insert(key_of_row(row));
  }
  return rows;
}

std::map<std::string, std::string> materials_in(Base& base) {
  std::map<std::string, std::string> names;
  const Rows rows = base.query(
      "select fldpkNameIdentifierID_tblCutterMaterial, fldName_tblCutterMaterial from tblCutterMaterial");
  for (const auto& row : rows.rows) names.emplace(row[0].to_text(), row[1].to_text());
  return names;
}

std::int64_t rows_in(Base& base, const Table& table) {
  const Rows count = base.query("select count(*) from " + std::string(table.name));
  return static_cast<std::int64_t>(count.rows.at(0).at(0).to_double());
}

std::string own_document(const Options& options, const std::string& bytes, const TrialShop& shop) {
  const bool is_given = !options.document.empty();
  if (is_given && options.document != standard_file) return options.document;
  const std::string file = shop.file("document.json");
  std::ofstream(path_of(file), std::ios::binary) << (is_given ? bytes : empty_document);
  return file;
}

/// A text about a copy, with the name that the user knows.
std::string told_of(std::string text, const std::string& copy, const std::string& original) {
  const std::size_t at = text.find(copy);
  return at == text.npos ? text : text.replace(at, copy.size(), original);
}

std::shared_ptr<Document> load_own(const std::string& file, const std::string& name) {
  try {
    return load_document(file, std::make_shared<Desk>());
  } catch (const DocumentFileError& error) {
    throw DocumentFileError(told_of(error.what(), file, name), error.hint);
  }
}

}  // namespace

// The session goes first, then the base, then the surroundings.
struct Trial::Impl {
  explicit Impl(const Options& options) : shop(options.component, options.settings, options.models) {}

  TrialShop shop;
  BaseRef base;
  std::optional<Session> session;
  bool is_listening = false;
};

Trial::Trial(const Options& options, const GivenBytes& given, const Loader& load)
    : impl_(std::make_unique<Impl>(options)) {
  Impl& own = *impl_;
  own.shop.write_exchange_files(given.tools, given.exchange);
  const std::string document = own_document(options, given.document, own.shop);
  before = load_own(document, options.document);
  own.base = own_base(options.knowledge_base, own.shop);
  watch = Watch(speeds_in(*own.base));
  for (const Table* table : all_tables()) tables.push_back({table->name, rows_in(*own.base, *table), 0, 0});

  SessionOptions session;
  try {
    session.make_addin = load(own.shop.component());
  } catch (const automation::Failure& failure) {
    throw NotLoaded(told_of(failure.what(), own.shop.component(), options.component));
  }
  session.gate.listener = [this](const EndedCall& call) {
    if (impl_->is_listening) watch.hear(call);
  };
  session.on_failure = [this](std::string_view, std::string_view text) { failures.emplace_back(text); };
  own.session.emplace(std::move(session));
  own.session->offer("KnowledgeBase", [base = own.base] { return make_knowledge_base(base); });
  try {
    own.session->connect();
  } catch (const automation::Failure& failure) {
    throw NotLoaded(failure.what());
  }
  own.session->open(document);
  own.is_listening = true;
  own.session->command(1);
  own.is_listening = false;

  messages = own.shop.messages();
  if (!own.shop.was_exported()) {
    throw automation::Failure("the trial can't be run: " + (messages.empty() ? "" : messages.front()));
  }
  after = own.session->document();
  materials = materials_in(*own.base);
  for (std::size_t i = 0; i < tables.size(); ++i) tables[i].after = rows_in(*own.base, *all_tables()[i]);
}

Trial::~Trial() {
  if (impl_->session) impl_->session->take_down();
}

std::set<std::string> Trial::listed() {
  // An export may delete tools: it gets a document of its own.
  Impl& own = *impl_;
  const std::string copy = own.shop.file("to-list.json");
  save_document(*after, copy);
  own.session->open(copy);
  own.session->command(2);
  std::set<std::string> identifiers;
  std::istringstream rows(own.shop.tool_list());
  bool is_row = false;
  for (std::string line; std::getline(rows, line);) {
    if (is_row) identifiers.insert(platform::from_code_page(line.substr(0, line.find(';'))));
    is_row = is_row || line.starts_with(formats::tool_list::head_of_rows.back());
  }
  return identifiers;
}

}  // namespace deskhost::inspect
