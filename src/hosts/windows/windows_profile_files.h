// Private profiles on Windows.
#pragma once

#include <memory>

#include "hosts/windows/locator.h"
#include "hosts/windows/temporaries.h"
#include "hosts/windows/text_coding.h"
#include "platform/profile_table.h"

namespace tarnvale {

/// Reads and writes what the system's own calls do, which lose blank lines and write
/// each value on its own. A text that the code page can't hold turns the file into UTF-8.
class WindowsProfileFiles : public ProfileTable {
 public:
  WindowsProfileFiles(const Locator& locator, Temporaries& temporaries, TextCoding coding);

 private:
  std::unique_ptr<NativeProfile> MakeNative(const Path& file) override;

  const Locator& locator_;
  TemporarySlot slot_;
  TextCoding coding_;
};

}  // namespace tarnvale
