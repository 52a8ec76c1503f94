// Private profiles on Linux.
#pragma once

#include <memory>

#include "hosts/linux/locator.h"
#include "hosts/linux/temporaries.h"
#include "platform/profile_table.h"

namespace tarnvale {

/// With the first write that is held back a temporary is made beside the file, so that a
/// folder that can't be written is noticed at once. A settings file that is a symbolic link
/// is replaced where the link leads. The file is its owner's alone after a flush.
class LinuxProfileFiles : public ProfileTable {
 public:
  /// Both must outlive it.
  LinuxProfileFiles(const Locator& locator, Temporaries& temporaries)
      : locator_(locator), temporaries_(temporaries) {}

 private:
  std::unique_ptr<NativeProfile> MakeNative(const Path& file) override;

  const Locator& locator_;
  Temporaries& temporaries_;
};

}  // namespace tarnvale
