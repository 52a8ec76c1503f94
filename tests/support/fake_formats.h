// Formats that don't depend on any locale: American ones.
#pragma once

#include <string>

#include "platform/locale_formats.h"

namespace tarnvale::testing {

/// "3/14/2008 11:59:01 AM", "11:59", "11:59:01 AM", "3/14/2008",
/// "Friday, March 14, 2008", "1,234.50".
class FakeFormats : public LocaleFormats {
 public:
  std::string LongTime(DateTime value) override;
  std::string ShortDate(DateTime value) override;
  std::string LongDate(DateTime value) override;
  std::string StandardNumber(double value) override;
};

}  // namespace tarnvale::testing
