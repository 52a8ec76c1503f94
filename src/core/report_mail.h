// What a mail of the program is made of, beside the settings.
#pragma once

#include <string>

#include "base/property.h"

namespace tarnvale {

/// Hidden fields of the main window, which live as long as the program.
struct ReportMail {
  /// The address that reports come from. Chosen: one of a domain that can't
  /// exist, so that the answers reach no mailbox.
  Property<std::string> Sender{"report@tarnvale.example"};
  /// Required: nobody ever sets it.
  Property<std::string> Subject{"0"};
  Property<std::string> Body;
};

}  // namespace tarnvale
