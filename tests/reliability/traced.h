// A process whose system calls on files can be counted, watched and made to fail.
#pragma once

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "tests/reliability/workbench.h"

namespace tarnvale::reliability {

/// One system call of the file layer, as it is about to be made.
struct FileCall {
  pid_t process = 0;
  std::int64_t number = 0;
  std::array<std::uint64_t, 6> arguments{};
};

/// What becomes of one call, or of several in a row.
struct Fault {
  int point = 0;  ///< the how-manieth call of the work, from 0
  int error = 0;  ///< the error it ends in; 0: half of the bytes are moved
  int calls = 1;  ///< how many fail from there on, as long as the medium is away
};

struct TracedRun {
  int calls = 0;
  std::string failed_call;  ///< the call that the fault met; empty: none
  int status = 0;           ///< as of waitpid
  bool hung = false;        ///< killed, as it didn't end in time
};

/// Whether this machine lets a process trace its child.
bool CanTrace();

/// Runs `work` in a child process. `watch` is called before each call of it and of
/// the processes that it starts.
TracedRun RunTraced(const std::function<void()>& work, std::optional<Fault> fault,
                    const std::function<void(const FileCall&)>& watch = {});

/// Whether it ended by itself, and well.
void CheckEnd(const TracedRun& run, const std::string& when, Findings& findings);

/// The name of a call of the file layer.
std::string NameOfCall(std::int64_t number);

/// A text in the memory of a traced process.
std::string TextIn(pid_t process, std::uint64_t address);

}  // namespace tarnvale::reliability
