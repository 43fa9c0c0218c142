// Conversion data of texts, as every row makes and reads it.

#include "kit/convert.h"

#include <climits>

#include "kit/walks.h"

namespace ot95 {

namespace {
constexpr char kStringId = 11;
}  // namespace

OtTypeConvertData* MakeTextData(unsigned long count) {
  void* texts = CreateCounted<OtString>(count);
  if (texts == nullptr) return nullptr;
  OtTypeConvertData* data = OtTypeConvertData::Make(kStringId, count, texts, nullptr);
  if (data == nullptr) DeleteCounted<OtString>(texts, count);
  return data;
}

void DeleteTextData(OtTypeConvertData* data) {
  if (data == nullptr) return;
  if (data->manager == nullptr && data->data != nullptr) {
    DeleteCounted<OtString>(data->data, data->count);
    data->data = nullptr;
  }
  delete data;
}

OtString* PresentText(OtTypeConvertData* data, unsigned long index) {
  if (data == nullptr || index > INT_MAX) return nullptr;
  OtString* text = data->GetString(static_cast<int>(index));
  return text != nullptr && !text->IsNullValue() ? text : nullptr;
}

}  // namespace ot95
