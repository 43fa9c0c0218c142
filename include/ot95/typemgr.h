#ifndef OT95_TYPEMGR_H
#define OT95_TYPEMGR_H

/// @file
/// The type manager: every value type that a persistent member can have, reached through one table
/// of operations that a one-byte identifier indexes.
///
/// A database engine knows a value only as an identifier, which its schema gives, and raw memory.
/// OtTypeMgr finds the row of the identifier and calls one of its operations:
///
///     identifier --> row --> Create Delete Construct Destruct Assign   values in memory
///                            Store Load SizeGet Translate              moves between forms
///                            Compare Hash EvalAndBound                 indexes and queries
///                            ConvertTo ConvertFrom                     to another type
///                            PrintToString ScanFromString              text
///
/// @code
///   OtTypeMgr types;                                         // the current table
///   char id;
///   types.Name2OtTypeId("short", id);                        // id == 1
///   short prices[3] = {100, 250, 399}, back[3];
///   unsigned char page[6];
///   types.Store(id, page, prices, OT_FORMAT_BIG_ENDIAN, 3);  // page[1] == 100
///   types.Load(id, back, page, OT_FORMAT_BIG_ENDIAN, 3);     // back[2] == 399
///   long order = types.Cmp(id, prices, back, 0, 3, OT_FORMAT_MEMORY);  // order == 0
/// @endcode
///
/// A program that knows the C++ type of its values can leave the identifier to the compiler. A type
/// that no row holds is then refused:
/// @code
///   const OtTypeMgr types;
///   const OtLong populations[2] = {2102650, 513275};         // with `long` it wouldn't compile
///   unsigned char page[8];
///   types.Store(page, populations, OT_FORMAT_BIG_ENDIAN, 2); // page[3] == 0x7a
///   OtLong back[2];
///   types.Load(back, page, OT_FORMAT_BIG_ENDIAN, 2);         // back[1] == 513275
///   char id = OtTypeOf<OtString>::id;                        // id == 11
/// @endcode
///
/// The table. Bytes of one value in memory are those of the C++ type; a `+` says that the size on
/// disk depends on the value. The header column says where the value and its operations are told.
///
/// | Id | Row | C++ type | On disk | Null | Header |
/// |---|---|---|---|---|---|
/// | 0 | char | `char`, signed | 1 | no | this one |
/// | 1 | short | `short` | 2 | no | this one |
/// | 2 | long | OtLong: **not** `long` on 64 bits | 4 | no | base.h |
/// | 3 | double | `double` | 8 | no | this one |
/// | 4 | float | `float` | 4 | no | this one |
/// | 5 | OtWord | OtWord | 2 | no | base.h |
/// | 6 | OtDWord | OtDWord | 4 | no | base.h |
/// | 7 | int | `int` | 4 | no | this one |
/// | 8 | unsigned | `unsigned` | 4 | no | this one |
/// | 9 | enum | `int` | 4 | no | this one |
/// | 10 | OtByte | OtByte | 1 | no | base.h |
/// | 11 | OtString | OtString | 6+ | yes | text.h |
/// | 12 | OtDate | OtDate | 4 | yes | temporal.h |
/// | 13 | OtTime | OtTime | 3 | yes | temporal.h |
/// | 14 | BlockId | BlockId | 4 | no | base.h |
/// | 15 | OtObjId | OtObjId | 10 | yes | identity.h |
/// | 16 | OtClassId | OtClassId | 4 | yes | identity.h |
/// | 17 | OtRef | OtRef | 14, without the class version | yes | identity.h |
/// | 18 | OtBlob | OtBlob | 8+ | yes | blob.h |
/// | 19 | OtDateTime | OtDateTime | 7 | yes | temporal.h |
/// | 20 | OtIString | OtIString | 4+ | no | istring.h |
/// | 21 | OtCaseIString | OtCaseIString | 4+ | no | istring.h |
/// | 22 | d_Date | d_Date | 4 | no | odmg.h |
/// | 23 | d_Time | d_Time | 6 | no | odmg.h |
/// | 24 | d_Timestamp | d_Timestamp | 10 | no | odmg.h |
/// | 25 | d_Interval | d_Interval | 4 | no | odmg.h |
/// | 26 | OtInt64 | OtInt64 | 8 | no | int64.h |
/// | 27 | OtBoolean | OtBoolean | 1 | yes | boolean.h |
/// | 28 to 38 | OtNull_char ... | OtNull_char ... | 2 to 9 | yes | nullable.h |
/// | 39 | OtSeal | OtSeal | 6 | no | identity.h |
/// | 40 | illegal | none: does nothing and answers 0 | 0 | no | this one |
///
/// What all operations have in common:
/// - `count` is a number of elements, 1 for a single value. Arrays have no gaps: element `i` starts
///   `i` times MemLenGet(id, 1) bytes behind the first. A `count` of 0 does nothing and gives 0
///   where nothing else is said.
/// - `format` is a format byte (see base.h): which of its forms a value has. The *memory form* is
///   the C++ value. A *disk form* is a run of bytes without padding, the same on every machine,
///   little-endian (OT_FORMAT_NATIVE) or big-endian.
/// - Disk places need no alignment, values in memory their own.
/// - A row need not offer everything. For what it lacks, and for an identifier without a row, the
///   answer is a null pointer, 0 or 0.0.
/// - Nothing throws and nothing locks. SetFactory, SetNullPrintString, DefaultTypeMgr and the
///   Exchange operations belong to start-up; everything else may run in any thread, on values that
///   no other thread changes.
/// - Store and Load trust their caller: the target has room for what DiskLenGet announces, and what
///   is loaded is a stored value. Ask VerifyStored about bytes that come from elsewhere.

