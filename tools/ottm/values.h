#ifndef OTTM_VALUES_H
#define OTTM_VALUES_H

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "answer.h"
#include "bytes.h"
#include "options.h"
#include "ot95/typemgr.h"
#include "texts.h"

namespace ottm {

/// An array of values of one type, of which the program knows only the identifier.
class Values {
 public:
  Values(OtTypeMgr& manager, char id, unsigned long count);
  /// The default value of a type, as one element.
  static Values Default(OtTypeMgr& manager, char id, bool nullable);
  /// What conversion data of another type gives.
  static Values Converted(OtTypeMgr& manager, char id, unsigned long count,
                          OtTypeConvertData& data);
  ~Values();
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  void* Data() const { return data_; }
  unsigned long Count() const { return count_; }
  void* Element(unsigned long index) const;

  /// Scans one text into each element. Throws BadInput for one that a row would wrap, cut or make
  /// up, unless it is to be lenient.
  void Scan(const std::vector<std::string>& texts, const TextOptions& options,
            const ScanOptions& scan, const char* argument = "VALUE");
  /// One element as UTF-8; the null text for a null.
  std::string Print(unsigned long index, const char* format = nullptr) const;
  bool IsNull(unsigned long index) const;
  /// One element as JSON: null, a number where it prints as one, else its text.
  Json ToJson(unsigned long index, const char* format = nullptr) const;

  /// The values as text, ready for another type.
  std::unique_ptr<OtTypeConvertData> Convert() const;

  Bytes Store(unsigned char format) const;
  /// Verifies the bytes and loads them; returns the bytes consumed. Throws BadInput.
  unsigned long Load(const Bytes& bytes, unsigned char format);
  /// Loads bytes that were verified. They stay as they are: the loaders take a place that could be
  /// written.
  void LoadVerified(unsigned char* bytes, unsigned char format);

 private:
  Values(OtTypeMgr& manager, char id, unsigned long count, void* data);

  OtTypeMgr& manager_;
  char id_;
  unsigned long count_;
  void* data_;
};

/// How far bytes hold a stored array, and why not further.
struct Verdict {
  int status = 0;
  unsigned long consumed = 0;
  std::string reason;  ///< Empty when they do.
};

/// The form to verify bytes in that are going to be loaded. Loading takes no length, so that a key
/// that was cut at the end of its place, good as it is to compare, can't be loaded.
constexpr unsigned char FormToLoad(unsigned char format) {
  return format & 0x7f;
}

Verdict VerifyBytes(OtTypeMgr& manager, char id, std::span<const unsigned char> bytes,
                    unsigned char format, unsigned long count);
/// Throws BadInput unless the bytes hold the array.
unsigned long RequireStored(OtTypeMgr& manager, char id, const Bytes& bytes, unsigned char format,
                            unsigned long count);

}  // namespace ottm

#endif
