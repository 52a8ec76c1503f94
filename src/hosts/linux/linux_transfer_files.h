// The files of transfers on a Linux machine.
#pragma once

#include <memory>

#include "hosts/linux/locator.h"
#include "hosts/linux/temporaries.h"
#include "platform/transfer_files.h"

namespace tarnvale {

/// What is received is written under a temporary name beside its target. What a
/// killed process leaves is found as that of a copy is.
class LinuxTransferFiles final : public TransferFiles {
 public:
  /// Both must outlive it and what it opens.
  LinuxTransferFiles(Locator& locator, Temporaries& temporaries)
      : locator_(locator), temporaries_(temporaries) {}

  std::unique_ptr<TransferSource> OpenSource(const Path& file) override;
  std::unique_ptr<TransferTarget> OpenTarget(const Path& file) override;

 private:
  Locator& locator_;
  Temporaries& temporaries_;
};

}  // namespace tarnvale
