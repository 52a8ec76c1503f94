// The formats that the user has set in the system.
#pragma once

#include <windows.h>

#include <string>

#include "platform/locale_formats.h"

namespace tarnvale {

class WindowsLocaleFormats : public LocaleFormats {
 public:
  explicit WindowsLocaleFormats(LCID locale = LOCALE_USER_DEFAULT) : locale_(locale) {}

  std::string LongTime(DateTime value) override;
  std::string ShortDate(DateTime value) override;
  std::string LongDate(DateTime value) override;
  std::string StandardNumber(double value) override;

 private:
  std::string Date(DateTime value, DWORD flags) const;
  std::string Setting(LCTYPE type) const;

  LCID locale_;
};

}  // namespace tarnvale