#include "ot95/base.h"
#include "ot95/memfile.h"

class OtBlob;
class OtBoolean;
class OtCaseIString;
class OtClassId;
class OtDate;
class OtDateTime;
class OtIString;
class OtInt64;
template <class T, char typeId>
class OtNull;
class OtObjId;
class OtRef;
class OtSeal;
class OtString;
class OtTime;
class OtTypeMgr;
class OtTypeConvertData;
class d_Date;
class d_Interval;
class d_Time;
class d_Timestamp;
struct OtEvalData;  ///< A record of the engine; accepted and dropped.

/// The row of a C++ type: `OtTypeOf<short>::id` is 1. Undefined for a type that no row holds, so
/// that asking is an error of compilation. On 64 bits `long` is such a type: its values are wider
/// than the 32 bits of row 2. Use OtLong, or OtInt64.
template <class T>
struct OtTypeOf;

/// The C++ type that a row holds: `OtTypeAt<3>::Type` is `double`. Undefined without such a type.
template <char typeId>
struct OtTypeAt;

// One line a row. Where one C++ type has several rows, these store, order and hash alike, and
// differ in their texts alone; OtTypeOf then answers the one that is named like the type.
#define OT95_ROW_TOO(row, ...) \
  template <>                  \
  struct OtTypeAt<row> {       \
    using Type = __VA_ARGS__;  \
  };
#define OT95_ROW(row, ...)            \
  OT95_ROW_TOO(row, __VA_ARGS__)      \
  template <>                         \
  struct OtTypeOf<__VA_ARGS__> {      \
    static constexpr char id = (row); \
  };
