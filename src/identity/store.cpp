// Identifiers in their stored form: moved, compared and hashed as bytes that are laid out by hand.

#include <bit>
#include <cstring>

#include "identity/identifiers.h"
#include "kit/estimate.h"
#include "kit/walks.h"

namespace {

using ot95::EstimateRange;
using ot95::HasRange;
using ot95::StoreBound;

// What the three stored types differ in. `keyAt` and `keyWidth` give the stretch of the stored form
// that counts in comparison and hash; the block before it does not, nor does the class of a
// reference. `Key` is that stretch as a number whose most significant byte decides first.
template <class T>
struct Form;

template <>
struct Form<OtObjId> {
  static constexpr unsigned width = 10, keyAt = 4, keyWidth = 6;
  template <class Id, class Visit>
  static void EachField(Id& id, Visit&& visit) {
    visit(id.blockId), visit(id.lowPart), visit(id.highPart);
  }
  static std::uint64_t Key(std::uint64_t stretch) { return stretch; }
  static std::uint32_t Fold(const OtObjId& id) { return id.lowPart ^ id.highPart; }
};

template <>
struct Form<OtClassId> {
  static constexpr unsigned width = 4, keyAt = 0, keyWidth = 4;
  template <class Id, class Visit>
  static void EachField(Id& id, Visit&& visit) {
    visit(id.classNumber), visit(id.classVersion);
  }
  static std::uint64_t Key(std::uint64_t stretch) {
    return std::rotl(static_cast<std::uint32_t>(stretch), 16);
  }
  static std::uint32_t Fold(const OtClassId& id) {
    return static_cast<std::uint32_t>(id.classNumber ^ id.classVersion);
  }
};

template <>
struct Form<OtRef> {
  static constexpr unsigned width = 14, keyAt = 4, keyWidth = 8;
  template <class Id, class Visit>
  static void EachField(Id& id, Visit&& visit) {
    visit(id.blockId), visit(id.lowPart), visit(id.highPart), visit(id.databaseId),
        visit(id.classNumber);
  }
  static std::uint64_t Key(std::uint64_t stretch) { return stretch; }
  static std::uint32_t Fold(const OtRef& id) {
    return id.lowPart ^ id.highPart ^ std::uint32_t{id.databaseId};
  }
};

// Stored forms other than the big-endian one have the least significant byte first, also on a
// machine that hasn't.
bool NeedsReversal(unsigned char format) {
  const bool wantsBig = ot95::FormOf(format) == OT_FORMAT_BIG_ENDIAN;
  return wantsBig != (std::endian::native == std::endian::big);
}

template <class T, bool reverse>
void StoreAll(unsigned char* disk, const unsigned char* memory, unsigned long count) {
  for (; count > 0; --count, memory += sizeof(T)) {
    T id;
    std::memcpy(&id, memory, sizeof id);
    Form<T>::EachField(id, [&disk](auto field) {
      if constexpr (reverse) field = ot95::Reversed(field);
      std::memcpy(disk, &field, sizeof field);
      disk += sizeof field;
    });
  }
}

template <class T, bool reverse>
void LoadAll(unsigned char* memory, const unsigned char* disk, unsigned long count) {
  for (; count > 0; --count, memory += sizeof(T)) {
    T id;
    Form<T>::EachField(id, [&disk](auto& field) {
      std::memcpy(&field, disk, sizeof field);
      if constexpr (reverse) field = ot95::Reversed(field);
      disk += sizeof field;
    });
    std::memcpy(memory, &id, sizeof id);
  }
}

template <class T>
unsigned long StoreIds(void* disk, const void* memory, unsigned char format, unsigned long count) {
  const auto store = NeedsReversal(format) ? StoreAll<T, true> : StoreAll<T, false>;
  store(static_cast<unsigned char*>(disk), static_cast<const unsigned char*>(memory), count);
  return count * Form<T>::width;
}

template <class T>
unsigned long LoadIds(void* memory, const void* disk, unsigned char format, unsigned long count) {
  const auto load = NeedsReversal(format) ? LoadAll<T, true> : LoadAll<T, false>;
  load(static_cast<unsigned char*>(memory), static_cast<const unsigned char*>(disk), count);
  return count * Form<T>::width;
}

// The stretch of a stored element that decides, as a number.
template <class T>
std::uint64_t KeyOf(const unsigned char* element) {
  unsigned char stretch[8] = {};
  std::memcpy(stretch, element + Form<T>::keyAt, Form<T>::keyWidth);
  std::uint64_t number;
  std::memcpy(&number, stretch, sizeof number);
  if constexpr (std::endian::native == std::endian::big) number = ot95::Reversed(number);
  return Form<T>::Key(number);
}

// The difference of the most significant bytes that differ: not cut to -1 and 1.
long ByteDifference(std::uint64_t a, std::uint64_t b) {
  if (a == b) return 0;
  const int shift = (63 - std::countl_zero(a ^ b)) & ~7;
  return static_cast<long>(a >> shift & 255) - static_cast<long>(b >> shift & 255);
}

// Whether an array of stored classes begins with a null.
bool BeginsWithNull(const void* value, unsigned long length, unsigned long count) {
  constexpr unsigned width = Form<OtClassId>::width;
  unsigned char buffer[width];
  const ot95::Side side(value, length, count, width);
  return KeyOf<OtClassId>(side.Element(0, width, buffer)) == 0xffffffff;
}

template <class T>
long CompareStored(unsigned long length1, const void* value1, unsigned long length2,
                   const void* value2, unsigned long count, int& status) {
  const long result =
      ot95::WalkPairs(Form<T>::width, length1, value1, length2, value2, count, status,
                      [](const unsigned char* element1, const unsigned char* element2) {
                        return ByteDifference(KeyOf<T>(element1), KeyOf<T>(element2));
                      });
  // The bytes of a null class are the greatest there are, but it orders first. Only the first
  // elements are asked, whichever element differed: stored indexes are in that order.
  if constexpr (std::is_same_v<T, OtClassId>) {
    if (result != 0 && BeginsWithNull(value1, length1, count)) return -1;
    if (result != 0 && BeginsWithNull(value2, length2, count)) return 1;
  }
  return result;
}

template <class T>
long CompareIds(unsigned char format, unsigned long length1, void* value1, unsigned long length2,
                void* value2, unsigned long count, int& status) {
  if (format != OT_FORMAT_MEMORY) {
    return CompareStored<T>(length1, value1, length2, value2, count, status);
  }
  status = 0;
  const T* a = static_cast<const T*>(value1);
  const T* b = static_cast<const T*>(value2);
  for (; count > 0; --count, ++a, ++b) {
    if (const int result = *a != *b) return result;
  }
  return 0;
}

// Every form but that of memory is read least significant byte first: a big-endian record hashes
// apart from the others.
template <class T>
unsigned long HashIds(unsigned char format, const void* value, unsigned long count, int& status) {
  status = 0;
  std::uint32_t hash = 0;
  const auto* bytes = static_cast<const unsigned char*>(value);
  for (; count > 0; --count) {
    T id;
    if (format == OT_FORMAT_MEMORY) {
      std::memcpy(&id, bytes, sizeof id);
      bytes += sizeof id;
    } else {
      bytes += LoadIds<T>(&id, bytes, OT_FORMAT_NATIVE, 1);
    }
    hash ^= Form<T>::Fold(id);
  }
  return ot95::FinishHash(hash);
}

// The line that folds a 48-bit serial number has always had the factor 65535.
double LineNumber(const OtObjId& id) {
  return id.highPart * 65535.0 + id.lowPart;
}

double LineNumberAt(const void* disk, unsigned char format) {
  OtObjId id;
  OtObjId::Load(&id, disk, format, 1);
  return LineNumber(id);
}

}  // namespace

