// A second, hostile user of the machine.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
#include <string>

#include "tests/hosts/linux/linux_stage.h"

namespace tarnvale::testing {

/// Runs `part` in a process of its own and returns what it returned. What it changes in
/// memory is lost.
bool InAChild(const std::function<bool()>& part);

/// Plays the attacks of a user with a number of his own, in child processes. That
/// takes a process that may change its user: root, and not in a container that
/// maps no other numbers. Elsewhere he is faked: what he plants is this user's own, and
/// a layer says of it that it is his (faked_owners.cpp).
class AnotherUser {
 public:
  static constexpr uid_t kNumber = 54321;

  /// Whether there is really one: this process may act as somebody else, and
  /// TARNVALE_FAKE_OTHERS, which has him faked for everybody, isn't set.
  static bool IsReal();

  /// Runs `attack` as him, in a child; false when it couldn't run. For what he may do to
  /// others' files; what he makes is planted.
  static bool Does(const std::function<bool()>& attack);

  /// Makes this process his for good, or as whom the program counts that it then becomes;
  /// false where that isn't allowed.
  static bool BecomeHim();

  /// Plants a symbolic link of his at a native path, in place of what is there.
  static void PlantLink(const std::string& leads_to, const std::string& at);
  /// Writes a file of his own, in place of what is there.
  static void PlantFile(const std::string& content, const std::string& at, mode_t mode = 0666);
  static void PlantFolder(const std::string& at, mode_t mode);
  /// Whether he can read a file.
  static bool CanRead(const std::string& file);
};

/// Lets a native path lie on a medium that was mounted as somebody's medium is: without
/// rights. What its author wrote on it as its owner is this user's number.
void LayOnMedium(const std::string& native);

/// A drive on which he can reach everything that permissions don't keep from him.
/// "Data/shared" is a folder that everybody may write to, without a sticky bit:
/// the kernel's own protections don't hold there.
class AttackedStage : public LinuxStage {
 protected:
  void SetUp() override;
};

}  // namespace tarnvale::testing