/// @cond
OT95_ROW(0, char)
OT95_ROW(1, short)
OT95_ROW_TOO(2, OtLong)  // the same C++ type as row 7
OT95_ROW(3, double)
OT95_ROW(4, float)
OT95_ROW(5, OtWord)
OT95_ROW_TOO(6, OtDWord)  // as row 8
OT95_ROW(7, int)
OT95_ROW(8, unsigned)
OT95_ROW_TOO(9, int)  // an enumeration that is stored as `int`
OT95_ROW(10, OtByte)
OT95_ROW(11, OtString)
OT95_ROW(12, OtDate)
OT95_ROW(13, OtTime)
OT95_ROW_TOO(14, BlockId)  // as row 8
OT95_ROW(15, OtObjId)
OT95_ROW(16, OtClassId)
OT95_ROW(17, OtRef)
OT95_ROW(18, OtBlob)
OT95_ROW(19, OtDateTime)
OT95_ROW(20, OtIString)
OT95_ROW(21, OtCaseIString)
OT95_ROW(22, d_Date)
OT95_ROW(23, d_Time)
OT95_ROW(24, d_Timestamp)
OT95_ROW(25, d_Interval)
OT95_ROW(26, OtInt64)
OT95_ROW(27, OtBoolean)
OT95_ROW(28, OtNull<signed char, 28>)
OT95_ROW(29, OtNull<unsigned char, 29>)
OT95_ROW(30, OtNull<short, 30>)
OT95_ROW(31, OtNull<unsigned short, 31>)
OT95_ROW(32, OtNull<int, 32>)
OT95_ROW(33, OtNull<unsigned, 33>)
OT95_ROW(34, OtNull<OtLong, 34>)
OT95_ROW(35, OtNull<OtDWord, 35>)
OT95_ROW(36, OtNull<float, 36>)
OT95_ROW(37, OtNull<double, 37>)
OT95_ROW(38, OtNull<OtInt64, 38>)
OT95_ROW(39, OtSeal)
/// @endcond
#undef OT95_ROW
#undef OT95_ROW_TOO

/// Greatest length in bytes of an index key. What a key can't hold of a value doesn't take part in
/// the order of the index.
#define OtINDEX_MAX_KEYLEN 254U

/// Bits of the operator word of EvalAndBound. They form a set: EQUAL and LESS together are "less or
/// equal", LESS and GREATER "not equal". For texts, the bits 0x10 to 0x4000 hold comparison options
/// (text.h: OT_CMP_NO_WILDCARDS and its kin); EvalAndBound of a text takes them off.
enum : unsigned short {
  OT_OP_EQUAL = 1,    ///< Values equal to the operand qualify.
  OT_OP_LESS = 2,     ///< Values below the operand qualify.
  OT_OP_GREATER = 4,  ///< Values above the operand qualify.
  OT_OP_WILDCARD = 8  ///< Out: the operand stands for a range.
};

/// Two keys in disk form: the key range of an index as input, the scan limits as output. Keys that
/// an operation allocates come from `malloc` and belong to the owner of the record, who frees them.
/// A limit that is there already, from an earlier term of a query, stays. At a key that isn't null
/// a length of 0 stands for a whole element of a fixed-size type, and for the empty text of a text
/// type.
struct OtIdxBounds {
  void* lowerKey = nullptr;          ///< The lowest key; as a limit, null leaves the scan open.
  void* upperKey = nullptr;          ///< The highest key; likewise.
  unsigned char lowerKeyLength = 0;  ///< Bytes at lowerKey.
  unsigned char upperKeyLength = 0;  ///< Bytes at upperKey.
};

/// The ends of a range of sort keys, in buffers of the caller. What lies in it is not below `lower`
/// and is below `upper`, by the order of bytes; a length of 0 means that there is no such end.
/// Bytes behind the keys, such as an object's identifier, don't lead out of it.
struct OtSortRange {
  void* lower = nullptr;
  unsigned long lowerRoom = 0;    ///< Bytes that may be written; a longer end is cut, and holds.
  unsigned long lowerLength = 0;  ///< Out: bytes written.
  void* upper = nullptr;
  unsigned long upperRoom = 0;
  unsigned long upperLength = 0;
};

/// @name Operations of a row
/// The contracts that every row keeps and that a function which is exchanged has to keep. They are
/// called with arguments as a caller of OtTypeMgr gives them, null pointers included only where it
/// is said. What isn't `const` here for the sake of old code is still only read, unless the text
/// says that it is written.
/// @{

