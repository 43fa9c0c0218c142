#ifndef OT95_SQLITE_UTF8_H
#define OT95_SQLITE_UTF8_H

#include <string_view>

namespace ot95::sqlite {

/// Whether bytes are a text for the library: UTF-8 without a zero, of 32,765 16-bit units at most.
/// SQLite keeps any bytes as text.
bool IsText(std::string_view bytes);

}  // namespace ot95::sqlite

#endif
