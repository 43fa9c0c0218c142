// Sort keys of identifiers, references and seals. In stored forms comparison walks the bytes where
// they stand, from the last to the first; so do the keys.
#include "identity/sortkey.h"

#include "identity/identifiers.h"

namespace ot95 {

namespace {

constexpr std::size_t kObjIdWidth = 10, kClassIdWidth = 4, kRefWidth = 14, kSealWidth = 6;
constexpr std::size_t kBlockWidth = 4;  // before the serial number

template <class T>
T ValueOf(const unsigned char* element) {
  T value;
  std::memcpy(&value, element, sizeof value);
  return value;
}

void PutReversed(SortKeyWriter& out, const unsigned char* bytes, std::size_t length) {
  while (length > 0) out.Put(bytes[--length]);
}

void PutSerialNumber(SortKeyWriter& out, std::uint64_t number) {
  out.PutNumber(static_cast<std::uint16_t>(number >> 32));
  out.PutNumber(static_cast<std::uint32_t>(number));
}

// Unlike that of other types, their memory form is the whole format byte.
bool IsInMemory(const SortInput& input) {
  return input.format == OT_FORMAT_MEMORY;
}

}  // namespace

int SortKeyOfObjIds(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsInMemory(input);
  return PutElements(input, inMemory ? sizeof(OtObjId) : kObjIdWidth,
                     [&](const unsigned char* element, std::uint64_t) {
                       if (inMemory) {
                         PutSerialNumber(out, SerialNumber(ValueOf<OtObjId>(element)));
                       } else {
                         PutReversed(out, element + kBlockWidth, 6);
                       }
                       return 0;
                     });
}

int SortKeyOfRefs(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsInMemory(input);
  return PutElements(input, inMemory ? sizeof(OtRef) : kRefWidth,
                     [&](const unsigned char* element, std::uint64_t) {
                       if (inMemory) {
                         const OtRef ref = ValueOf<OtRef>(element);
                         PutSerialNumber(out, SerialNumber(ref));
                         out.PutNumber(ref.databaseId);
                       } else {
                         PutReversed(out, element + kBlockWidth, 8);
                       }
                       return 0;
                     });
}

// One more than the number wraps the null, all ones, to the lowest place. A stored null comes first
// as the first element only, and then before any other array, also one that begins with it.
int SortKeyOfClassIds(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsInMemory(input);
  return PutElements(input, kClassIdWidth,
                     [&](const unsigned char* element, std::uint64_t index) -> int {
                       std::uint32_t key = 0;
                       if (inMemory) {
                         key = ClassKey(ValueOf<OtClassId>(element)) + 1;
                       } else {
                         key = std::uint32_t{element[1]} << 24 | std::uint32_t{element[0]} << 16 |
                               std::uint32_t{element[3]} << 8 | element[2];
                         if (index == 0 && ++key == 0 && input.count > 1)
                           return OT_ERR_NOT_SUPPORTED;
                       }
                       out.PutNumber(key);
                       return 0;
                     });
}

int SortKeyOfSeals(const SortInput& input, SortKeyWriter& out) {
  const bool inMemory = IsInMemory(input);
  return PutElements(input, kSealWidth, [&](const unsigned char* element, std::uint64_t) {
    if (inMemory) {
      const OtSeal seal = ValueOf<OtSeal>(element);
      out.PutNumber(seal.sealHigh);
      out.PutNumber(seal.sealMiddle);
      out.PutNumber(seal.sealLow);
    } else {
      for (std::size_t i = 0; i < kSealWidth; ++i) out.Put(element[i]);
    }
    return 0;
  });
}

}  // namespace ot95