/// Allocates and constructs `count` values on the heap; null when memory is short. A `count` of 0
/// gives one value, or for a scalar an empty array. Scalars but `char` and `OtByte` come with any
/// content, dates and times with the present.
using OtCreateFunc = void* (*)(unsigned long count);
/// Destroys and frees what Create made with the same `count`; a null `value` is ignored. Returns
/// null.
using OtDeleteFunc = void* (*)(void* value, unsigned long count);
/// Writes `count` values in disk form `format`; returns the bytes written, by which a caller finds
/// the place of the next member.
using OtStoreFunc = unsigned long (*)(void* disk, const void* memory, unsigned char format,
                                      unsigned long count);
/// Reads `count` values over constructed ones; returns the bytes consumed. Only a blob array looks
/// whether its bytes can be right, and answers 0.
using OtLoadFunc = unsigned long (*)(void* memory, const void* disk, unsigned char format,
                                     unsigned long count);
/// Disk bytes of `count` null values.
using OtNullSizeFunc = unsigned long (*)(unsigned long count);
/// Disk bytes of `count` values; bit 8 of `sourceFormat` says that `value` is in memory form. Rows
/// of fixed size don't look at `value`, which may then be null.
using OtSizeFunc = unsigned long (*)(const void* value, unsigned char sourceFormat,
                                     unsigned char diskFormat, unsigned long count);
/// Disk bytes of the `count` values that stand next in `file`, whose position stays. Rows of fixed
/// size don't look into it. A result beyond the end of the file asks for more bytes.
using OtFileSizeFunc = unsigned long (*)(MemFile* file, unsigned char format, unsigned long count);
/// Three-way comparison of which only the sign counts: negative when `value1` comes first. Both
/// values have the form `format`; the first pair of elements that differs decides.
///
/// `length1` and `length2` are the bytes at hand, 0 for exactly `count` elements. `cmpOp` holds
/// options of texts (text.h), and its bit 0x10 takes stored dates literally; other rows ignore it.
/// `status` becomes 0, or OT_ERR_END_OF_DATA when a length ended the walk or a text was cut so that
/// the result is a guess; for texts also OT_ERR_NOT_SUPPORTED. The result then still holds what was
/// found so far.
using OtCompareFunc = long (*)(unsigned char format, unsigned long length1, void* value1,
                               unsigned long length2, void* value2, unsigned short cmpOp,
                               unsigned long count, int& status);
/// Share of an index's keys that satisfy `op` against `value`, and the limits of the scan.
///
/// The share, from 0.0 to about 1.0, is an interpolation between the two keys of `bounds`; without
/// them most rows answer 0.0. `value` is an operand in the disk form `format`. Places in `limits`
/// that are null receive keys: both for equality, one for an inequality, none for "not equal". Both
/// records may be null. docs/estimates.md tells the rule of each row.
///
/// The row OtNull_OtInt64 answers a number of values instead of a share, which its caller divides
/// by the width of the range: that of the upper key less that of the lower, plus 1.
using OtEvalFunc = float (*)(OtIdxBounds* bounds, unsigned short& op, void* value,
                             unsigned char format, unsigned long count, OtIdxBounds* limits);
/// 32-bit hash of `count` values, the same in every release. The elements of an array are joined by
/// exclusive or, so that their sequence doesn't count. `length` and `status` as for Compare.
using OtHashFunc = unsigned long (*)(unsigned char format, unsigned long length, void* value,
                                     unsigned long count, int& status);
