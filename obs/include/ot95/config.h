#ifndef OT95_CONFIG_H
#define OT95_CONFIG_H

/// @file
/// Settings by section and key, read from text.
///
/// @code
///   OtConfig config;
///   long line = config.ReadText("[debug]\nstringOverflow = 1\n");       // line == 0
///   const char* const sections[] = {"debug", nullptr};
///   short report = 0;
///   int status = config.GetValue("stringOverflow", &report, sections);  // status == 0
///   bool on = report == 1;                                              // on == true
/// @endcode
///
/// DefaultConfig(&config) makes it the settings of the process, which the libraries ask for these:
///
/// | Section | Key | Meaning |
/// |---|---|---|
/// | debug | stringOverflow | Not 0: a string beyond its limit is reported to OTDB_assert |
/// | the unnamed one | oldIndexUnicodeOrder | Not 0: Unicode text in old indexes isn't narrowed |
///
/// The text is lines that end with a line feed, with or without a carriage return before it; a
/// UTF-8 byte order mark may stand first. Blanks and tabs at the ends of lines, names, keys and
/// values don't count. A line is one of:
///
///     ; remark        or  # remark
///     [name]          the lines below belong to this section; it may be entered again
///     key = value     the value is the rest of the line, `;`, `#` and `=` in it included
///
/// or empty. Keys above the first section belong to the unnamed section. A key that comes again
/// takes the later value. Names and keys are compared byte by byte. A name or key is not empty, a
/// value may be; no line holds a zero byte.

#include "ot95/base.h"

/// One set of settings. Reading it is safe from several threads while nobody changes it. No
/// operation throws.
class OT95_EXPORT OtConfig {
 public:
  OtConfig() noexcept = default;  ///< No settings.
  ~OtConfig();
  OtConfig(OtConfig&& other) noexcept;
  OtConfig& operator=(OtConfig&& other) noexcept;
  OtConfig(const OtConfig&) = delete;
  OtConfig& operator=(const OtConfig&) = delete;

  /// Replaces all settings by those of the `size` bytes at `text`.
  /// @return 0; or the number, from 1, of the first malformed line; or OT_ERR_NOT_SUPPORTED when
  ///         memory is short. The settings are unchanged unless the result is 0.
  long ReadText(const char* text, unsigned long size) noexcept;

  /// The same for a text that ends with a zero byte; null reads as empty.
  long ReadText(const char* text) noexcept;

  /// The same for the file at `path`; OT_ERR_BAD_ARGUMENT when it can't be read.
  long ReadFile(const char* path) noexcept;

  /// The text of `key` in the first of `sections` that has the key, or null. `sections` is closed
  /// by a null pointer; "" in it is the unnamed section; a null `sections` means that one alone.
  /// The text lives until the settings change.
  const char* GetText(const char* key, const char* const* sections) const noexcept;

  /// Reads the text of `key` as a number, decimal with an optional `-`, or hexadecimal after `0x`,
  /// from -32768 to 65535, and writes its low 16 bits to `value`.
  /// @return 0; OT_ERR_NO_MORE_ITEMS when no listed section has the key; OT_ERR_BAD_ARGUMENT when
  ///         the text is no such number (sections further on are not asked). `value` is unchanged
  ///         unless the result is 0.
  int GetValue(const char* key, short* value, const char* const* sections) const noexcept;
  int GetValue(const char* key, unsigned short* value, const char* const* sections) const noexcept;

 private:
  struct Settings;
  Settings* settings_ = nullptr;
};

/// The process's settings as they stood, null at first; replaced by `config` if that isn't null.
/// They stay their maker's, who keeps them alive. Settings are installed before threads start.
OT95_EXPORT OtConfig* DefaultConfig(OtConfig* config) noexcept;

#endif
