// The tools, opened and closed again and again.
#include <malloc.h>

#include "tests/gui/gui_fixture.h"
#include "tests/support/resident_bytes.h"

namespace tarnvale::testing {
namespace {

class GuiTools : public GuiTest {
 protected:
  static std::size_t BytesInUse() {
    ::malloc_trim(0);
    return ResidentBytes();
  }

  /// Shows the window of a slot, waits until it is there, and closes it by its
  /// cross.
  template <class W>
  void OpenAndClose(WindowSlot<W>& slot) {
    loop.Deliver([&] { slot.Show(); });
    Window& window = slot.Get();
    ASSERT_TRUE(WaitUntilShown(window));
    const QPointer<QWidget> native = &NativeOf(window);
    native->close();
    ASSERT_TRUE(
        WaitFor([&] { return native.isNull() || (slot.IsLoaded() && !native->isVisible()); }));
  }
  void OpenAndCloseEveryTool(Program& p) {
    OpenAndClose(p.UserData);
    OpenAndClose(p.Splitter);
    OpenAndClose(p.RegistryBackup);
    OpenAndClose(p.Compressor);
    OpenAndClose(p.Mailer);
    OpenAndClose(p.Transfer);
  }
};

TEST_F(GuiTools, OpenedAndClosed200TimesTakeNoMoreMemory) {
  Program& p = StartAndBringUp();
  constexpr int kRounds = 200;
  constexpr int kWarmUp = 40;
  std::size_t before = 0;
  for (int round = 0; round < kRounds && !HasFatalFailure(); ++round) {
    if (round == kWarmUp) before = BytesInUse();
    OpenAndCloseEveryTool(p);
  }
  // One window that isn't deleted, in each round, would be 64 MB.
  EXPECT_LE(BytesInUse(), before + (8U << 20));
  EXPECT_LE(host.Adopted().size(), 7U);
}

}  // namespace
}  // namespace tarnvale::testing