/// Renders `count` values into a new record that holds an OtString array.
using OtConvertToFunc = OtTypeConvertData* (*)(void* value, unsigned long count);
/// Builds a new array of `count` values from conversion data; the caller owns it. A missing or null
/// string gives a null value, or what an empty string gives where the type has no null.
using OtConvertFromFunc = void* (*)(OtTypeConvertData* data, unsigned long count);
/// Constructs `count` values in raw storage; the third argument isn't used.
using OtConstructFunc = void (*)(void* memory, unsigned long count, unsigned long);
/// Destroys `count` values in place; the third argument isn't used.
using OtDestructFunc = void (*)(void* memory, unsigned long count, unsigned long);
/// Copies `count` values; a non-zero `fill` sends the one value at `source` to all targets.
using OtAssignFunc = void (*)(void* target, void* source, unsigned long count, int fill);
/// Moves values between memory and disk forms; returns bytes as each form counts them.
///
/// | Target | Source | Does |
/// |---|---|---|
/// | memory | memory | Assigns |
/// | memory | disk | Loads |
/// | disk | memory | Stores |
/// | disk | disk | Moves the bytes as they are, cut or filled up with zeros to `targetLength` |
///
/// Texts know more forms: with bit 0x80 in `targetFormat` they become index keys.
using OtTranslateFunc = unsigned long (*)(void* target, unsigned char targetFormat,
                                          unsigned long targetLength, void* source,
                                          unsigned char sourceFormat, unsigned long sourceLength,
                                          unsigned long count);
/// Non-zero when the value, in memory form, is null.
using OtIsNullFunc = int (*)(void* value);
/// Makes the value null; returns 0.
using OtSetNullFunc = int (*)(void* value);
/// Renders a value into `target`, and returns it. Whether it replaces what `target` holds or
/// appends to it is a matter of the row; a null value always replaces it by the null text.
using OtPrintFunc = OtString& (*)(OtString& target, void* value, const char* format,
                                  unsigned long count);
/// Parses `text` into the value, and returns the value; a null `value` is returned at once. There
/// is no report of failure: what a text that doesn't fit leaves is told with each type.
using OtScanFunc = void* (*)(void* value, OtString& text, const char* format, unsigned long count);
/// Allocates `count` default values: what an empty text converts to, such as 0, or null ones where
/// the type has a null and `nullable` isn't 0. Delete frees them.
using OtDefaultFunc = void* (*)(unsigned long count, int nullable);
/// @}

/// One row of the table: all that the system knows of a type. A null member says that the type
/// doesn't offer the operation.
struct OtTypeDescriptor {
  const char* name = nullptr;  ///< The type's name, as a schema spells it.
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
  OtSetNullFunc SetNull = nullptr;  ///< Null for a type without a null value.
  const char* format = nullptr;     ///< Used by printing and scanning when the caller gives none.
  OtPrintFunc PrintToString = nullptr;
  OtScanFunc ScanFromString = nullptr;
  unsigned short memoryLength = 0;  ///< Bytes of one value in memory.
  unsigned short isFixed = 0;       ///< 1 when the disk size doesn't depend on the value.
  OtDefaultFunc DefaultValue = nullptr;
};

/// A table: pointers to rows, indexed by identifier and closed by a null pointer. The rows are
/// shared by all tables and managers, and live as long as the library.
using OtTypeFactory = OtTypeDescriptor* const*;

OT95_EXPORT extern OtTypeDescriptor* const CurrentFactory[];  ///< 41 rows.
OT95_EXPORT extern OtTypeDescriptor* const LegacyFactory[];   ///< The first 28, with old strings.

/// Carries values between types as an array of OtString. There is no conversion from type to type:
/// one type writes texts, the other reads them.
/// @code
///   OtTypeMgr types;
///   OtDate day(2000, 1, 1);
///   OtTypeConvertData* texts = types.ConvertTo(OtTypeOf<OtDate>::id, &day, 1);
///   OtString text = *texts->GetString(0);      // text == "2451545"
///   void* made = types.ConvertFrom(OtTypeOf<OtLong>::id, texts, 1);
///   OtLong dayNumber = *static_cast<OtLong*>(made);  // dayNumber == 2451545
///   types.Delete(OtTypeOf<OtLong>::id, made, 1);
///   delete texts;                              // with its strings: a manager owns them
/// @endcode
/// Not every value survives the way: an unsigned number beyond the signed range comes out negative,
/// a blob and a seal lose what they hold (their GetString is empty or null), and the ODMG types
/// turn a null string into an ordinary value.
class OT95_EXPORT OtTypeConvertData {
 public:
  OtTypeMgr* manager;   ///< Owner of the array; null while the array belongs to someone else.
  void* data;           ///< The array.
  unsigned long count;  ///< Elements of the array.
  char type;            ///< Type of the array: 11 for strings. Seals give 39, and can't be read.

