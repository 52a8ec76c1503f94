// A test's part that the administrator's rights would spoil.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace tarnvale::testing {

/// The administrator may read and write everything; an ordinary user for as long
/// as this lives, whom a folder then belongs to.
class AsOrdinaryUser {
 public:
  /// Not in a container that maps no other user.
  static bool IsPossible() {
    if (::geteuid() != 0 || ::seteuid(kNobody) != 0) return false;
    return ::seteuid(0) == 0;
  }

  explicit AsOrdinaryUser(const std::string& folder) {
    if (::geteuid() != 0) return;
    EXPECT_EQ(::lchown(folder.c_str(), kNobody, kNobody), 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      EXPECT_EQ(::lchown(entry.path().c_str(), kNobody, kNobody), 0);
    }
    dropped_ = ::seteuid(kNobody) == 0;
    EXPECT_TRUE(dropped_);
  }
  ~AsOrdinaryUser() {
    if (!dropped_) return;
    EXPECT_EQ(::seteuid(0), 0);
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  bool dropped_ = false;
};

}  // namespace tarnvale::testing
