// The guard before settings are saved.
#pragma once

#include "core/hooks.h"
#include "settings/backup_settings.h"
#include "ui/message_boxes.h"

namespace tarnvale {

/// Tests whether the settings may be saved, and sets `objection` when not: the
/// first objection is shown in a box, then the screen that it is about.
void CheckSettings(MessageBoxes& boxes, const BackupSettings& settings, const ScreenHooks& screens,
                   bool& objection);

}  // namespace tarnvale
