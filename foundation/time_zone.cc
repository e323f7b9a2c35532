#include "foundation/time_zone.h"

#include <ctime>

long get_timezone_diff() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  // Reads the UTC fields as local time without daylight saving. mktime also updates the zone, which
  // localtime_r does not.
  const std::time_t utc_as_local = std::mktime(&utc);
  std::tm local{};
  localtime_r(&now, &local);
  return static_cast<long>(std::difftime(std::mktime(&local), utc_as_local));
}
