// The text of the report.
#pragma once

#include <string>

#include "core/hooks.h"
#include "platform/clock.h"
#include "platform/locale_formats.h"
#include "settings/backup_settings.h"

namespace tarnvale {

/// What the report of a run says; lines end in carriage return and line feed.
/// A folder or a server with line ends in its name adds none (OneLine).
/// Required: it is written from the plan. It reports success, compression and
/// upload whatever became of them, and its total counts single files only.
std::string ReportText(Clock& clock, LocaleFormats& formats, const BackupSettings& settings,
                       const RunFacts& facts);

}  // namespace tarnvale
