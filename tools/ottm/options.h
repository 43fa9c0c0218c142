#ifndef OTTM_OPTIONS_H
#define OTTM_OPTIONS_H

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "ot95/typemgr.h"

namespace ottm {

/// Which table of types; every command that names a type has it.
struct FactoryOption {
  std::string name = "current";

  void Declare(CLI::App& app);
  OtTypeMgr Manager() const;
};

/// A form by name or a whole format byte by number.
struct FormOption {
  std::string name = "native";
  std::string option;

  void Declare(CLI::App& app, const std::string& option = "--form",
               const std::string& meaning = "Form of the stored bytes");
  unsigned char Format() const;
  /// The form of bytes: throws BadInput for one with the bit of memory.
  unsigned char DiskFormat() const;
  /// The same, or memory itself, for operations on values of either form.
  unsigned char ValueFormat() const;
};

/// The comparison-op word, as a number or a comma list of names.
struct OpOption {
  std::string names = "no-wildcards";
  bool relations = false;  ///< It is the operator word: names like "<=" count too.

  void Declare(CLI::App& app);
  unsigned short Word() const;

 private:
  std::string Expected() const;
};

/// What texts are scanned with, and whether those that a row would wrap, cut or make up are taken.
struct ScanOptions {
  std::optional<std::string> textFormat;
  bool lenient = false;

  /// @param option of the format.
  void Declare(CLI::App& app, const std::string& option = "--text-format");
};

/// What values are printed with.
struct PrintOption {
  std::optional<std::string> textFormat;

  void Declare(CLI::App& app);
  const char* Format() const { return textFormat ? textFormat->c_str() : nullptr; }
};

/// Identifiers of types are 0 to one less.
constexpr char kTypes = 40;

/// The identifier of a type given by name or number. Throws BadInput that names `argument`.
char TypeOf(const OtTypeMgr& manager, const std::string& name,
            const std::string& argument = "TYPE");

/// An unsigned number in decimal or with 0x. Throws BadInput.
unsigned long NumberOf(const std::string& text, unsigned long most, const std::string& argument);

}  // namespace ottm

#endif
