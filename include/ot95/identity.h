#ifndef OT95_IDENTITY_H
#define OT95_IDENTITY_H

/// @file
/// How persistent objects are named: identifiers, references, class identifiers and the seal.
///
/// An object is known by a 48-bit serial number, `highPart` times 2^32 plus `lowPart`. The block
/// beside it is a hint where to look; it is never compared and never hashed. The richer forms add a
/// database and a class:
///
/// | Type | block | serial number | database | class | On disk | Row | Null is |
/// |---|---|---|---|---|---|---|---|
/// | OtObjId | yes | yes | | | 10 bytes | 15 | serial number 0 |
/// | OtDBOId | yes | yes | yes | | never | none | |
/// | OtClassId | | | | number, version | 4 bytes | 16 | 0xFFFF, 0xFFFF |
/// | OtRef | yes | yes | yes | number, version | 14, no version | 17 | serial number 0 |
/// | OtLocalRef | yes | yes | | number, version | never | none | |
/// | OtSeal | | a number of its own | | | 6 bytes | 39 | has none |
///
/// All are plain records of unsigned fields: no heap, copied by value, zero when fresh.
/// @code
///   OtObjId id{12, 4711, 0};                    // block 12, serial number 4711
///   ++id;                                       // id.lowPart == 4712
///   OtString text;
///   id.PrintToOtString(text, nullptr);          // text == "(0-4712#12)"
///   id.ScanFromOtString("7/1", "%L/%B");        // id.lowPart == 7
///   OtRef reference;
///   reference = id;                             // reference.IsValid() == 0
///   reference = OtClassId{22, 1};               // reference.IsValid() == 1
///   OtSeal seal;
///   seal.ConvertFrom(id);                       // seal.sealLow == 7
/// @endcode
///
/// `operator!=` is a three-way comparison here, not a truth value: 0 for no difference, positive
/// when this orders behind the other, negative when it orders before. `==` and `<` are truth values
/// and go with it; they suit containers. What counts is identity: two values that differ in
/// their block alone are equal, and so are two references that differ in their class.
///
/// Text follows a format in which "%B" stands for blockId, "%L" lowPart, "%H" highPart, "%D"
/// databaseId, "%C" classNumber, "%V" classVersion and "%%" for a percent sign, as far as the type
/// has the field; of any other the letter alone is printed. "%h" and "%l" each take the following
/// character with them and stand for a field by their number in the format; such a format prints
/// but doesn't read back.
///
/// Scanning lets any character of the text pass for a literal one, leaves 0 where no number stands,
/// and reports nothing. A text that begins with the null text gives the null value. A blank in the
/// format wants a character of its own in the text: "(1:0-5#2,7)" under the format of OtRef, which
/// has a blank before the class, loses the 7.
///
/// What doesn't survive:
/// - Store and Load of an OtRef drop the class version; it is 0 afterwards.
/// - The text of an OtDBOId has no database, that of an OtRef no class version.
/// - A seal doesn't survive a conversion (OtTypeMgr::ConvertTo): no type finds the strings that it
///   gives, and the result is what a missing string becomes, 0 for another seal. Print and scan it,
///   or go by OtInt64.

#include <cstdint>

#include "ot95/base.h"

class MemFile;
class OtDBOId;
class OtInt64;
class OtLocalRef;
class OtRef;
class OtString;
struct OtIdxBounds;

// The members of a type's row, by the contracts of OtTypeDescriptor (see typemgr.h). `count` 0 or
// 1 is a single value for Create and Delete. PrintToString and ScanFromString handle one value.
// Compare in memory form goes by `operator!=`; on disk it goes by the bytes of the number from the
// last to the first, whatever the format says, which orders little-endian forms by number and a
// reference by its database first. Hash reads disk forms as little-endian ones, likewise.
#define OT95_IDENTITY_ROW                                                                    \
  static void* Create(unsigned long count = 1);                                              \
  static void* Delete(void* value, unsigned long count = 1);                                 \
  static unsigned long Store(void* disk, const void* memory, unsigned char format,           \
                             unsigned long count = 1);                                       \
  static unsigned long Load(void* memory, const void* disk, unsigned char format,            \
                            unsigned long count = 1);                                        \
  static unsigned long NullSizeGet(unsigned long count = 1);                                 \
  static unsigned long SizeGet(const void* value, unsigned char sourceFormat,                \
                               unsigned char diskFormat, unsigned long count = 1);           \
  static unsigned long SizeGetFromMemFile(MemFile* file, unsigned char format,               \
                                          unsigned long count = 1);                          \
  static long Compare(unsigned char format, unsigned long length1, void* value1,             \
                      unsigned long length2, void* value2, unsigned short cmpOp,             \
                      unsigned long count, int& status);                                     \
  static float EvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value,            \
                            unsigned char format, unsigned long count, OtIdxBounds* limits); \
  static unsigned long Hash(unsigned char format, unsigned long length, void* value,         \
                            unsigned long count, int& status);                               \
  static unsigned long Translate(                                                            \
      void* target, unsigned char targetFormat, unsigned long targetLength, void* source,    \
      unsigned char sourceFormat, unsigned long sourceLength, unsigned long count = 1);      \
  static OtString& PrintToString(OtString& target, void* value, const char* format,          \
                                 unsigned long count = 1);                                   \
  static void* ScanFromString(void* value, OtString& text, const char* format,               \
                              unsigned long count = 1);

