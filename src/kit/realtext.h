#ifndef OT95_SRC_KIT_REALTEXT_H
#define OT95_SRC_KIT_REALTEXT_H

// Floating-point numbers as digits.

#include <string_view>

#include "kit/checkedformat.h"

namespace ot95 {

/// Renders a floating-point number without sign, prefix and padding.
class RealText {
 public:
  /// @param magnitude not negative.
  /// @param conversion one of "aAeEfFgG".
  std::string_view Render(double magnitude, const Conversion& conversion);

 private:
  // No double has more digits than 309 before the point and 1074 behind it.
  static constexpr int mostDigits = 1100;

  char* RenderLower(double magnitude, char letter, const Conversion& conversion);
  char* General(double magnitude, int precision, bool keepZeros);
  char* Hexadecimal(double magnitude, int precision, bool alternate);
  char* WithPoint(char* end, bool wanted);

  char text_[mostDigits + 400];
};

}  // namespace ot95

#endif
