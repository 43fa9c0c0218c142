// Stored forms, keys, hashes and sort keys of every type, held to literals that no machine may
// change. With OT95_WRITE_VECTORS=FILE it writes them anew, to be read before they are committed.
#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <sstream>

#include "bytes_testing.h"
#include "ot95/ot95.h"

namespace {

/// What a line says of a value.
struct Line {
  std::string type, texts, format, text, answers;
};

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t at = 0;
  for (std::size_t end; (end = line.find(" | ", at)) != std::string::npos; at = end + 3) {
    fields.push_back(line.substr(at, end - at));
  }
  fields.push_back(line.substr(at));
  return fields;
}

/// ASCII, and \uXXXX for what isn't.
std::vector<unsigned short> Units(const std::string& text) {
  std::vector<unsigned short> units;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text.compare(at, 2, "\\u") == 0) {
      units.push_back(static_cast<unsigned short>(std::stoul(text.substr(at + 2, 4), nullptr, 16)));
      at += 5;
    } else {
      units.push_back(static_cast<unsigned char>(text[at]));
    }
  }
  units.push_back(0);
  return units;
}

/// The text in the code set and language that a line names, "253 1".
OtString TextOf(const Line& line) {
  OtString text(Units(line.text).data());
  unsigned codeSet = 253, language = 1;
  std::istringstream(line.texts) >> codeSet >> language;
  text.SetLanguageCode(static_cast<unsigned char>(language));
  if (codeSet != 253) text.MapToCodeSet(static_cast<unsigned char>(codeSet));
  return text;
}

/// The operations on a stored value, in hexadecimal digits.
std::string AnswersIn(const OtTypeMgr& types, char id, const std::vector<unsigned char>& stored,
                      unsigned char form) {
  const auto size = static_cast<unsigned long>(stored.size());
  std::ostringstream out;
  std::vector<unsigned char> bytes(OtINDEX_MAX_KEYLEN);
  unsigned long length = types.Translate(id, bytes.data(), form | 0x80, OtINDEX_MAX_KEYLEN,
                                         stored.data(), form, size, 1);
  out << Hex(stored.data(), size) << " | " << Hex(bytes.data(), std::min(length, 255UL)) << " | ";
  int status = 0;
  out << std::hex << types.Hash(id, size, stored.data(), 1, form, status) << " | ";
  out << types.Hash64(id, stored.data(), size, OT_CMP_NO_WILDCARDS, 1, form, 1, status) << " | ";
  bytes.resize(2000);
  length = types.SortKey(id, bytes.data(), 2000, stored.data(), size, OT_CMP_NO_WILDCARDS, 1, form,
                         status);
  out << Hex(bytes.data(), std::min(length, 2000UL));
  return out.str();
}

std::string AnswersTo(const Line& line, unsigned char form) {
  const OtTypeMgr types;
  char id = 0;
  EXPECT_EQ(types.Name2OtTypeId(line.type.c_str(), id), 0) << line.type;
  void* value = types.DefaultValue(id, 1, 1);
  types.ScanFromOtString(id, value, TextOf(line),
                         line.format.empty() ? nullptr : line.format.c_str(), 1);
  std::vector<unsigned char> stored(types.DiskLenGet(id, value, form, 1, OT_FORMAT_MEMORY));
  types.Store(id, stored.data(), value, form, 1);
  types.Delete(id, value, 1);
  return AnswersIn(types, id, stored, form);
}

TEST(Vectors, AreTheSameOnEveryMachine) {
  std::ifstream file(OT95_VECTORS);
  const char* const target = std::getenv("OT95_WRITE_VECTORS");
  std::ofstream written(target ? target : "/dev/null");
  std::size_t lines = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') {
      written << line << "\n";
      continue;
    }
    const std::vector<std::string> fields = Fields(line);
    ASSERT_GE(fields.size(), 5U) << line;
    // What native stands for is the little-endian form only on machines of this order.
    const unsigned char form = fields[0] == "little" ? OT_FORMAT_NATIVE : OT_FORMAT_BIG_ENDIAN;
    if (form == OT_FORMAT_NATIVE && std::endian::native != std::endian::little) continue;
    const Line said{fields[1], fields[2], fields[3], fields[4], {}};
    const std::string asked = fields[0] + " | " + said.type + " | " + said.texts + " | " +
                              said.format + " | " + said.text + " | ";
    const std::string answered = asked + AnswersTo(said, form);
    written << answered << "\n";
    if (!target) {
      EXPECT_EQ(answered, line);
    }
    ++lines;
  }
  EXPECT_GE(lines, std::endian::native == std::endian::little ? 180U : 90U);
}

}  // namespace
