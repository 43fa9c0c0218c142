// Records: the stored forms of an object's members one behind another.

#include "record.h"

#include "bad_input.h"

namespace otdb {
namespace {

nlohmann::ordered_json ElementToJson(const Value& value, unsigned long element) {
  if (value.IsNull(element)) return nullptr;
  const std::string text = value.Print(element);
  if (!value.Of().IsText()) {
    const auto number = nlohmann::ordered_json::parse(text, nullptr, false);
    if (number.is_number()) return number;
  }
  return text;
}

}  // namespace

View Record::MemberAt(std::size_t member) const {
  while (ends_.size() <= member) {
    const std::size_t start = ends_.empty() ? 0 : ends_.back();
    const Member& next = class_->members[ends_.size()];
    unsigned long consumed = 0;
    if (Types().VerifyStored(next.type, bytes_.data() + start, bytes_.size() - start, form_,
                             next.count, consumed) != 0) {
      return {};
    }
    ends_.push_back(start + consumed);
  }
  const std::size_t start = member == 0 ? 0 : ends_[member - 1];
  return bytes_.subspan(start, ends_[member] - start);
}

bool Record::IsSound() const {
  const std::size_t members = class_->members.size();
  if (members == 0) return bytes_.empty();
  return MemberAt(members - 1).data() != nullptr && ends_.back() == bytes_.size();
}

Object::Object(const Class& type, unsigned char form) : class_(type), form_(form) {
  for (const Member& member : type.members) values_.push_back(std::make_unique<Value>(member));
}

Bytes Object::Stored() const {
  Bytes record;
  for (const auto& value : values_) value->AppendTo(record, form_);
  return record;
}

void Object::Load(const Record& record) {
  if (!record.IsSound()) throw ot95::tools::BadInput(class_.name + ": a damaged record");
  for (std::size_t i = 0; i < values_.size(); ++i) values_[i]->Load(record.MemberAt(i), form_);
}

nlohmann::ordered_json Object::ToJson() const {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const auto& value : values_) {
    const Member& member = value->Of();
    auto& field = json[member.name];
    if (member.count == 1) {
      field = ElementToJson(*value, 0);
      continue;
    }
    field = nlohmann::ordered_json::array();
    for (unsigned long i = 0; i < member.count; ++i) field.push_back(ElementToJson(*value, i));
  }
  return json;
}

std::vector<std::string> Object::Texts() const {
  std::vector<std::string> texts;
  for (const auto& value : values_) {
    for (unsigned long i = 0; i < value->Of().count; ++i) texts.push_back(value->Print(i));
  }
  return texts;
}

std::vector<std::string> ColumnsOf(const Class& type) {
  std::vector<std::string> columns;
  for (const Member& member : type.members) {
    if (member.count == 1) {
      columns.push_back(member.name);
      continue;
    }
    for (unsigned long i = 0; i < member.count; ++i) {
      columns.push_back(member.name + "[" + std::to_string(i) + "]");
    }
  }
  return columns;
}

}  // namespace otdb