  /// A new record on the heap; null when memory is short.
  static OtTypeConvertData* Make(char type, unsigned long count, void* data, OtTypeMgr* manager);
  /// Deletes the array if a manager owns it, and leaves the record without elements and type.
  ~OtTypeConvertData();
  OtTypeConvertData(const OtTypeConvertData&) = delete;
  OtTypeConvertData& operator=(const OtTypeConvertData&) = delete;

  /// The string at `index`, from 0 on; null behind the end or when the array isn't of strings. The
  /// record keeps it.
  OtString* GetString(int index);

 private:
  OtTypeConvertData(char typeOfData, unsigned long elements, void* array, OtTypeMgr* owner)
      : manager(owner), data(array), count(elements), type(typeOfData) {}
};

/// Operations on values of which only the type identifier is known. A manager is a pointer to a
/// table and a version number: it owns nothing, and is cheap to make and to copy.
class OT95_EXPORT OtTypeMgr {
 public:
  /// A manager for data of a format version; see SetFactory.
  explicit OtTypeMgr(unsigned long version = 5);

  /// Chooses the table for a format version: the old one, of 28 rows and with the old stored form
  /// of strings, for 0 to 3 and for 11; the current one for all others.
  void SetFactory(unsigned long version);
  /// 0 for identifiers 41 to 99, else 1; the table isn't asked. Identifiers from 100 on all mean
  /// the row "illegal".
  int IsValidType(char id) const;

  // Each of these calls the member of that name; its contract stands with its type above.
  void* Create(char id, unsigned long count = 1) const;
  void* Delete(char id, void* value, unsigned long count = 1) const;
  void* DefaultValue(char id, unsigned long count, int nullable) const;
  /// @return bytes written at `disk`.
  unsigned long Store(char id, void* disk, const void* memory, unsigned char format,
                      unsigned long count = 1) const;
  /// @param memory constructed values, which are replaced.
  /// @return bytes read at `disk`.
  unsigned long Load(char id, void* memory, const void* disk, unsigned char format,
                     unsigned long count = 1) const;
  /// Bytes that Store writes in the form `diskFormat`, or with a stored source, that Load reads.
  unsigned long DiskLenGet(char id, const void* value, unsigned char diskFormat,
                           unsigned long count, unsigned char sourceFormat) const;
  unsigned long DiskLenGetFromMemFile(char id, MemFile* file, unsigned char format,
                                      unsigned long count = 1) const;
  /// @param op in: a set of OT_OP bits; out: without the options of texts, and with OT_OP_WILDCARD
  ///   when the operand stands for a range.
  /// @param data isn't used.
  float EvalAndBound(char id, const OtIdxBounds* bounds, unsigned short& op, const void* value,
                     unsigned char format, unsigned long count, OtIdxBounds* limits,
                     OtEvalData* data) const;
  unsigned long Hash(char id, unsigned long length, const void* value, unsigned long count,
                     unsigned char format, int& status) const;
  unsigned long Translate(char id, void* target, unsigned char targetFormat,
                          unsigned long targetLength, const void* source,
                          unsigned char sourceFormat, unsigned long sourceLength,
                          unsigned long count = 1) const;
  /// @param value in memory form.
  int IsNullValue(char id, const void* value) const;

  /// Compares complete arrays.
  long Cmp(char id, const void* value1, const void* value2, unsigned short cmpOp,
           unsigned long count, unsigned char format) const;
  /// Compares arrays of which `length1` and `length2` bytes are at hand. The row "illegal" leaves
  /// `status` as it was.
  long Cmp(char id, unsigned long length1, const void* value1, unsigned long length2,
           const void* value2, unsigned short cmpOp, unsigned long count, unsigned char format,
           int& status) const;

