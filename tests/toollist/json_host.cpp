#include "toollist/json_host.h"

#include <set>

namespace json_host {
namespace {

using nlohmann::json;

Value value_of(const json& value);

NodeRef node_of(const json& object) {
  auto node = std::make_shared<Node>();
  for (const auto& [name, value] : object.items()) node->set(name, value_of(value));
  return node;
}

Value array_of(const std::vector<NodeRef>& nodes) {
  automation::Array items;
  for (const NodeRef& node : nodes) items.emplace_back(automation::Ref(node));
  return items;
}

NodeRef collection_of(const std::shared_ptr<std::vector<NodeRef>>& items) {
  auto node = std::make_shared<Node>();
  node->members["Count"] = [items](Args) { return static_cast<std::int32_t>(items->size()); };
  node->members["_NewEnum"] = [items](Args) { return array_of(*items); };
  node->members["Item"] = [items](Args args) -> Value {
    const auto index = static_cast<std::size_t>(args[0].to_int32() - 1);
    if (index >= items->size()) throw automation::Failure(automation::Error::subscript_out_of_range);
    return automation::Ref((*items)[index]);
  };
  return node;
}

NodeRef collection_of(const json& array) {
  auto items = std::make_shared<std::vector<NodeRef>>();
  for (const json& item : array) items->push_back(node_of(item));
  return collection_of(items);
}

Value value_of(const json& value) {
  if (value.is_object()) return automation::Ref(node_of(value));
  if (value.is_array()) return automation::Ref(collection_of(value));
  if (value.is_string()) return value.get<std::string>();
  if (value.is_number_integer()) return value.get<std::int32_t>();
  if (value.is_number()) return value.get<double>();
  return automation::nothing;
}

// Item(name) gives an object with the Value of that name; a name that isn't there is refused.
NodeRef named_values(const json& values) {
  auto node = std::make_shared<Node>();
  const NodeRef table = node_of(values);
  node->members["Item"] = [table](Args args) -> Value {
    auto parameter = std::make_shared<Node>();
    const auto found = table->members.find(*args[0].text());
    if (found == table->members.end()) throw automation::Failure(automation::Error::no_such_member);
    parameter->set("Value", found->second({}));
    return automation::Ref(parameter);
  };
  return node;
}

NodeRef tool_of(const json& parameters) {
  const NodeRef tool = named_values(parameters);
  const std::pair<const char*, const char*> views[] = {{"Name", "ToolID"},
                                                       {"Style", "ToolStyle"},
                                                       {"Number", "ToolNumber"},
                                                       {"Turret", "TurretID"},
                                                       {"Station", "StationID"}};
  for (const auto& [member, parameter] : views) {
    if (parameters.contains(parameter)) tool->set(member, value_of(parameters[parameter]));
  }
  return tool;
}

NodeRef setup_of(const json& setup) {
  const NodeRef node = node_of(setup);
  for (const auto& [array, member] :
       {std::pair("CustomSettings", "CustomSetting"), std::pair("CustomSettingStrs", "CustomSettingStr")}) {
    int number = 0;
    for (const json& value : setup.value(array, json::array())) {
      node->set(member + std::to_string(++number), value_of(value));
    }
  }
  return node;
}

}  // namespace

Host::Host(const json& source) : document(node_of(source)) {
  for (const auto& tool : source.value("Tools", json::array())) tools->push_back(tool_of(tool["Parameters"]));
  for (const auto& operation : source.value("Operations", json::array())) {
    operations.push_back(std::make_shared<Node>());
    operations.back()->set("Duration", value_of(operation["Duration"]));
    const auto settings =
        operation["ToolID"].is_null() ? json::object() : json{{"ToolID", operation["ToolID"]}};
    operations.back()->set("ToolSettings", automation::Ref(named_values(settings)));
  }
  auto properties = json::object();
  for (const auto& property : source.value("CustomProperties", json::array())) {
    properties[property["Name"].get<std::string>()] = property["Value"];
  }
  for (const char* setup : {"MachineSetup", "MillSetup"}) {
    document->set(setup, automation::Ref(setup_of(source.value(setup, json::object()))));
  }
  const NodeRef tools_node = collection_of(tools);
  tools_node->members["Remove"] = [tools = tools](Args args) -> Value {
    std::erase_if(*tools,
                  [&](const NodeRef& tool) { return *tool->members["Name"]({}).text() == *args[0].text(); });
    return {};
  };
  document->set("Tools", automation::Ref(tools_node));
  document->set("Operations",
                automation::Ref(collection_of(std::make_shared<std::vector<NodeRef>>(operations))));
  document->set("CustomProperties", automation::Ref(named_values(properties)));
  std::set<std::string> used;
  for (const auto& operation : source.value("Operations", json::array())) {
    if (operation["ToolID"].is_string()) used.insert(operation["ToolID"].get<std::string>());
  }
  document->members["IsToolUsed"] = [used](Args args) -> Value {
    const NodeRef tool = std::dynamic_pointer_cast<Node>(args[0].to_object());
    return used.contains(*tool->members["Name"]({}).text());
  };
  application->set("Document", automation::Ref(document));
  auto configuration = std::make_shared<Node>();
  configuration->set("Language", 0);
  application->set("Configuration", automation::Ref(configuration));
}

Node& Host::child(const Node& node, std::string_view member, std::vector<Value> args) {
  return dynamic_cast<Node&>(*node.members.find(member)->second(args).to_object());
}

}  // namespace json_host
