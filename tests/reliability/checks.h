// The checks. Each prints its figures and returns how much went wrong.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "hosts/linux/linux_host.h"

namespace tarnvale::reliability {

/// Brings "C:\target" up to date with "C:\source" on the drive of these
/// surroundings. Runs in a process of its own, which may be killed in it.
using CopyPass = std::function<void(const LinuxSurroundings&)>;

/// The pass of a whole-folder item: a folder sync, one way.
void SyncPass(const LinuxSurroundings& surroundings);

/// Kills copy passes at random moments. After each kill every target is its old
/// or its new self; after the next pass all are new and no temporary is left.
int CheckCopyKills(int kills, std::uint64_t seed, const CopyPass& pass);

/// Kills savings of settings likewise.
int CheckSettingsKills(int kills, std::uint64_t seed);

/// Fills a small medium in the middle of a pass.
int CheckDiskFull();

}  // namespace tarnvale::reliability