// Text of one value; a null format means the class's own.
#define OT95_IDENTITY_TEXT                                               \
  /** Replaces `target` by the value's text; a null value is "{NULL}" */ \
  OtString& PrintToOtString(OtString& target, const char* format) const; \
  /** Reads every field; those that the format doesn't name become 0 */  \
  void ScanFromOtString(const OtString& text, const char* format);

/// Identifier of an object within its database. Null when the serial number is 0. Its own format is
/// "(%H-%L#%B)".
class OT95_EXPORT OtObjId {
 public:
  BlockId blockId = 0;         ///< Where the object was last seen; no part of identity.
  std::uint32_t lowPart = 0;   ///< Bits 0 to 31 of the serial number.
  std::uint16_t highPart = 0;  ///< Bits 32 to 47.

  /// The greatest serial number, with block 0.
  void SetHighestValue();
  // The serial number moves and wraps at 48 bits; the block stays.
  OtObjId& operator++();
  OtObjId& operator--();
  OtObjId& operator+=(short delta);
  int operator==(const OtObjId& other) const;
  int operator!=(const OtObjId& other) const;
  /// By serial number.
  bool operator<(const OtObjId& other) const { return (*this != other) < 0; }
  int operator==(const OtDBOId& other) const;  ///< The other's database doesn't count.
  int operator!=(const OtDBOId& other) const;
  OtObjId& operator=(const OtDBOId& other);  ///< The database is dropped.

  OT95_IDENTITY_TEXT
  OT95_IDENTITY_ROW
};

/// Identifier of an object in one of several databases. It exists in memory only, and its text has
/// no database: what is printed and scanned is the OtObjId in it, and the database is then 0.
class OT95_EXPORT OtDBOId {
 public:
  BlockId blockId = 0;  ///< As in OtObjId, like the next two.
  std::uint32_t lowPart = 0;
  std::uint16_t highPart = 0;
  alignas(4) std::uint16_t databaseId = 0;  ///< Number of the database.

  OtDBOId& operator=(const OtObjId& other);  ///< In database 0.
  int operator==(const OtDBOId& other) const;
  int operator==(const OtObjId& other) const;  ///< An OtObjId counts as in database 0.
  int operator!=(const OtDBOId& other) const;  ///< The database decides before the serial number.
  /// By database, then by serial number.
  bool operator<(const OtDBOId& other) const { return (*this != other) < 0; }
  int operator!=(const OtObjId& other) const;

  /// The database is never printed, and is 0 after a scan.
  OT95_IDENTITY_TEXT
};

/// A class of objects and its version. Fresh is 0, 0; null is 0xFFFF, 0xFFFF and orders first. Its
/// own format is "(%Cv%V)". There is no `==`: `!=` serves both purposes.
class OT95_EXPORT OtClassId {
 public:
  std::uint16_t classNumber = 0;   ///< 0 in a reference that has no class.
  std::uint16_t classVersion = 0;  ///< Counted by the schema.

  int operator!=(const OtClassId& other) const;
  /// By number, then by version, behind null.
  bool operator<(const OtClassId& other) const { return (*this != other) < 0; }
  int operator>(const OtClassId& other) const { return (*this != other) > 0; }

  OT95_IDENTITY_TEXT
  OT95_IDENTITY_ROW
};

