#ifndef OTTM_RECORDPRINTER_H
#define OTTM_RECORDPRINTER_H

#include <memory>

#include "recordreader.h"

namespace ottm {

/// Writes records to standard output as they come.
class RecordPrinter {
 public:
  virtual ~RecordPrinter() = default;
  virtual void Record(const RecordReader& reader) = 0;
  /// After the last record. @param damage what ended the walk, or null.
  virtual void End(const Damage* damage) = 0;
};

/// Columns as wide as the first records need, each record behind its offset.
std::unique_ptr<RecordPrinter> TablePrinter(const Layout& layout);
/// An object a line; damage is the last one.
std::unique_ptr<RecordPrinter> JsonPrinter();
#ifdef OT95_CSV
/// A header line, and the values alone; damage goes to standard error.
std::unique_ptr<RecordPrinter> CsvPrinter(const Layout& layout);
#endif

Json RecordToJson(const RecordReader& reader);
Json DamageToJson(const Damage& damage);

}  // namespace ottm

#endif
