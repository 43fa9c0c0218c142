#ifndef OT95_TYPEMGR_H
#define OT95_TYPEMGR_H

/// @file
/// The type manager: every value type that a persistent member can have, reached through one table
/// of operations that a one-byte identifier indexes.
///
/// An engine knows a value only as an identifier and raw memory:
/// @code
///   OtTypeMgr types;                                   // the current table
///   char id;
///   types.Name2OtTypeId("short", id);
///   short prices[3] = {100, 250, 399};
///   unsigned char page[6];
///   types.Store(id, page, prices, OT_FORMAT_BIG_ENDIAN, 3);
///   types.Load(id, prices, page, OT_FORMAT_BIG_ENDIAN, 3);
/// @endcode
///
/// Everywhere, `count` is a number of array elements (1 for a single value), `format` is a format
/// byte (see base.h), and a null pointer, 0 or 0.0 answers for an operation that a type lacks.

#include "ot95/base.h"
#include "ot95/memfile.h"

class OtString;
class OtTypeMgr;
class OtTypeConvertData;
struct OtEvalData;  ///< A record of the engine; accepted and dropped.

/// Greatest length in bytes of an index key.
#define OtINDEX_MAX_KEYLEN 254U

/// Bits of the operator word of EvalAndBound.
enum : unsigned short {
  OT_OP_EQUAL = 1,    ///< Values equal to the operand qualify.
  OT_OP_LESS = 2,     ///< Values below the operand qualify.
  OT_OP_GREATER = 4,  ///< Values above the operand qualify.
  OT_OP_WILDCARD = 8  ///< Out: the operand stands for a range.
};

/// Two keys in disk form: the key range of an index as input, the scan limits as output. Keys that
/// an operation allocates come from `malloc` and belong to the owner of the record. At a key that
/// isn't null a length of 0 stands for a whole element of a fixed-size type, and for the empty text
/// of a text type.
struct OtIdxBounds {
  void* lowerKey = nullptr;
  void* upperKey = nullptr;
  unsigned char lowerKeyLength = 0;  ///< Bytes at lowerKey.
  unsigned char upperKeyLength = 0;  ///< Bytes at upperKey.
};

/// Allocates and constructs `count` values on the heap; null when memory is short.
using OtCreateFunc = void* (*)(unsigned long count);
/// Destroys and frees what Create made with the same `count`; returns null.
using OtDeleteFunc = void* (*)(void* value, unsigned long count);
/// Writes `count` values in disk form `format`; returns the bytes written.
using OtStoreFunc = unsigned long (*)(void* disk, const void* memory, unsigned char format,
                                      unsigned long count);
/// Reads `count` values over constructed ones; returns the bytes consumed.
using OtLoadFunc = unsigned long (*)(void* memory, const void* disk, unsigned char format,
                                     unsigned long count);
/// Disk bytes of `count` null values.
using OtNullSizeFunc = unsigned long (*)(unsigned long count);
/// Disk bytes of `count` values; bit 8 of `sourceFormat` says that `value` is in memory form.
using OtSizeFunc = unsigned long (*)(const void* value, unsigned char sourceFormat,
                                     unsigned char diskFormat, unsigned long count);
/// Disk bytes of the `count` values that stand next in `file`.
using OtFileSizeFunc = unsigned long (*)(MemFile* file, unsigned char format, unsigned long count);
/// Three-way comparison of which only the sign counts; a length of 0 means exactly `count`
/// elements; `status` becomes 0 or OT_ERR_END_OF_DATA (texts and blobs: or OT_ERR_NOT_SUPPORTED).
using OtCompareFunc = long (*)(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);
/// Share of an index's keys that satisfy `op` against `value`, and the limits of the scan. The row
/// OtNull_OtInt64 answers a number of values instead, which its caller divides by the width of the
/// range: that of the upper key less that of the lower, plus 1.
using OtEvalFunc = float (*)(OtIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, unsigned long count, OtIdxBounds* limits);
/// 32-bit hash of `count` values.
using OtHashFunc = unsigned long (*)(unsigned char format, unsigned long length, void* value,
                                     unsigned long count, int& status);
