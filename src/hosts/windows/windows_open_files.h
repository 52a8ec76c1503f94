// The table of open files on Windows.
#pragma once

#include "hosts/windows/locator.h"
#include "platform/open_file_table.h"

namespace tarnvale {

/// Others may read and write an open file, but not delete it.
class WindowsOpenFiles : public OpenFileTable {
 public:
  explicit WindowsOpenFiles(const Locator& locator) : locator_(locator) {}
  ~WindowsOpenFiles() override { CloseAll(); }
  WindowsOpenFiles(const WindowsOpenFiles&) = delete;
  WindowsOpenFiles& operator=(const WindowsOpenFiles&) = delete;

 protected:
  Opened OpenNative(Use use, const Path& file, Rights rights) override;

 private:
  static bool MustGo(Use use, const Located& located);
  Opened OpenToWrite(Use use, const Path& file, Rights rights);

  const Locator& locator_;
};

}  // namespace tarnvale
