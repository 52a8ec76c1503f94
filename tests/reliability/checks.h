// The checks. Each prints its figures and returns how much went wrong.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

#include "hosts/linux/linux_host.h"
#include "tests/reliability/traced.h"

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

/// Lets each system call of the file layer fail once, in each operation of the whole
/// program: one of `share` such faults, by chance. `only` names an operation; empty:
/// all. Negative where no process can be traced.
int CheckFaults(int share, std::uint64_t seed, const std::string& only);

/// Lets one call fail and lists what is on the drive before, after, and after it failed.
int ShowFault(const std::string& operation, Fault fault);

/// Sets the clock at each yield of each operation, one of `share` by chance: forwards and
/// backwards, to right before midnight and the new year. The result must be the same.
int CheckClockJumps(int share, std::uint64_t seed, const std::string& only);

/// Lets the whole program run for so many of its own hours, with all operations and all
/// windows opened and closed in each. What it holds must stay what it was.
int CheckSoak(int hours);

/// Kills the whole program at random moments of its operations, so many times in all.
int CheckProgramKills(int kills, std::uint64_t seed, const std::string& only);

/// Looks at what a loss of power could leave of each file, at each moment of each
/// operation. Negative where no process can be traced.
int CheckPowerLoss(const std::string& only);

/// Takes the medium of the copies away at each call of each operation, one of `share` by
/// chance, and puts it back. Negative where there is no such medium.
int CheckMediumLoss(int share, std::uint64_t seed, const std::string& only);

}  // namespace tarnvale::reliability
