// Layouts of records as people write them: TYPE[:NAME][xCOUNT],...

#include "layout.h"

#include <algorithm>
#include <sstream>

#include "answer.h"
#include "options.h"

namespace ottm {
namespace {

constexpr unsigned long kMostElements = 1000000;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Takes "x12" off the end of an item. @return the digits; empty where there are none.
std::string TakeCount(std::string& item) {
  const auto digits = std::find_if_not(item.rbegin(), item.rend(), IsDigit).base();
  if (digits == item.end() || digits == item.begin() || digits[-1] != 'x') return {};
  std::string count(digits, item.end());
  item.erase(digits - 1, item.end());
  return count;
}

bool HasName(const Layout& layout, const std::string& name) {
  return std::any_of(layout.begin(), layout.end(),
                     [&](const LayoutMember& member) { return member.name == name; });
}

/// A form in which no bytes hold a value is none that a file can have.
void RequireStorable(const OtTypeMgr& manager, const LayoutMember& member, unsigned char format,
                     const std::string& place) {
  unsigned long consumed = 0;
  if (manager.VerifyStored(member.type, nullptr, 0, format, 1, consumed) != OT_ERR_END_OF_DATA) {
    throw BadInput(place + ": expected a type with a stored form " + std::to_string(format) +
                   ", found '" + manager.NameGet(member.type, nullptr) + "'");
  }
}

LayoutMember ParseMember(const OtTypeMgr& manager, std::string item, const Layout& before,
                         const std::string& place) {
  const std::string count = TakeCount(item);
  const std::size_t colon = item.find(':');
  LayoutMember member = {TypeOf(manager, item.substr(0, colon), place), "", 1};
  if (!count.empty()) member.count = NumberOf(count, kMostElements, place + ", COUNT");
  if (member.count == 0) throw BadInput(place + ", COUNT: expected at least 1");
  if (colon != std::string::npos) {
    member.name = item.substr(colon + 1);
  } else {
    member.name = manager.NameGet(member.type, nullptr);
    if (HasName(before, member.name)) member.name += "#" + std::to_string(before.size() + 1);
  }
  if (member.name.empty() || HasName(before, member.name)) {
    throw BadInput(place + ", NAME: expected one of its own, found " + Quoted(member.name));
  }
  return member;
}

}  // namespace

Layout ParseLayout(const OtTypeMgr& manager, const std::string& list, unsigned char format) {
  Layout layout;
  std::istringstream items(list + ",");  // an empty item at the end is an item, too
  for (std::string item; std::getline(items, item, ',');) {
    const std::string place = "--layout, member " + std::to_string(layout.size() + 1);
    layout.push_back(ParseMember(manager, item, layout, place));
    RequireStorable(manager, layout.back(), format, place);
  }
  return layout;
}

std::vector<std::string> ColumnsOf(const Layout& layout) {
  std::vector<std::string> columns;
  for (const LayoutMember& member : layout) {
    for (unsigned long i = 0; i < member.count; ++i) {
      columns.push_back(member.count == 1 ? member.name
                                          : member.name + "[" + std::to_string(i) + "]");
    }
  }
  return columns;
}

}  // namespace ottm
