// The table of open files on Windows.
#pragma once

#include "hosts/windows/locator.h"
#include "hosts/windows/text_coding.h"
#include "platform/open_file_table.h"

namespace tarnvale {

/// Others may read and write an open file, but not delete it.
class WindowsOpenFiles : public OpenFileTable {
 public:
  WindowsOpenFiles(const Locator& locator, TextCoding coding)
      : locator_(locator), coding_(coding) {}
  ~WindowsOpenFiles() override { CloseAll(); }
  WindowsOpenFiles(const WindowsOpenFiles&) = delete;
  WindowsOpenFiles& operator=(const WindowsOpenFiles&) = delete;

  std::optional<std::string> ToCodePage(std::string_view text) const override {
    return coding_.Encode(text);
  }
  std::optional<std::string> FromCodePage(std::string_view bytes) const override {
    return coding_.Decode(bytes);
  }

 protected:
  Opened OpenNative(Use use, const Path& file, Rights rights) override;

 private:
  static bool MustGo(Use use, const Located& located);
  Opened OpenToWrite(Use use, const Path& file, Rights rights);

  const Locator& locator_;
  TextCoding coding_;
};

}  // namespace tarnvale
