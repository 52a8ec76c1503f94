// The files of transfers on a Linux machine.
#pragma once

#include <memory>
#include <string>

#include "hosts/linux/locator.h"
#include "hosts/linux/temporaries.h"
#include "platform/transfer_files.h"

namespace tarnvale {

/// What is received is written under a temporary name beside its target. What a
/// killed process leaves is found as that of a copy is.
class LinuxTransferFiles final : public TransferFiles {
 public:
  /// `locator` must outlive it. `state_folder` is native.
  LinuxTransferFiles(Locator& locator, const std::string& state_folder)
      : locator_(locator), temporaries_(state_folder) {}

  std::unique_ptr<TransferSource> OpenSource(const Path& file) override;
  std::unique_ptr<TransferTarget> OpenTarget(const Path& file) override;

 private:
  Locator& locator_;
  Temporaries temporaries_;
};

}  // namespace tarnvale
