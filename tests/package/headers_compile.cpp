// Compiled as C++17 without exceptions: every public header, each from its users' side.
#include "ot95/obs.h"
#include "ot95/oin.h"
#include "ot95/ot95.h"
#include "ot95/std.h"

#if !defined(OtINDEX_MAX_KEYLEN) || OtINDEX_MAX_KEYLEN != 254
#error "the preprocessor knows the length of keys"
#endif
static_assert(static_cast<OtFormatByte>(-1) == 255, "an unsigned byte");

// What C++20 makes of members by turning the sides around, older users have as well.
bool EitherSideMayBePlainText(const OtIString& text) {
  return "abc" == text && text != "abd" && text == text;
}
