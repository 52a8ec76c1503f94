// The system's side of what the logic needs of a machine, in one bundle.
#pragma once

#include "platform/application_folders.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/locale_formats.h"
#include "platform/open_files.h"
#include "platform/processes.h"
#include "platform/profile_files.h"
#include "platform/random_source.h"
#include "platform/registry.h"

namespace tarnvale {

/// Files, programs, time. References only: the host owns what they refer to and
/// outlives everything built on it.
struct SystemParts {
  FileSystem& files;
  OpenFiles& open_files;
  ProfileFiles& profiles;
  Processes& processes;
  Clock& clock;
  RandomSource& random;
  LocaleFormats& formats;
  Registry& registry;
  ApplicationFolders& applications;
};

}  // namespace tarnvale
