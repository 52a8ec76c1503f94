// What GoogleTest needs to be built by compilers that have no std::mutex. This
// file takes the place of its own empty one.
#pragma once

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

/// For the tests of GoogleTest itself: nobody waits for one here.
class Notification {
 public:
  void Notify() {}
  void WaitForNotification() {}
};

}  // namespace testing::internal
