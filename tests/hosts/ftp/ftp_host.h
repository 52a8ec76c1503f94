// The host whose FTP client is tested, with a drive of its own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#ifdef _WIN32

#include <algorithm>

#include "hosts/windows/windows_event_loop.h"
#include "hosts/windows/windows_ftp_transport.h"
#include "tests/hosts/windows/windows_stage.h"

namespace tarnvale::testing {

using FtpTransportUnderTest = WindowsFtpTransport;

inline std::vector<std::string> NativeNames(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Wide(folder))) {
    names.push_back(Narrow(entry.path().filename().wstring()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

class FtpDrive : public WindowsHostTest {
 protected:
  FtpDrive() { std::filesystem::create_directories(OnDrive("Data")); }
  /// The native path of something on the drive: "Data/a.txt".
  std::string OnDrive(const std::string& name) const { return Narrow(PathOnDrive(name).wstring()); }
  std::filesystem::path PathOnDrive(const std::string& name) const {
    return WindowsHostTest::Native(name);
  }
  TransferFiles& Files() { return Host().transfer_files; }
};

}  // namespace tarnvale::testing

#else

#include "hosts/curl/curl_ftp_transport.h"
#include "tests/hosts/linux/linux_stage.h"

namespace tarnvale::testing {

using FtpTransportUnderTest = CurlFtpTransport;

class FtpDrive : public LinuxStage {
 protected:
  std::filesystem::path PathOnDrive(const std::string& name) const { return OnDrive(name); }
  TransferFiles& Files() { return host_.transfer_files; }

 private:
  LinuxHost host_{surroundings};
};

}  // namespace tarnvale::testing

#endif
