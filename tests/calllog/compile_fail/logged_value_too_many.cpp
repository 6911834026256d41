#include "calllog/line_log.h"

void Write(log4cpp::Category& logger) {
  vextrel::LogError(logger, "%u", 1U, 2U);
}
