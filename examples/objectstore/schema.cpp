// Schemas from JSON and back.
#include "schema.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "bad_input.h"
#include "bytes.h"
#include "keys.h"
#include "message.h"
#include "scanner.h"
#include "utf8text.h"

namespace otdb {
namespace {

using Json = nlohmann::ordered_json;
using ot95::tools::BadInput;
using ot95::tools::Quoted;

constexpr unsigned long kMostElements = 10'000;
constexpr const char* kStoreFacts = "facts";  // the tree in which the store keeps the schema

std::string TypeName(char type) {
  return Types().NameGet(type, nullptr);
}

template <class T>
T Field(const Json& object, const char* name, T preset) {
  const auto found = object.find(name);
  return found == object.end() ? preset : found->get<T>();
}

/// A key that nobody reads is a slip that would go unseen.
void RequireKnownKeys(const Json& object, const std::vector<std::string>& known,
                      const std::string& where) {
  if (!object.is_object()) return;  // told when its fields are read
  for (const auto& [key, value] : object.items()) {
    if (std::find(known.begin(), known.end(), key) == known.end()) {
      throw BadInput(where + ot95::tools::Unknown("key", key, known));
    }
  }
}

// Names stand in queries and in the names of trees.
std::string NameIn(const Json& object, const std::string& of) {
  const std::string name = object.at("name").get<std::string>();
  const auto isPart = [](unsigned char c) { return std::isalnum(c) || c == '_'; };
  if (name.empty() || name.size() > 100 || std::isdigit(static_cast<unsigned char>(name[0])) ||
      !std::all_of(name.begin(), name.end(), isPart)) {
    throw BadInput("schema: expected a name of letters, digits and '_' for " + of + ", found " +
                   Quoted(name));
  }
  return name;
}

Member MemberFrom(const Json& json, const std::string& className) {
  Member member;
  member.name = NameIn(json, "a member of " + className);
  const std::string where = "schema: " + className + "." + member.name + ": ";
  RequireKnownKeys(json, {"name", "type", "count", "codeSet", "language", "format", "indexed"},
                   where);
  const std::string type = json.at("type").get<std::string>();
  if (Types().Name2OtTypeId(type.c_str(), member.type) != 0 || type == "illegal") {
    throw BadInput(where + "expected the name of a type, found " + Quoted(type));
  }
  const auto count = Field(json, "count", std::uint64_t{1});
  if (count == 0 || count > kMostElements) {
    throw BadInput(where + "expected a count of 1 to " + std::to_string(kMostElements));
  }
  member.count = static_cast<unsigned long>(count);
  const auto codeSet = Field(json, "codeSet", std::uint64_t{253});
  if (codeSet > 253) throw BadInput(where + "expected a code set of 0 to 253");
  member.codeSet = static_cast<unsigned char>(codeSet);
  member.language = ot95::tools::LanguageNumber(Field(json, "language", std::string("1")),
                                                (where + "language").c_str());
  member.format = Field(json, "format", std::string());
  member.indexed = Field(json, "indexed", false);
  if (member.indexed && !CanBeIndexed(member)) {
    throw BadInput(where + "there is no index over " + type +
                   (member.count > 1 ? " of several elements" : ""));
  }
  return member;
}

Class ClassFrom(const Json& json) {
  Class made;
  made.name = NameIn(json, "a class");
  RequireKnownKeys(json, {"name", "members"}, "schema: " + made.name + ": ");
  std::set<std::string> names;
  for (const Json& member : json.at("members")) {
    made.members.push_back(MemberFrom(member, made.name));
    if (!names.insert(made.members.back().name).second) {
      throw BadInput("schema: " + made.name + ": two members have the name '" +
                     made.members.back().name + "'");
    }
  }
  return made;
}

// The version stands behind the form, where programs that know no other than the first refuse it in
// words that tell why.
constexpr const char* kVersionStart = ", version ";
constexpr const char* kVersionEnd = ": needs a newer otdb";

std::string VersionText(unsigned version) {
  return kVersionStart + std::to_string(version) + kVersionEnd;
}

/// Takes the version from behind a form that names one.
void TakeVersion(std::string& form, unsigned& version) {
  const std::size_t at = form.find(kVersionStart);
  if (at == std::string::npos) return;
  if (form.substr(at) != VersionText(Schema::kNewestVersion)) {
    throw BadInput("schema: form: expected a store of version " +
                   std::to_string(Schema::kNewestVersion) + " or less, found " + Quoted(form));
  }
  version = Schema::kNewestVersion;
  form.resize(at);
}

}  // namespace

bool Member::IsText() const {
  return ot95::tools::Scanner::IsText(Types(), type);
}

std::size_t Class::MemberNamed(const std::string& memberName) const {
  const auto found = std::find_if(members.begin(), members.end(),
                                  [&](const Member& m) { return m.name == memberName; });
  if (found == members.end()) {
    throw BadInput("expected a member of " + name + ", found " + Quoted(memberName));
  }
  return static_cast<std::size_t>(found - members.begin());
}

const Class& Schema::ClassNamed(const std::string& name) const {
  const auto found =
      std::find_if(classes.begin(), classes.end(), [&](const Class& c) { return c.name == name; });
  if (found == classes.end())
    throw BadInput("expected a class of the store, found " + Quoted(name));
  return *found;
}

Schema Schema::FromJson(const std::string& text, unsigned version) {
  Schema schema;
  schema.version = version;
  try {
    const Json json = Json::parse(text, nullptr, true, true);
    RequireKnownKeys(json, {"form", "sortKeyVersion", "classes"}, "schema: ");
    std::string form = Field(json, "form", std::string("big-endian"));
    TakeVersion(form, schema.version);
    if (form != "big-endian" && form != "native") {
      throw BadInput("schema: form: expected big-endian or native, found " + Quoted(form));
    }
    schema.form = form == "native" ? OT_FORMAT_NATIVE : OT_FORMAT_BIG_ENDIAN;
    schema.sortKeyVersion = Field(json, "sortKeyVersion", 0U);
    if (schema.sortKeyVersion != 0 && schema.sortKeyVersion != OtTypeMgr::SortKeyVersion()) {
      throw BadInput("schema: the indexes hold keys of layout " +
                     std::to_string(schema.sortKeyVersion) + ", expected " +
                     std::to_string(OtTypeMgr::SortKeyVersion()));
    }
    std::set<std::string> names = {kStoreFacts};
    for (const Json& each : json.at("classes")) {
      schema.classes.push_back(ClassFrom(each));
      const std::string& name = schema.classes.back().name;
      if (!names.insert(name).second) throw BadInput("schema: the name '" + name + "' is taken");
    }
  } catch (const Json::exception& error) {
    throw BadInput(std::string("schema: ") + error.what());
  }
  return schema;
}

std::string Schema::ToJson() const {
  const std::string formText = form == OT_FORMAT_NATIVE ? "native" : "big-endian";
  Json json = {{"form", formText + (version == kFirstVersion ? "" : VersionText(version))},
               {"classes", Json::array()}};
  if (sortKeyVersion != 0) json["sortKeyVersion"] = sortKeyVersion;
  for (const Class& each : classes) {
    Json members = Json::array();
    for (const Member& member : each.members) {
      Json fields = {{"name", member.name}, {"type", TypeName(member.type)}};
      if (member.count != 1) fields["count"] = member.count;
      if (member.IsText()) {
        fields["codeSet"] = member.codeSet;
        fields["language"] = std::to_string(member.language);
      }
      if (!member.format.empty()) fields["format"] = member.format;
      if (member.indexed) fields["indexed"] = true;
      members.push_back(fields);
    }
    json["classes"].push_back({{"name", each.name}, {"members", members}});
  }
  return json.dump();
}

}  // namespace otdb
