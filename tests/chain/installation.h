// The program as it is installed, in a folder of its own.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

#include "tests/hosts/contract/temporary_folder.h"

namespace tarnvale::testing {

/// Runs a program to its end, which comes within a minute; returns its exit status, -1 when
/// it had none.
int RunToEnd(const std::vector<std::string>& command);

/// How the programs of a system are called here.
struct ProgramsOf {
  std::string program;              ///< the program's file
  std::string drive;                ///< where the root lies for it
  std::vector<std::string> runner;  ///< what runs it; empty: nothing
};
inline const ProgramsOf kLinuxPrograms{"tarnvale", "C:", {}};

/// The files below a folder: their names from there, with their content.
std::map<std::string, std::string> Tree(const std::string& folder);

/// The program with its companions, its data folder, documents to back up, a
/// folder for the copies and one for archives. All of it goes with the object,
/// the running program too.
class Installation {
 public:
  /// `programs` holds what was built.
  Installation(const std::string& programs, const ProgramsOf& system);
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;
  ~Installation();

  /// A native path, by its name from the folder's root.
  std::string operator/(const std::string& name) const { return folder_ / name; }
  /// The same path as the program calls it.
  std::string PathOf(const std::string& name) const;
  void Write(const std::string& name, const std::string& content) const;
  std::string Content(const std::string& name) const;

  /// A command line for one of the programs.
  std::vector<std::string> Command(std::vector<std::string> words) const;
  /// Starts the program; what it prints is in "output".
  void Start();
  bool Runs();

 private:
  TemporaryFolder folder_;
  ProgramsOf system_;
  pid_t process_ = 0;
};

}  // namespace tarnvale::testing
