#ifndef OT95_SRC_KIT_SAMETEXT_H
#define OT95_SRC_KIT_SAMETEXT_H

/// @file
/// Whether two texts say the same value.

#include <string_view>

namespace ot95 {

/// Whether two texts say the same value: they may differ in case, blanks, a plus, zeros in front of
/// a number, and in "0x" where digits are hexadecimal anyway.
/// @param abbreviates names count by their first three letters, as those of months and days do.
bool SayTheSame(std::string_view a, std::string_view b, bool abbreviates);

/// Whether a text is a number, no more and no less, and a value is what the text says of it.
/// What a type can't hold, and turns into infinity or nothing, it doesn't say.
template <class Real>
bool SaysNumber(std::string_view text, std::string_view value);

extern template bool SaysNumber<float>(std::string_view text, std::string_view value);
extern template bool SaysNumber<double>(std::string_view text, std::string_view value);

}  // namespace ot95

#endif