#define OT95_IDENTITY_STORAGE(T)                                                                   \
  void* T::Create(unsigned long count) {                                                           \
    return ot95::CreateValues<T>(count);                                                           \
  }                                                                                                \
  void* T::Delete(void* value, unsigned long count) {                                              \
    return ot95::DeletePlain(value, count);                                                        \
  }                                                                                                \
  unsigned long T::Store(void* disk, const void* memory, unsigned char format,                     \
                         unsigned long count) {                                                    \
    return StoreIds<T>(disk, memory, format, count);                                               \
  }                                                                                                \
  unsigned long T::Load(void* memory, const void* disk, unsigned char format,                      \
                        unsigned long count) {                                                     \
    return LoadIds<T>(memory, disk, format, count);                                                \
  }                                                                                                \
  unsigned long T::NullSizeGet(unsigned long count) {                                              \
    return count * Form<T>::width;                                                                 \
  }                                                                                                \
  unsigned long T::SizeGet(const void*, unsigned char, unsigned char, unsigned long count) {       \
    return count * Form<T>::width;                                                                 \
  }                                                                                                \
  unsigned long T::SizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {              \
    return count * Form<T>::width;                                                                 \
  }                                                                                                \
  long T::Compare(unsigned char format, unsigned long length1, void* value1,                       \
                  unsigned long length2, void* value2, unsigned short, unsigned long count,        \
                  int& status) {                                                                   \
    return CompareIds<T>(format, length1, value1, length2, value2, count, status);                 \
  }                                                                                                \
  unsigned long T::Hash(unsigned char format, unsigned long, void* value, unsigned long count,     \
                        int& status) {                                                             \
    return HashIds<T>(format, value, count, status);                                               \
  }                                                                                                \
  unsigned long T::Translate(void* target, unsigned char targetFormat, unsigned long targetLength, \
                             void* source, unsigned char sourceFormat, unsigned long sourceLength, \
                             unsigned long count) {                                                \
    return ot95::TranslateFixed<T::Load, T::Store, ot95::AssignBytes<sizeof(T)>, sizeof(T)>(       \
        target, targetFormat, targetLength, source, sourceFormat, sourceLength, count);            \
  }