/// Renders `count` values into a new record that holds an OtString array.
using OtConvertToFunc = OtTypeConvertData* (*)(void* value, unsigned long count);
/// Builds a new array of `count` values from conversion data; the caller owns it.
using OtConvertFromFunc = void* (*)(OtTypeConvertData* data, unsigned long count);
/// Constructs `count` values in raw storage; the third argument isn't used.
using OtConstructFunc = void (*)(void* memory, unsigned long count, unsigned long);
/// Destroys `count` values in place; the third argument isn't used.
using OtDestructFunc = void (*)(void* memory, unsigned long count, unsigned long);
/// Copies `count` values; a non-zero `fill` sends the one value at `source` to all targets.
using OtAssignFunc = void (*)(void* target, void* source, unsigned long count, int fill);
/// Moves values between memory and disk forms; returns bytes as each form counts them.
using OtTranslateFunc = unsigned long (*)(void* target, unsigned char targetFormat,
                                          unsigned long targetLength, void* source,
                                          unsigned char sourceFormat, unsigned long sourceLength,
                                          unsigned long count);
/// Non-zero when the value is null.
using OtIsNullFunc = int (*)(void* value);
/// Makes the value null; returns 0.
using OtSetNullFunc = int (*)(void* value);
/// Renders a value into `target`, and returns it.
using OtPrintFunc = OtString& (*)(OtString& target, void* value, const char* format,
                                  unsigned long count);
/// Parses `text` into the value, and returns the value.
using OtScanFunc = void* (*)(void* value, OtString& text, const char* format, unsigned long count);
/// Allocates `count` default values; null ones where the type has a null and `nullable` asks.
using OtDefaultFunc = void* (*)(unsigned long count, int nullable);

/// One row of the table: all that the system knows of a type. A null member says that the type
/// doesn't offer the operation.
struct OtTypeDescriptor {
  const char* name = nullptr;
  OtCreateFunc Create = nullptr;
  OtDeleteFunc Delete = nullptr;
  OtStoreFunc Store = nullptr;
  OtLoadFunc Load = nullptr;
  OtNullSizeFunc NullSizeGet = nullptr;
  OtSizeFunc SizeGet = nullptr;
  OtFileSizeFunc SizeGetFromMemFile = nullptr;
  OtCompareFunc Compare = nullptr;
  OtEvalFunc EvalAndBound = nullptr;
  OtHashFunc Hash = nullptr;
  OtConvertToFunc ConvertTo = nullptr;
  OtConvertFromFunc ConvertFrom = nullptr;
  OtConstructFunc Construct = nullptr;
  OtDestructFunc Destruct = nullptr;
  OtAssignFunc Assign = nullptr;
  OtAssignFunc Copy = nullptr;  ///< Like Assign, but into raw storage.
  OtTranslateFunc Translate = nullptr;
  OtIsNullFunc IsNull = nullptr;
  OtSetNullFunc SetNull = nullptr;
  const char* format = nullptr;  ///< Used by printing and scanning when the caller gives none.
  OtPrintFunc PrintToString = nullptr;
  OtScanFunc ScanFromString = nullptr;
  unsigned short memoryLength = 0;  ///< Bytes of one value in memory.
  unsigned short isFixed = 0;       ///< 1 when the disk size doesn't depend on the value.
  OtDefaultFunc DefaultValue = nullptr;
};

/// A table: pointers to rows, indexed by identifier and closed by a null pointer.
using OtTypeFactory = OtTypeDescriptor* const*;

OT95_EXPORT extern OtTypeDescriptor* const CurrentFactory[];  ///< 41 rows.
OT95_EXPORT extern OtTypeDescriptor* const LegacyFactory[];   ///< The first 28, with old strings.

/// Carries values between types as an array of OtString.
class OT95_EXPORT OtTypeConvertData {
 public:
  OtTypeMgr* manager;   ///< Owner of the array; null while the array belongs to someone else.
  void* data;           ///< The array.
  unsigned long count;  ///< Elements of the array.
  char type;            ///< Type of the array: 11 for strings.

  /// A new record on the heap; null when memory is short.
  static OtTypeConvertData* Make(char type, unsigned long count, void* data, OtTypeMgr* manager);
  /// Deletes the array if a manager owns it, and leaves the record without elements and type.
  ~OtTypeConvertData();
  OtTypeConvertData(const OtTypeConvertData&) = delete;
  OtTypeConvertData& operator=(const OtTypeConvertData&) = delete;

