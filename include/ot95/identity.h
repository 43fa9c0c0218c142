#ifndef OT95_IDENTITY_H
#define OT95_IDENTITY_H

/// @file
/// How persistent objects are named: identifiers, references, class identifiers and the seal.
///
/// An object is known by a 48-bit serial number, `highPart` times 2^32 plus `lowPart`. The block
/// beside it is a hint where to look; it is never compared and never hashed. All classes are plain
/// records of unsigned fields: no heap, copied by value, zero when fresh.
/// @code
///   OtObjId id{12, 4711, 0};                    // block 12, serial number 4711
///   ++id;
///   OtString text;
///   id.PrintToOtString(text, nullptr);          // (0-4712#12)
///   id.ScanFromOtString("7/1", "%L/%B");        // block 1, serial number 7
/// @endcode
///
/// `operator!=` is a three-way comparison here: 0 for no difference, positive when this orders
/// behind the other, negative when it orders before.
///
/// Text follows a format in which "%B" stands for blockId, "%L" lowPart, "%H" highPart, "%D"
/// databaseId, "%C" classNumber, "%V" classVersion and "%%" for a percent sign, as far as the type
/// has the field. "%h" and "%l" each take the following character with them and stand for a field
/// by their number in the format; such a format prints but doesn't read back. Scanning lets any
/// character of the text pass for a literal one, and leaves 0 where no number stands.

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
  /** Reads every field; those that the format doesn't name become 0. */ \
  void ScanFromOtString(const OtString& text, const char* format);

/// Identifier of an object within its database. Null when the serial number is 0.
class OT95_EXPORT OtObjId {
 public:
  BlockId blockId = 0;         ///< Where the object was last seen; no part of identity.
  std::uint32_t lowPart = 0;   ///< Bits 0 to 31 of the serial number.
  std::uint16_t highPart = 0;  ///< Bits 32 to 47.

  /// The greatest serial number, with block 0.
  void SetHighestValue();
  OtObjId& operator++();  ///< Next serial number; wraps at 48 bits.
  OtObjId& operator--();
  OtObjId& operator+=(short delta);
  int operator==(const OtObjId& other) const;
  int operator!=(const OtObjId& other) const;
  int operator==(const OtDBOId& other) const;  ///< The other's database doesn't count.
  int operator!=(const OtDBOId& other) const;
  OtObjId& operator=(const OtDBOId& other);  ///< The database is dropped.

  OT95_IDENTITY_TEXT
  OT95_IDENTITY_ROW
};

/// Identifier of an object in one of several databases.
class OT95_EXPORT OtDBOId {
 public:
  BlockId blockId = 0;
  std::uint32_t lowPart = 0;
  std::uint16_t highPart = 0;
  alignas(4) std::uint16_t databaseId = 0;  ///< Number of the database.

  OtDBOId& operator=(const OtObjId& other);  ///< In database 0.
  int operator==(const OtDBOId& other) const;
  int operator==(const OtObjId& other) const;  ///< An OtObjId counts as in database 0.
  int operator!=(const OtDBOId& other) const;  ///< The database decides before the serial number.
  int operator!=(const OtObjId& other) const;

  /// The database is never printed, and is 0 after a scan.
  OT95_IDENTITY_TEXT
};

/// A class of objects and its version. Fresh is 0, 0; null is 0xFFFF, 0xFFFF and orders first.
class OT95_EXPORT OtClassId {
 public:
  std::uint16_t classNumber = 0;
  std::uint16_t classVersion = 0;

  int operator!=(const OtClassId& other) const;
  int operator>(const OtClassId& other) const { return (*this != other) > 0; }

  OT95_IDENTITY_TEXT
  OT95_IDENTITY_ROW
};

/// Reference to an object anywhere, with its class. Null when the serial number is 0. The class is
/// not compared, and its version is not stored.
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
  int operator==(const OtRef& other) const;
  int operator!=(const OtRef& other) const;  ///< The database decides behind the serial number.

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

/// Reference within the own database.
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
  int operator==(const OtLocalRef& other) const;
  int operator!=(const OtLocalRef& other) const;
  int operator==(const OtRef& other) const;  ///< This counts as in database 0.
  int operator!=(const OtRef& other) const;

  OT95_IDENTITY_TEXT
};

#undef OT95_IDENTITY_ROW
#undef OT95_IDENTITY_TEXT

/// A 48-bit number that is stored most significant byte first in every form, so that its stored
/// bytes order as it does. It has no null.
class OT95_EXPORT OtSeal {
 public:
  std::uint16_t sealHigh = 0;    ///< Bits 32 to 47.
  std::uint16_t sealMiddle = 0;  ///< Bits 16 to 31.
  std::uint16_t sealLow = 0;     ///< Bits 0 to 15.

  void ConvertFrom(const OtObjId& id);        ///< Takes the serial number.
  void ConvertFrom(const OtInt64& number);    ///< Takes the low 48 bits.
  void ConvertTo(OtInt64& number) const;      ///< Never negative.
  int operator!=(const OtSeal& other) const;  ///< Difference of the first words that differ.
  int operator==(const OtSeal& other) const { return (*this != other) == 0; }

  OtString& PrintToOtString(OtString& target) const;  ///< Appends the decimal number.
  void ScanFromOtString(const OtString& text);        ///< An empty text is 0.
};

static_assert(sizeof(OtObjId) == 12 && sizeof(OtDBOId) == 16 && sizeof(OtClassId) == 4 &&
                  sizeof(OtRef) == 20 && sizeof(OtLocalRef) == 16 && sizeof(OtSeal) == 6,
              "the strides of arrays in memory");

#endif
