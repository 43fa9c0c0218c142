// Stored arrays as a whole: checked, measured, moved to other forms and types.
#include <algorithm>
#include <cstring>
#include <memory>

#include "c/bridge.h"

namespace ot95::c {

namespace {

constexpr unsigned char kFormMask = 0x0f, kTextFlags = 0xf0, kKeyFlag = OT95_FORM_KEY;
constexpr std::size_t kMostKeyBytes = 65534;  // where the length of a key has its end

/// Whether a status says what bytes are.
bool IsVerdict(int status) {
  return status == OT95_OK || status == OT95_ERR_ENDS || status == OT95_ERR_DAMAGED;
}

/// Strings with flags in the target's form: what their row's own Translate makes, which wants the
/// byte order of both sides to be the same or makes keys.
int TranslateTexts(Stored& stored, unsigned char format, ot95_buffer* out) {
  const bool makesKey = (format & OT95_FORM_KEY) != 0;
  const std::size_t room =
      makesKey ? kMostKeyBytes : std::min<std::size_t>(stored.size() + 8, kMostKeyBytes + 2);
  const auto translate = [&](unsigned char* target, std::size_t length) {
    const unsigned long result =
        stored.manager().Translate(stored.id(), target, format, length, stored.bytes(),
                                   stored.format(), stored.size(), stored.count());
    return std::min<std::size_t>(result, length);
  };
  const std::unique_ptr<unsigned char[]> scratch(
      new unsigned char[std::max<std::size_t>(room, stored.size())]());
  const std::size_t size = translate(scratch.get(), room);
  if (size == 0) return OT95_ERR_NOT_SUPPORTED;
  const int status = Give(out, scratch.get(), size);
  // A key for the room that there is: it ends as keys do.
  if (status == OT95_ERR_ROOM && makesKey && out->room != 0) {
    const std::size_t length = translate(scratch.get(), out->room);
    std::memcpy(out->data, scratch.get(), length);
  }
  return status;
}

int Translate(const ot95_array* array, unsigned form, ot95_buffer* out) {
  Stored stored;
  unsigned char format = 0;
  if (const int status = OpenForm(form, format)) return status;
  if (const int status = stored.Open(array)) return status;
  const bool isSameForm = ((format ^ stored.format()) & kFormMask) == 0;
  const bool isText = stored.type().IsText();
  const unsigned char movable = isSameForm ? kTextFlags : kKeyFlag;
  if (isText && (format & movable) != 0) {
    return TranslateTexts(stored, format, out);
  }
  if (isSameForm) return Give(out, stored.bytes(), stored.size());
  if (isText && (format & kTextFlags) != 0) return OT95_ERR_NOT_SUPPORTED;
  Values values;
  if (const int status = stored.OpenWhole(array)) return status;
  if (const int status = values.Load(stored)) return status;
  return values.Store(format, out);
}

int Size(const ot95_array* array, unsigned form, std::size_t& size) {
  Stored stored;
  Values values;
  unsigned char format = 0;
  if ((form & kTextFlags) != 0) return OT95_ERR_ARGUMENT;
  if (const int status = OpenForm(form, format)) return status;
  if (const int status = stored.OpenWhole(array)) return status;
  if (const int status = values.Load(stored)) return status;
  size = stored.manager().DiskLenGet(stored.id(), values.data(), format, stored.count(),
                                     OT_FORMAT_MEMORY);
  return OT95_OK;
}

int Convert(const ot95_array* array, int number, unsigned form, ot95_buffer* out) {
  Stored stored;
  Values source, target;
  Type type;
  unsigned char format = 0;
  if (const int status = OpenForm(form, format)) return status;
  if (const int status = type.Open(number)) return status;
  if (const int status = stored.OpenWhole(array)) return status;
  if (const int status = source.Load(stored)) return status;
  const std::unique_ptr<OtTypeConvertData> data(
      stored.manager().ConvertTo(stored.id(), source.data(), stored.count()));
  if (data == nullptr) return OT95_ERR_NOT_SUPPORTED;
  void* made = type.manager.ConvertFrom(type.id, data.get(), stored.count());
  if (const int status = target.Adopt(type, made, stored.count())) return status;
  return target.Store(format, out);
}

/// @param end answered with a verdict.
int TakeApart(const ot95_member* members, std::size_t memberCount, unsigned form,
              const ot95_span& record, ot95_array* arrays, std::size_t& end) {
  std::size_t at = 0;
  for (std::size_t i = 0; i < memberCount; ++i) {
    const char* place = record.data != nullptr ? record.data + at : nullptr;
    arrays[i] = {members[i].type, form, place, record.size - at, members[i].count};
    Stored stored;
    const int status = stored.OpenWhole(&arrays[i]);
    if (!IsVerdict(status)) return status;
    at += stored.size();
    end = at;
    if (status != OT95_OK) return status;
    arrays[i].size = stored.size();
  }
  return OT95_OK;
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_verify(const ot95_array* array, size_t* end) {
  return Guarded([&] {
    Stored stored;
    unsigned long consumed = 0;
    const int status = stored.Open(array, consumed);
    if (IsVerdict(status) && end != nullptr) *end = consumed;
    return status;
  });
}

int ot95_size(const ot95_array* array, unsigned form, size_t* size) {
  return GuardedResult(size, [&](std::size_t& made) { return Size(array, form, made); });
}

int ot95_translate(const ot95_array* array, unsigned form, ot95_buffer* out) {
  return GuardedFor(out, [&] { return Translate(array, form, out); });
}

int ot95_convert(const ot95_array* array, int type, unsigned form, ot95_buffer* out) {
  return GuardedFor(out, [&] { return Convert(array, type, form, out); });
}

int ot95_record(const ot95_member* members, size_t member_count, unsigned form, const void* bytes,
                size_t size, ot95_array* arrays, size_t* end) {
  return Guarded([&]() -> int {
    if (members == nullptr || member_count == 0 || arrays == nullptr || end == nullptr) {
      return OT95_ERR_ARGUMENT;
    }
    if (bytes == nullptr && size != 0) return OT95_ERR_ARGUMENT;
    return TakeApart(members, member_count, form, {static_cast<const char*>(bytes), size}, arrays,
                     *end);
  });
}
