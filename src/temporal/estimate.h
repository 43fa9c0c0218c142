#ifndef OT95_SRC_TEMPORAL_ESTIMATE_H
#define OT95_SRC_TEMPORAL_ESTIMATE_H

// Member EvalAndBound of the rows of both calendars.

#include "ot95/typemgr.h"

namespace ot95 {

float EvalOtDate(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits);
float EvalOtTime(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits);
float EvalOtDateTime(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                     unsigned long count, OtIdxBounds* limits);
float EvalD_Date(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits);
float EvalD_Time(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                 unsigned long count, OtIdxBounds* limits);
float EvalD_Timestamp(OtIdxBounds* bounds, unsigned short& op, void* value, unsigned char format,
                      unsigned long count, OtIdxBounds* limits);

}  // namespace ot95

#endif
