#ifndef OT95_SRC_TEMPORAL_ROWS_H
#define OT95_SRC_TEMPORAL_ROWS_H

// The rows of both calendars.

#include "ot95/typemgr.h"

namespace ot95 {

extern OtTypeDescriptor rowOtDate;
extern OtTypeDescriptor rowOtTime;
extern OtTypeDescriptor rowOtDateTime;
extern OtTypeDescriptor rowD_Date;
extern OtTypeDescriptor rowD_Time;
extern OtTypeDescriptor rowD_Timestamp;
extern OtTypeDescriptor rowD_Interval;

}  // namespace ot95

#endif
