// The files at this end of a transfer, on Windows.
#pragma once

#include <memory>

#include "hosts/windows/locator.h"
#include "hosts/windows/temporaries.h"
#include "platform/transfer_files.h"

namespace tarnvale {

class WindowsTransferFiles : public TransferFiles {
 public:
  WindowsTransferFiles(const Locator& locator, const Temporaries& temporaries)
      : locator_(locator), temporaries_(temporaries) {}

  std::unique_ptr<TransferSource> OpenSource(const Path& file) override;
  std::unique_ptr<TransferTarget> OpenTarget(const Path& file) override;

 private:
  const Locator& locator_;
  const Temporaries& temporaries_;
};

}  // namespace tarnvale