  /// The string at `index`, from 0 on; null behind the end or when the array isn't of strings.
  OtString* GetString(int index);

 private:
  OtTypeConvertData(char typeOfData, unsigned long elements, void* array, OtTypeMgr* owner)
      : manager(owner), data(array), count(elements), type(typeOfData) {}
};

/// Operations on values of which only the type identifier is known. A manager owns nothing.
class OT95_EXPORT OtTypeMgr {
 public:
  /// A manager for data of a format version; see SetFactory.
  explicit OtTypeMgr(unsigned long version = 5);

  /// Chooses the table for a format version: the old one for 0 to 3 and for 11.
  void SetFactory(unsigned long version);
  /// 0 for identifiers 41 to 99, else 1; the table isn't asked.
  int IsValidType(char id) const;

  void* Create(char id, unsigned long count = 1);
  void* Delete(char id, void* value, unsigned long count = 1);
  void* DefaultValue(char id, unsigned long count, int nullable);
  unsigned long Store(char id, void* disk, void* memory, unsigned char format,
                      unsigned long count = 1);
  unsigned long Load(char id, void* memory, void* disk, unsigned char format,
                     unsigned long count = 1);
  unsigned long DiskLenGet(char id, void* value, unsigned char diskFormat, unsigned long count,
                           unsigned char sourceFormat);
  unsigned long DiskLenGetFromMemFile(char id, MemFile* file, unsigned char format,
                                      unsigned long count = 1);
  float EvalAndBound(char id, OtIdxBounds* bounds, unsigned short& op, void* value,
                     unsigned char format, unsigned long count, OtIdxBounds* limits,
                     OtEvalData* data);
  unsigned long Hash(char id, unsigned long length, void* value, unsigned long count,
                     unsigned char format, int& status);
  unsigned long Translate(char id, void* target, unsigned char targetFormat,
                          unsigned long targetLength, void* source, unsigned char sourceFormat,
                          unsigned long sourceLength, unsigned long count = 1);
  int IsNullValue(char id, void* value);

  /// Compares complete arrays.
  long Cmp(char id, void* value1, void* value2, unsigned short cmpOp, unsigned long count,
           unsigned char format);
  /// Compares arrays of which `length1` and `length2` bytes are at hand.
  long Cmp(char id, unsigned long length1, void* value1, unsigned long length2, void* value2,
           unsigned short cmpOp, unsigned long count, unsigned char format, int& status);

  OtConstructFunc ConstructorPtrGet(char id) const;
  OtDestructFunc DestructorPtrGet(char id) const;
  OtAssignFunc AssignmentPtrGet(char id) const;
  OtAssignFunc CopyPtrGet(char id) const;
  OtLoadFunc LoadPtrGet(char id) const;
  OtStoreFunc StorePtrGet(char id) const;
  OtIsNullFunc IsNullPtrGet(char id) const;
  OtSetNullFunc SetNullPtrGet(char id) const;
  OtCompareFunc CmpFuncPtrGet(char id) const;
  /// Null for every identifier: no type has a two-argument comparison.
  int (*ComparePtrGet(char id) const)(void*, void*);

  /// The type's name: the row's own text, or a copy in `buffer`, which must have room for it.
  char* NameGet(char id, char* buffer) const;
  /// Finds a type by its exact name: 0 with `id` set, or 1 with `id` at 41.
  int Name2OtTypeId(const char* name, char& id) const;
  /// Bytes of `count` values in memory, cut to 16 bits.
  unsigned short MemLenGet(char id, unsigned long count = 1) const;
  unsigned short IsFixed(char id) const;
  unsigned short SupportsNullValue(char id) const;
  /// Always OT_ERR_NOT_SUPPORTED: a stored value doesn't tell through this class.
  int DiskIsNullValue(char id, void* value) const;
  /// Element `index` of an array; null from `count` on, where a `count` of 0 is no bound.
  void* GetArrayElement(char id, void* value, unsigned long index, unsigned long count = 1) const;

  /// As the row's member; the record then owns its strings through this manager.
  OtTypeConvertData* ConvertTo(char id, void* value, unsigned long count = 1);
  void* ConvertFrom(char id, OtTypeConvertData* data, unsigned long count = 1);
  /// Makes a value null, or what an empty text converts to where the type has no null.
  int SetNullValue(char id, void* value);

