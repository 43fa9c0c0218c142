// Texts in UTF-8 changed and taken apart.
#include "c/collation.h"
#include "text/collation/orders.h"

namespace ot95::c {

namespace {

constexpr std::size_t kMostPlace = 0xffff, kMostCount = 0x7fff;

/// A text as a string of a collation's language.
int ToString(const ot95_collation& collation, const ot95_span& utf8, OtString& text) {
  WideText wide;
  if (const int status = wide.Take(utf8.data, utf8.size)) return status;
  return wide.ToString(OT_CS_UNICODE, collation.language, text);
}

/// What an edit is made with, as the library takes it.
struct Edit {
  OtString text, with, from;
  unsigned short place = 0;
  short count = -1;

  int Open(const ot95_collation& collation, const ot95_edit& edit) {
    if (edit.place > kMostPlace) return OT95_ERR_ARGUMENT;
    if (edit.count != OT95_REST && edit.count > kMostCount) return OT95_ERR_ARGUMENT;
    place = static_cast<unsigned short>(edit.place);
    count = edit.count == OT95_REST ? short{-1} : static_cast<short>(edit.count);
    if (const int status = ToString(collation, edit.text, text)) return status;
    if (const int status = ToString(collation, edit.with, with)) return status;
    return ToString(collation, edit.from, from);
  }

  int Apply(int operation) {
    switch (operation) {
      case OT95_TRIM:
        text.Trim();
        return OT95_OK;
      case OT95_CUT:
        text.Cut(place, count);
        return OT95_OK;
      case OT95_COPY:
        text = text.Copy(place, count);
        return OT95_OK;
      case OT95_INSERT:
        text.Insert(with, place);
        return OT95_OK;
      case OT95_WRITE:
        text.Replace(with, place);
        return OT95_OK;
      case OT95_REPLACE_ALL:
        text.ReplaceAll(from, with, place);
        return OT95_OK;
      case OT95_FILL:
      case OT95_EXPAND:
        return Pad(operation);
      default:
        return OT95_ERR_ARGUMENT;
    }
  }

 private:
  int Pad(int operation) {
    if (with.Len() != 1 || count < 0) return OT95_ERR_ARGUMENT;
    const unsigned short unit = LoadWide(with.StrGet());
    const auto units = static_cast<unsigned short>(count);
    operation == OT95_FILL ? text.Fill(units, unit) : text.Expand(units, unit);
    return OT95_OK;
  }
};

int Split(const ot95_collation& collation, const ot95_span& utf8, const ot95_span& separator,
          std::size_t& place, ot95_buffer* out) {
  OtString list, between, item;
  if (place > kMostPlace || separator.size == 0) return OT95_ERR_ARGUMENT;
  if (const int status = ToString(collation, utf8, list)) return status;
  if (const int status = ToString(collation, separator, between)) return status;
  auto next = static_cast<unsigned short>(place);
  if (OtSplitList(list, item, between, next) != 0) return OT95_ERR_ENDS;
  const int status = GiveText(out, item);
  if (status == OT95_OK) place = next;
  return status;
}

int Orders(const ot95_collation& collation, const ot95_span& utf8, ot95_order* orders,
           std::size_t room, std::size_t& count) {
  WideText text;
  if (orders == nullptr && room != 0) return OT95_ERR_ARGUMENT;
  if (const int status = text.Take(utf8.data, utf8.size)) return status;
  OtStringIterator walk(text.text(), OT_CS_UNICODE, collation.language, OT_FORMAT_NATIVE);
  count = 0;
  for (unsigned short word; (word = walk.GetNextOrder(1)) != 0; ++count) {
    if (count >= room) continue;
    const unsigned char script = walk.GetScript();
    orders[count] = {word, script, ComposeOrderKey(word, script)};
  }
  return count > room ? OT95_ERR_ROOM : OT95_OK;
}

}  // namespace

}  // namespace ot95::c

using namespace ot95::c;

int ot95_collation_edit(const ot95_collation* collation, const ot95_edit* edit, ot95_buffer* out) {
  return GuardedFor(out, [&]() -> int {
    Edit opened;
    if (collation == nullptr || edit == nullptr || edit->struct_size < sizeof *edit) {
      return OT95_ERR_ARGUMENT;
    }
    if (const int status = opened.Open(*collation, *edit)) return status;
    if (const int status = opened.Apply(edit->operation)) return status;
    return GiveText(out, opened.text);
  });
}

int ot95_collation_split(const ot95_collation* collation, const char* text, size_t size,
                         const char* separator, size_t separator_size, size_t* place,
                         ot95_buffer* out) {
  return GuardedFor(out, [&]() -> int {
    if (collation == nullptr || place == nullptr) return OT95_ERR_ARGUMENT;
    return Split(*collation, {text, size}, {separator, separator_size}, *place, out);
  });
}

int ot95_collation_orders(const ot95_collation* collation, const char* text, size_t size,
                          ot95_order* orders, size_t room, size_t* count) {
  return Guarded([&]() -> int {
    if (collation == nullptr || count == nullptr) return OT95_ERR_ARGUMENT;
    return Orders(*collation, {text, size}, orders, room, *count);
  });
}