  /// @name Typed forms
  /// Store, Load and comparison of values whose C++ type the compiler knows. It is the type that
  /// chooses the row; a type that no row holds, such as `long` on 64 bits, finds no such function.
  /// Under the table of old formats, types 28 and above have no row and give 0.
  /// @{
  template <class T, char typeId = OtTypeOf<T>::id>
  unsigned long Store(void* disk, const T* values, unsigned char format,
                      unsigned long count = 1) const {
    return Store(typeId, disk, static_cast<const void*>(values), format, count);
  }
  template <class T, char typeId = OtTypeOf<T>::id>
  unsigned long Load(T* values, const void* disk, unsigned char format,
                     unsigned long count = 1) const {
    return Load(typeId, static_cast<void*>(values), disk, format, count);
  }
  /// In memory form. With texts, `cmpOp` 0 takes `values2` for patterns: see text.h.
  template <class T, char typeId = OtTypeOf<T>::id>
  long Cmp(const T* values1, const T* values2, unsigned short cmpOp,
           unsigned long count = 1) const {
    return Cmp(typeId, static_cast<const void*>(values1), static_cast<const void*>(values2), cmpOp,
               count, OT_FORMAT_MEMORY);
  }
  /// @}

  // The members themselves, for a caller that works on many values of one type.
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

  /// The type's name: the row's own text, which isn't to be written to, when `buffer` is null;
  /// otherwise a copy in `buffer`, which must have room for it (16 bytes suffice for all rows).
  char* NameGet(char id, char* buffer) const;
  /// Finds a type by its exact name: 0 with `id` set, or 1 with `id` at 41.
  int Name2OtTypeId(const char* name, char& id) const;
  /// Bytes of `count` values in memory, cut to 16 bits: 40000 doubles give 57856.
  unsigned short MemLenGet(char id, unsigned long count = 1) const;
  /// 1 when the disk size doesn't depend on the value.
  unsigned short IsFixed(char id) const;
  /// 1 when the type has a null value.
  unsigned short SupportsNullValue(char id) const;
  /// Always OT_ERR_NOT_SUPPORTED: whether a stored value is null can't be told through this class.
  /// Load it first.
  int DiskIsNullValue(char id, const void* value) const;
  /// Element `index` of an array in memory; null from `count` on, where a `count` of 0 is no bound.
  void* GetArrayElement(char id, void* value, unsigned long index, unsigned long count = 1) const;
  const void* GetArrayElement(char id, const void* value, unsigned long index,
                              unsigned long count = 1) const;

  /// As the row's member; the record then owns its strings through this manager, which must outlive
  /// it. The caller frees the record with `delete`.
  OtTypeConvertData* ConvertTo(char id, void* value, unsigned long count = 1);
  /// A new array of `count` values, which the caller frees with Delete. `data` stays the caller's;
  /// this manager enters itself as the owner of its strings.
  void* ConvertFrom(char id, OtTypeConvertData* data, unsigned long count = 1);
  /// Makes a value null, or what an empty text converts to where the type has no null.
  int SetNullValue(char id, void* value);

  /// Renders values. A single value replaces the text of `target` or is appended to it, as its row
  /// does; the elements of an array are appended with commas between them. An array of `char` or
  /// OtByte is printed as one text.
  /// @param format null for the row's own, of which several aren't reversible: that of `d_Date`
  ///   and `d_Timestamp` has no year, and a scanned value is in the year 0.
  OtString& PrintToOtString(char id, OtString& target, const void* value, const char* format,
                            unsigned long count = 1) const;
  /// Parses one value, or `count` of `char` and OtByte. @return `value`.
  void* ScanFromOtString(char id, void* value, const OtString& text, const char* format,
                         unsigned long count = 1) const;
  /// The text that null values print as and scan from; "{NULL}" at start. A text that only begins
  /// with it also scans as null.
  static const OtString& GetNullPrintString();
  static void SetNullPrintString(const OtString& text);