  /// Renders values; the elements of an array are appended with commas between them.
  /// @param format null for the row's own.
  OtString& PrintToOtString(char id, OtString& target, void* value, const char* format,
                            unsigned long count = 1);
  void* ScanFromOtString(char id, void* value, OtString& text, const char* format,
                         unsigned long count = 1);
  /// The text that null values print as and scan from.
  static const OtString& GetNullPrintString();
  static void SetNullPrintString(const OtString& text);

  /// Each returns what the row holds; a non-null argument replaces it for all managers.
  const char* ExchangeFormat(char id, const char* format);
  OtCompareFunc ExchangeOtTypeCmpFunc(char id, OtCompareFunc function);
  OtPrintFunc ExchangePrintToOtStringFunc(char id, OtPrintFunc function);
  OtScanFunc ExchangeScanFromOtStringFunc(char id, OtScanFunc function);

  /// Checks that `available` bytes begin with a stored array of `count` values, reading none
  /// beyond them. With bit 0x80 a text key passes, too, that lacks its end because it was cut at
  /// that of the bytes: it's for the operations that take lengths, not for Load. Forms with bit 8
  /// are refused (OT_ERR_BAD_ARGUMENT): memory isn't stored.
  /// @param consumed where the array ends, or how far the bytes are good.
  /// @return 0; OT_ERR_END_OF_DATA when the bytes end too early; OT_ERR_BAD_ARGUMENT when they
  ///   can't be such an array.
  int VerifyStored(char id, const void* disk, unsigned long available, unsigned char format,
                   unsigned long count, unsigned long& consumed) const;

 protected:
  /// Joins all elements into one text behind a separator that none of them holds.
  OtString* ConvertToOtStringOld(void* value, char id, unsigned long count);
  /// Splits such a text, which it consumes, and converts the parts.
  void* ConvertFromOtStringOld(OtString* text, char id, unsigned long count);

 private:
  OtTypeDescriptor* Row(char id) const;

  OtTypeFactory factory_;
  unsigned short version_;
};

/// The default manager as it stood; replaced if `manager` isn't null.
OT95_EXPORT OtTypeMgr* DefaultTypeMgr(OtTypeMgr* manager);

/// Brings the library up (non-zero) or down: the default manager, with version 5.
OT95_EXPORT void ___OtTypemgrContext(int attach);
/// The options word; bit 0 makes the integer conversions of OtString decimal only.
OT95_EXPORT long& ___OtTypeMgrOptions();
/// Whether the base services are of this release: 0, or not.
OT95_EXPORT int OtCheckDll(int flags);
/// Tells who the library is; no pointer may be null. Returns the description.
OT95_EXPORT const char* OtDescribeDll(unsigned long* major, unsigned long* minor,
                                      unsigned long* release, unsigned long* build,
                                      unsigned long* patch, const char** libraryName,
                                      const char** buildTime, const char** buildTag,
                                      unsigned long* compilerVersion, const char** compilerName,
                                      const char** extra);
/// The same in short; null pointers are skipped.
OT95_EXPORT void GetOtTypeMgrInfo(const char** compilerName, unsigned long* compilerVersion,
                                  const char** description, const char** buildDate,
                                  const char** libraryName);

/// Comparers of the scalar rows, by the contract of OtCompareFunc: -1, 0 or 1. `cmpOp` is ignored.
OT95_EXPORT long CharCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                             unsigned short, unsigned long, int&);
OT95_EXPORT long ByteCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                             unsigned short, unsigned long, int&);
OT95_EXPORT long ShortCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                              unsigned short, unsigned long, int&);
OT95_EXPORT long WordCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                             unsigned short, unsigned long, int&);
OT95_EXPORT long IntCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                            unsigned short, unsigned long, int&);
OT95_EXPORT long UnsignedCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                                 unsigned short, unsigned long, int&);
OT95_EXPORT long LongCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                             unsigned short, unsigned long, int&);
OT95_EXPORT long DwordCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                              unsigned short, unsigned long, int&);
OT95_EXPORT long FloatCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                              unsigned short, unsigned long, int&);
OT95_EXPORT long DoubleCompare(unsigned char, unsigned long, void*, unsigned long, void*,
                               unsigned short, unsigned long, int&);

#endif
