// The names of what shows no text in the popups.
#include "tests/shell/popups_fixture.h"

namespace tarnvale::testing {
namespace {

using PopupNamesTest = PopupsFixture;

TEST_F(PopupNamesTest, EveryControlThatShowsNoTextHasAName) {
  Announce();
  for (const Window* window : {static_cast<Window*>(&Alert()), static_cast<Window*>(&Bar())}) {
    for (const Placement& placement : window->Placements()) {
      // The status line is known by what it says.
      if (placement.control == &Bar().Label1) continue;
      EXPECT_NE(placement.control->AccessibleName.Get(), "");
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
