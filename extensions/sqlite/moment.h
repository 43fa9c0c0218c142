#ifndef OT95_SQLITE_MOMENT_H
#define OT95_SQLITE_MOMENT_H

/// @file
/// Dates and times as SQLite's functions of dates understand them: ISO 8601.

#include <optional>
#include <string>
#include <string_view>

#include "ot95c/ot95c.h"

namespace ot95::sqlite {

/// What a type of dates or times consists of.
struct MomentParts {
  bool hasDate, hasClock, hasHundredths;

  static MomentParts Of(std::string_view typeName);
};

/// "2000-01-31 12:30:00.25+02:00", or the part of it that the type has. Nothing for fields that are
/// no day of the calendar or no time of the day.
std::optional<std::string> FormatMoment(const ot95_moment& moment, const MomentParts& parts);
std::optional<ot95_moment> ParseMoment(std::string_view text, const MomentParts& parts);

}  // namespace ot95::sqlite

#endif
