// The whole program on a Windows desktop: its windows, on a drive of the test's own.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/program.h"
#include "hosts/windows/windows_file_dialogs.h"
#include "hosts/windows/windows_host.h"
#include "hosts/windows/windows_message_boxes.h"
#include "hosts/windows/windows_pictures.h"
#include "hosts/windows/windows_sockets.h"
#include "hosts/windows/windows_tray.h"
#include "hosts/windows/windows_window_host.h"
#include "platform/no_ftp_transport.h"
#include "tests/hosts/windows/desktop_fixture.h"
#include "tests/hosts/windows/temporary_folder.h"
#include "tests/support/every_window.h"

namespace tarnvale::testing {

class WindowsProgramTest : public WindowsDesktopTest {
 protected:
  WindowsProgramTest() {
    WriteNative(Native("Data.txt"), "\"C:\\Data\"\r\n");
    std::filesystem::create_directory(Native("Data"));
  }

  std::filesystem::path Native(const std::string& name) const { return folder.drive / name; }

  /// Starts the program with the settings file `ini` on a display of `dpi`.
  Program& Start(int dpi = 96, const std::string& ini = "[Setup]\r\nWizard=1\r\n") {
    WriteNative(Native("Data/Tarnvale.ini"), ini);
    screen.emplace(*this, dpi);
    program = std::make_unique<Program>(screen->machine);
    EXPECT_TRUE(program->Start());
    return *program;
  }
  /// The splash decides now instead of after its seven seconds, and the main window comes up.
  Program& StartAndBringUp(int dpi = 96, const std::string& ini = "[Setup]\r\nWizard=1\r\n") {
    Start(dpi, ini);
    loop.Deliver([&] { program->Splash.Timer1.Tick.Emit(); });
    EXPECT_TRUE(
        WaitFor([&] { return !program->engine.timers[EngineTimer::kStorageTree].Enabled; }));
    program->form.State = WindowState::kNormal;
    program->form.InTaskBar = true;
    program->form.Show();
    EXPECT_TRUE(WaitUntilShown(program->form));
    return *program;
  }

  bool WaitUntilShown(Window& window) {
    return WaitFor([&] {
      const WindowsWindow* native = screen->host.NativeOf(window);
      return native != nullptr && ::IsWindowVisible(native->Native()) != 0 &&
             ::IsIconic(native->Native()) == 0;
    });
  }
  HWND NativeOf(Window& window) { return screen->host.NativeOf(window)->Native(); }

  /// All windows that there are.
  std::vector<Window*> Windows() {
    std::vector<Window*> windows;
    for (const auto& native : screen->host.Adopted()) windows.push_back(&native->Record());
    return windows;
  }

  struct Folder {
    Folder() { std::filesystem::create_directory(drive); }
    TemporaryFolder whole;
    std::filesystem::path drive = whole / "drive";
  } folder;
  WindowsHost system{{.root = L"\\\\?\\" + folder.drive.wstring(),
                      .program_file = L"\\\\?\\" + (folder.drive / "Tarnvale.exe").wstring(),
                      .state_folder = (folder.whole / "state").wstring()}};

  struct Screen {
    Screen(WindowsProgramTest& test, int dpi)
        : host(
              test.loop, test.system.files, boxes,
              [&test](const std::wstring& native) { return test.system.PathOf(native); }, dpi),
          dialogs(host, test.system.drives),
          tray(test.loop,
               [](const std::string& name) { return IconNamed(name, SM_CXSMICON, SM_CYSMICON); }),
          sockets(test.loop),
          machine{test.system.Parts(),
                  {test.loop, boxes, host.Surroundings(), host, dialogs, tray, sockets, ftp}} {}

    WindowsMessageBoxes boxes{host};
    WindowsWindowHost host;
    WindowsFileDialogs dialogs;
    WindowsTray tray;
    WindowsSockets sockets;
    NoFtpTransport ftp;
    Machine machine;
  };
  std::optional<Screen> screen;  ///< made at the start
  std::unique_ptr<Program> program;
};

}  // namespace tarnvale::testing