  /// Each returns what the row holds; a non-null argument replaces it for all managers. A format
  /// or function must live as long as it is in place.
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

  // Keys that compare as bytes, for stores that know no other order. docs/sort-keys.md draws them,
  // and lists the values that have none. In all of these `length` is the number of bytes at
  // `value`, beyond which none is read; 0 means exactly `count` elements, as for Cmp.

  /// The version of the layout of these keys. An index is good for the version that it was made in.
  static unsigned SortKeyVersion();
  /// Writes the key of an array: the order of keys by memcmp, the shorter first on a tie, is that
  /// of Cmp on two such arrays in the same form with the same `cmpOp`. No key is the beginning of
  /// another, so that more may be written behind it.
  /// @param room bytes at `target`, which may be null for 0. What is written of a key that is
  /// longer
  ///   orders like the whole one as far as it goes.
  /// @param status 0; OT_ERR_END_OF_DATA when `room` cuts the key, or when the value ends before
  ///   `count` elements do, and the key is that of those that are there; OT_ERR_NOT_SUPPORTED when
  ///   Cmp has no order for the value under these options (and there is no key, but for a
  ///   not-a-number, whose key is at one end); OT_ERR_BAD_ARGUMENT for an identifier without type.
  /// @return the length of the whole key.
  unsigned long SortKey(char id, void* target, unsigned long room, const void* value,
                        unsigned long length, unsigned short cmpOp, unsigned long count,
                        unsigned char format, int& status) const;
  /// Finds the ends between which the keys of all values lie that satisfy a comparison: what
  /// EvalAndBound is for an index that Cmp orders. Not all that lies there satisfies it: Cmp
  /// decides.
  /// @param op the relation (OT_OP_EQUAL, OT_OP_LESS, OT_OP_GREATER) and options of the comparison;
  ///   without OT_CMP_NO_WILDCARDS the operand may be a pattern, or a date with open fields.
  /// @param value the operand.
  /// @param keyOp the options with which the keys in the store were made.
  /// @return 0, or a status as of SortKey; then there are no ends.
  int SortRange(char id, OtSortRange& range, unsigned short op, const void* value,
                unsigned long length, unsigned short keyOp, unsigned long count,
                unsigned char format) const;
  /// A hash of the sort key: arrays that Cmp finds equal under `cmpOp` hash alike, on every
  /// machine.
  /// @param seed any number; another one gives another hash.
  /// @param status as of SortKey; where there is no whole key the hash is 0.
  std::uint64_t Hash64(char id, const void* value, unsigned long length, unsigned short cmpOp,
                       unsigned long count, unsigned char format, std::uint64_t seed,
                       int& status) const;

 protected:
  /// Joins all elements into one text, each with a separator behind it: the first character from 1
  /// to 254 that none of them holds, else a comma. The caller owns the text.
  OtString* ConvertToOtStringOld(void* value, char id, unsigned long count);
  /// Splits such a text, which it consumes, and converts the parts.
  void* ConvertFromOtStringOld(OtString* text, char id, unsigned long count);

 private:
  OtTypeDescriptor* Row(char id) const;

  OtTypeFactory factory_;
  unsigned short version_;
};

/// The default manager as it stood, null before ___OtTypemgrContext; replaced if `manager` isn't
/// null. The one that was replaced is not deleted.
OT95_EXPORT OtTypeMgr* DefaultTypeMgr(OtTypeMgr* manager);

/// Brings the library up (non-zero) or down: the default manager, with version 5. Going down
/// deletes whatever manager is the default then, so one that is installed has to come from `new`.
/// Values and managers of one's own work without it.
OT95_EXPORT void ___OtTypemgrContext(int attach);
/// The options word; bit 0 makes the integer conversions of OtString decimal only.
OT95_EXPORT long& ___OtTypeMgrOptions();
/// Whether the base services are of this release: 0, or not (see CheckOtVersionNumber).
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