/// Reference to an object anywhere, with its class. Null when the serial number is 0. The class is
/// not compared, and its version is not stored. Its own format is "(%D:%H-%L#%B, %C)"; only the
/// static PrintToString without a format shows the version, as in "(3:0-9#1,22v2)".
class OT95_EXPORT OtRef {
 public:
  BlockId blockId = 0;
  std::uint32_t lowPart = 0;
  std::uint16_t highPart = 0;
  alignas(4) std::uint16_t databaseId = 0;  ///< 0xFFFF marks a reference to an origin.
  alignas(4) std::uint16_t classNumber = 0;
  std::uint16_t classVersion = 0;

  OtRef& operator=(const OtClassId& other);   ///< Sets the class alone.
  OtRef& operator=(const OtObjId& other);     ///< Sets block and serial number alone.
  OtRef& operator=(const OtDBOId& other);     ///< Keeps the class alone.
  OtRef& operator=(const OtLocalRef& other);  ///< In database 0.
  OtRef& operator=(unsigned short database);  ///< Sets the database alone.
  int operator==(const OtRef& other) const;   ///< Serial number and database; the class may differ.
  int operator!=(const OtRef& other) const;   ///< The database decides behind the serial number.
  /// By serial number, then by database. Stored references order by database first.
  bool operator<(const OtRef& other) const { return (*this != other) < 0; }

  /// 1 without a serial number, without a class, or when it refers to an origin.
  unsigned short IsInvalid() const;
  unsigned short IsValid() const { return !IsInvalid(); }
  /// 1 without a serial number, or without a class unless it refers to an origin.
  unsigned short IsInvalidOriginId() const;
  unsigned short IsValidOriginId() const { return !IsInvalidOriginId(); }

  OT95_IDENTITY_TEXT
  OT95_IDENTITY_ROW

 private:
  // Makes `ref = {}` ambiguous, which would set the database to 0 and keep all else.
  enum class Nothing {};
  OtRef& operator=(Nothing) = delete;
};

/// Reference within the own database. It exists in memory only. Its text is that of an OtRef
/// without the database: "(%H-%L#%B,%C)".
class OT95_EXPORT OtLocalRef {
 public:
  BlockId blockId = 0;
  std::uint32_t lowPart = 0;
  std::uint16_t highPart = 0;
  alignas(4) std::uint16_t classNumber = 0;
  std::uint16_t classVersion = 0;

  OtLocalRef& operator=(const OtRef& other);      ///< The database is dropped.
  OtLocalRef& operator=(const OtClassId& other);  ///< Sets the class alone.
  OtLocalRef& operator=(const OtObjId& other);    ///< Keeps the class alone.
  int operator==(const OtLocalRef& other) const;  ///< Serial number; the class may differ.
  int operator!=(const OtLocalRef& other) const;
  /// By serial number.
  bool operator<(const OtLocalRef& other) const { return (*this != other) < 0; }
  int operator==(const OtRef& other) const;  ///< This counts as in database 0.
  int operator!=(const OtRef& other) const;

  OT95_IDENTITY_TEXT
};

#undef OT95_IDENTITY_ROW
#undef OT95_IDENTITY_TEXT

/// A 48-bit number that is stored most significant byte first in every form, so that its stored
/// bytes order as it does. It has no null, and doesn't survive a conversion between types; see the
/// top of this file.
class OT95_EXPORT OtSeal {
 public:
  std::uint16_t sealHigh = 0;    ///< Bits 32 to 47.
  std::uint16_t sealMiddle = 0;  ///< Bits 16 to 31.
  std::uint16_t sealLow = 0;     ///< Bits 0 to 15.

  void ConvertFrom(const OtObjId& id);        ///< Takes the serial number.
  void ConvertFrom(const OtInt64& number);    ///< Takes the low 48 bits.
  void ConvertTo(OtInt64& number) const;      ///< Never negative.
  int operator!=(const OtSeal& other) const;  ///< Difference of the first words that differ.
  /// By number.
  bool operator<(const OtSeal& other) const { return (*this != other) < 0; }
  int operator==(const OtSeal& other) const { return (*this != other) == 0; }

  OtString& PrintToOtString(OtString& target) const;  ///< Appends the decimal number.
  /// Reads a number as OtInt64 does with "%S", and takes its low 48 bits. An empty text is 0; one
  /// that is no number is 2^48 - 1.
  void ScanFromOtString(const OtString& text);
};

static_assert(sizeof(OtObjId) == 12 && sizeof(OtDBOId) == 16 && sizeof(OtClassId) == 4 &&
                  sizeof(OtRef) == 20 && sizeof(OtLocalRef) == 16 && sizeof(OtSeal) == 6,
              "the strides of arrays in memory");

#endif