OT95_IDENTITY_STORAGE(OtObjId)
OT95_IDENTITY_STORAGE(OtClassId)
OT95_IDENTITY_STORAGE(OtRef)
#undef OT95_IDENTITY_STORAGE

float OtObjId::EvalAndBound(OtIdxBounds* bounds, unsigned short& op, void* value,
                            unsigned char format, unsigned long count, OtIdxBounds* limits) {
  const bool ranged = HasRange(bounds);
  constexpr unsigned width = Form<OtObjId>::width;
  const double lower = ranged ? LineNumberAt(ot95::LowerKey<width>(*bounds).bytes, format) : 0;
  const double upper = ranged ? LineNumberAt(ot95::UpperKey<width>(*bounds).bytes, format) : 0;
  const double number = LineNumberAt(value, format);
  StoreBound(limits, value, op, count * width);
  return static_cast<float>(EstimateRange(op, number, number, lower, upper, 1.0) /
                            (upper - lower + 1.0));
}

float OtClassId::EvalAndBound(OtIdxBounds*, unsigned short&, void*, unsigned char, unsigned long,
                              OtIdxBounds*) {
  return 1.0F;
}

// References lie on a fixed line, whatever range an index has.
float OtRef::EvalAndBound(OtIdxBounds*, unsigned short& op, void* value, unsigned char format,
                          unsigned long count, OtIdxBounds* limits) {
  constexpr double lineLength = 1.8446744065119617e19;
  op &= ot95::operatorMask;
  OtRef ref;
  Load(&ref, value, format, 1);
  const double number = (ref.databaseId * 65535.0 + ref.highPart) * 4294967295.0 + ref.lowPart;
  double sum = 0;
  if (op & OT_OP_LESS) sum = number;
  if (op & OT_OP_GREATER) sum += lineLength - (number + 1.0);
  if (op & OT_OP_EQUAL) sum += 1.0;
  StoreBound(limits, value, op, count * Form<OtRef>::width);
  return static_cast<float>(sum / lineLength);
}
