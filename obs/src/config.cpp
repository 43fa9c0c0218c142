// Configuration: sections of keys with values, from text or set by a host.

#include "ot95/config.h"

#include <atomic>
#include <charconv>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "ot95/memfile.h"

namespace {

/// Of this file's own, so that the maps' instances stay inside the library.
struct ByBytes : std::less<> {};

using Keys = std::map<std::string, std::string, ByBytes>;
using Sections = std::map<std::string, Keys, ByBytes>;

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view kBlanks = " \t\r";

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Cuts the first line off `text`, without its line feed.
std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == text.npos ? text.size() : end + 1);
  return line;
}

/// Reads lines into sections, with the section that the last heading opened.
class Reader {
 public:
  explicit Reader(Sections& sections) : sections_(sections), keys_(&sections[""]) {}

  /// False when the line is malformed.
  bool Read(std::string_view line) {
    line = Trim(line);
    if (line.find('\0') != line.npos) return false;
    if (line.empty() || line[0] == ';' || line[0] == '#') return true;
    return line[0] == '[' ? ReadHeading(line) : ReadSetting(line);
  }

 private:
  bool ReadHeading(std::string_view line) {
    if (line.back() != ']') return false;
    const std::string_view name = Trim(line.substr(1, line.size() - 2));
    if (name.empty() || name.find_first_of("[]") != name.npos) return false;
    keys_ = &sections_[std::string(name)];
    return true;
  }

  bool ReadSetting(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == line.npos) return false;
    const std::string_view key = Trim(line.substr(0, equals));
    if (key.empty()) return false;
    (*keys_)[std::string(key)] = Trim(line.substr(equals + 1));
    return true;
  }

  Sections& sections_;
  Keys* keys_;
};

/// 0, or the number of the first malformed line.
long ReadSections(std::string_view text, Sections& sections) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  Reader reader(sections);
  for (long line = 1; !text.empty(); ++line) {
    if (!reader.Read(TakeLine(text))) return line;
  }
  return 0;
}

/// The 16 bits that a number in text names; false when it isn't one.
bool ToWord(std::string_view text, OtWord& word) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  if (hex) text.remove_prefix(2);
  if (hex && text.starts_with('-')) return false;
  OtLong number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, hex ? 16 : 10);
  if (error != std::errc{} || stop != end || number < INT16_MIN || number > UINT16_MAX) {
    return false;
  }
  word = static_cast<OtWord>(number);
  return true;
}

std::atomic<OtConfig*> defaultConfig{nullptr};

}  // namespace

struct OtConfig::Settings {
  Sections sections;
};

OtConfig::~OtConfig() {
  delete settings_;
}

OtConfig::OtConfig(OtConfig&& other) noexcept
    : settings_(std::exchange(other.settings_, nullptr)) {}

OtConfig& OtConfig::operator=(OtConfig&& other) noexcept {
  std::swap(settings_, other.settings_);
  return *this;
}

long OtConfig::ReadText(const char* text, unsigned long size) noexcept try {
  OtConfig fresh;
  fresh.settings_ = new Settings;
  const std::string_view all(text, text ? size : 0);
  const long badLine = ReadSections(all, fresh.settings_->sections);
  if (badLine == 0) std::swap(settings_, fresh.settings_);
  return badLine;
} catch (...) {  // Memory is short; nothing else can go wrong here.
  return OT_ERR_NOT_SUPPORTED;
}

long OtConfig::ReadText(const char* text) noexcept {
  return ReadText(text, text ? std::char_traits<char>::length(text) : 0);
}

long OtConfig::ReadFile(const char* path) noexcept {
  int error = 0;
  MemFile file = MemFile::Map(path, error);
  if (error != 0) return OT_ERR_BAD_ARGUMENT;
  unsigned long size = file.length;
  const unsigned char* const bytes = file.Seek(0, MemFile::FROM_START, &size, 0);
  return ReadText(reinterpret_cast<const char*>(bytes), size);
}

const char* OtConfig::GetText(const char* key, const char* const* sections) const noexcept {
  static constexpr const char* unnamed[] = {"", nullptr};
  if (settings_ == nullptr || key == nullptr) return nullptr;
  for (const char* const* name = sections ? sections : unnamed; *name != nullptr; ++name) {
    const auto section = settings_->sections.find(std::string_view(*name));
    if (section == settings_->sections.end()) continue;
    const auto setting = section->second.find(std::string_view(key));
    if (setting != section->second.end()) return setting->second.c_str();
  }
  return nullptr;
}

int OtConfig::GetValue(const char* key, unsigned short* value,
                       const char* const* sections) const noexcept {
  const char* const text = GetText(key, sections);
  if (text == nullptr) return OT_ERR_NO_MORE_ITEMS;
  OtWord word = 0;
  if (value == nullptr || !ToWord(text, word)) return OT_ERR_BAD_ARGUMENT;
  *value = word;
  return 0;
}

int OtConfig::GetValue(const char* key, short* value, const char* const* sections) const noexcept {
  unsigned short word = 0;
  const int status = GetValue(key, value ? &word : nullptr, sections);
  if (status == 0) *value = static_cast<short>(word);
  return status;
}

OtConfig* DefaultConfig(OtConfig* config) noexcept {
  return config ? defaultConfig.exchange(config) : defaultConfig.load();
}
