// The way of arrays and texts between C and the library.
#include "c/bridge.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "c/utf8.h"

namespace ot95::c {

namespace {

constexpr int kCurrentTypes = 41, kOldTypes = 28;
constexpr unsigned long kOldVersion = 3;
constexpr unsigned char kWithoutKey = 0x7f;

}  // namespace

int StatusOf(int libraryStatus) {
  switch (libraryStatus) {
    case 0:
      return OT95_OK;
    case OT_ERR_END_OF_DATA:
      return OT95_ERR_ENDS;
    case OT_ERR_NOT_SUPPORTED:
      return OT95_ERR_NOT_SUPPORTED;
    default:
      return OT95_ERR_DAMAGED;
  }
}

Table Table::Of(int& number) {
  const bool isKnown = (number & ~(OT95_OLD_TABLE | 0xff)) == 0;
  const bool isOld = (number & OT95_OLD_TABLE) != 0;
  number &= 0xff;
  if (!isKnown) return {CurrentFactory, 0};
  return isOld ? Table{LegacyFactory, kOldTypes} : Table{CurrentFactory, kCurrentTypes};
}

int Type::Open(int number) {
  const Table table = Table::Of(number);
  if (number >= table.count) return OT95_ERR_TYPE;
  row = table.rows[number];
  if (row->memoryLength == 0) return OT95_ERR_NOT_SUPPORTED;
  if (table.rows == LegacyFactory) manager.SetFactory(kOldVersion);
  id = static_cast<char>(number);
  return OT95_OK;
}

bool Type::IsText() const {
  return row->format == std::string_view("%s");
}

int OpenForm(unsigned form, unsigned char& format) {
  if (form > 0xff || (form & OT_FORMAT_MEMORY) != 0) return OT95_ERR_ARGUMENT;
  format = static_cast<unsigned char>(form);
  return OT95_OK;
}

int Stored::OpenAs(const ot95_array* array, unsigned char formMask, unsigned long& consumed) {
  consumed = 0;
  if (array == nullptr || array->count == 0) return OT95_ERR_ARGUMENT;
  if (array->bytes == nullptr && array->size != 0) return OT95_ERR_ARGUMENT;
  if (const int status = OpenForm(array->form, format_)) return status;
  if (const int status = type_.Open(array->type)) return status;
  bytes_ = array->bytes;
  count_ = array->count;
  const int status = type_.manager.VerifyStored(type_.id, bytes_, array->size, format_ & formMask,
                                                count_, consumed);
  size_ = consumed;
  return StatusOf(status);
}

int Stored::Open(const ot95_array* array, unsigned long& consumed) {
  return OpenAs(array, 0xff, consumed);
}

int Stored::Open(const ot95_array* array) {
  unsigned long consumed;
  return OpenAs(array, 0xff, consumed);
}

int Stored::OpenWhole(const ot95_array* array) {
  unsigned long consumed;
  return OpenAs(array, kWithoutKey, consumed);
}

Values::~Values() {
  if (data_ != nullptr) type_.manager.Delete(type_.id, data_, count_);
}

int Values::Adopt(const Type& type, void* data, unsigned long count) {
  type_ = type;
  data_ = data;
  count_ = count;
  return data != nullptr ? OT95_OK : OT95_ERR_MEMORY;
}

int Values::Make(const Type& type, unsigned long count) {
  type_ = type;
  if (const int status = Adopt(type, type_.manager.Create(type.id, count), count)) return status;
  // A scalar comes as the allocator left it.
  if (type.IsFixed() && type.row->Construct != nullptr) type.row->Construct(data_, count, 0);
  return OT95_OK;
}

int Values::Load(Stored& stored) {
  if (const int status = Make(stored.type(), stored.count())) return status;
  type_.manager.Load(type_.id, data_, stored.bytes(), stored.format(), count_);
  return OT95_OK;
}

void* Values::Element(unsigned long index) const {
  return type_.manager.GetArrayElement(type_.id, data_, index, count_);
}

bool Values::IsNull(unsigned long index) {
  return type_.row->IsNull != nullptr && type_.manager.IsNullValue(type_.id, Element(index)) != 0;
}

int Values::Store(unsigned char format, ot95_buffer* out) {
  const unsigned long size =
      type_.manager.DiskLenGet(type_.id, data_, format, count_, OT_FORMAT_MEMORY);
  if (const int status = AskRoom(out, size)) return status;
  out->size = type_.manager.Store(type_.id, out->data, data_, format, count_);
  return OT95_OK;
}

int AskRoom(ot95_buffer* out, std::size_t size) {
  if (!IsBuffer(out)) return OT95_ERR_ARGUMENT;
  out->size = size;
  return size > out->room ? OT95_ERR_ROOM : OT95_OK;
}

int Give(ot95_buffer* out, const void* bytes, std::size_t size) {
  if (const int status = AskRoom(out, size)) return status;
  if (size != 0) std::memcpy(out->data, bytes, size);
  return OT95_OK;
}

int GiveUnits(ot95_buffer* out, const std::uint16_t* units, std::size_t count) {
  if (const int status = AskRoom(out, Utf8Size(units, count))) return status;
  auto* utf8 = static_cast<char*>(out->data);
  EncodeUtf8(units, count, utf8);
  if (out->room > out->size) utf8[out->size] = 0;
  return OT95_OK;
}

int GiveText(ot95_buffer* out, const OtString& text) {
  OtString wide(text);
  if (wide.GetCodeSetCode() == OT_CS_NONE) {
    wide.SetCodeSet(OT_CS_UNICODE);
  } else {
    wide.MapToCodeSet(OT_CS_UNICODE);
  }
  if (wide.GetCodeSetCode() != OT_CS_UNICODE) return OT95_ERR_MEMORY;
  return GiveUnits(out, reinterpret_cast<const std::uint16_t*>(wide.StrGet()), wide.Len());
}

int OpenOptions(unsigned options, unsigned short& cmpOp) {
  constexpr unsigned known = OT95_IGNORE_CASE | OT95_IGNORE_ACCENT | OT95_IGNORE_SPACE |
                             OT95_ORDER_ONLY | OT95_IGNORE_SYMBOLS;
  if ((options & ~(known | OT95_WILDCARDS)) != 0) return OT95_ERR_ARGUMENT;
  const unsigned wildcards = (options & OT95_WILDCARDS) != 0 ? 0 : unsigned{OT_CMP_NO_WILDCARDS};
  cmpOp = static_cast<unsigned short>((options & known) | wildcards);
  return OT95_OK;
}

}  // namespace ot95::c

const char* ot95_strerror(int status) {
  static constexpr const char* kMeanings[] = {
      "no error",
      "an argument has no meaning here",
      "there is no such type",
      "there is no such language or code set",
      "the bytes end before the values do",
      "the bytes can't be such values",
      "the buffer is too small",
      "the text isn't UTF-8, or holds a zero, or is too long",
      "the type or code set can't hold the value",
      "the type doesn't offer it, or the values have no order",
      "memory is short",
      "a fault of the library",
  };
  constexpr int count = sizeof kMeanings / sizeof *kMeanings;
  return status <= 0 && status > -count ? kMeanings[-status] : "an unknown status";
}

void ot95_free(void* block) {
  std::free(block);
}
