#include "kit/convert.h"

#include <climits>

#include "table/rows.h"

namespace ot95 {

namespace {
constexpr char kStringId = 11;
}  // namespace

OtTypeConvertData* MakeTextData(unsigned long count) {
  void* texts = rowOtString.Create(count);
  if (texts == nullptr) return nullptr;
  OtTypeConvertData* data = OtTypeConvertData::Make(kStringId, count, texts, nullptr);
  if (data == nullptr) rowOtString.Delete(texts, count);
  return data;
}

void DeleteTextData(OtTypeConvertData* data) {
  if (data == nullptr) return;
  if (data->manager == nullptr && data->data != nullptr) {
    rowOtString.Delete(data->data, data->count);
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
