#include "tests/reliability/whole_program.h"

#include <chrono>
#include <deque>
#include <optional>
#include <stdexcept>
#include <thread>

#include "hosts/curl/curl_ftp_transport.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_formats.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_random.h"
#include "tests/support/fake_windows.h"
#include "tests/support/manual_loop.h"
#include "tests/support/real_waits.h"

namespace tarnvale::reliability {
namespace {

using namespace std::chrono_literals;

// Virtual time goes by while the real machine is waited for.
class PatientLoop : public testing::RealWaits {
 public:
  using RealWaits::RealWaits;
  void WaitPass() override {
    loop_.WaitPass();
    std::this_thread::sleep_for(100us);
  }
};

// Keeps nothing of what it was sent, so that memory stays what the program needs.
class ForgetfulTray : public NotificationArea {
 public:
  ForgetfulTray() { IsPresent = true; }
  bool Notify(TrayCommand, const TrayRecord&) override { return true; }
};

class ScriptedDesktop : public MessageBoxes, public FileDialogs {
 public:
  explicit ScriptedDesktop(std::function<void(const std::string&)> report)
      : report_(std::move(report)) {}

  BoxAnswer Show(const BoxRequest& request) override {
    report_(request.text);
    return request.buttons == BoxButtons::kYesNo ? BoxAnswer::kYes : BoxAnswer::kOk;
  }
  bool ShowOpen(FileDialogRecord& record) override { return Fill(record); }
  bool ShowSave(FileDialogRecord& record) override { return Fill(record); }
  std::optional<Path> BrowseForFolder(const FolderDialogRecord&) override { return Next(); }

  std::deque<Path> choices;

 private:
  Path Next() {
    if (choices.empty()) throw std::logic_error("a dialog that nobody announced");
    Path path = choices.front();
    choices.pop_front();
    return path;
  }
  bool Fill(FileDialogRecord& record) {
    const Path path = Next();
    record.file.replace(0, path.size(), path);
    return true;
  }

  std::function<void(const std::string&)> report_;
};

}  // namespace

struct WholeProgram::Machinery {
  Machinery(const LinuxSurroundings& surroundings,
            const std::function<void(const std::string&)>& report)
      : host(surroundings), answers(report) {
    const auto fault = [report](const ProgramError& error) {
      report("error " + std::to_string(error.Number()));
    };
    loop.Fault.Listen(fault);
    manual.Fault.Listen(fault);
    program.emplace(machine);
    program->engine.settings.DataFolder = "C:\\Data";
  }

  LinuxHost host;
  testing::FakeClock clock;
  testing::ManualLoop manual{clock};
  PatientLoop loop{manual};
  testing::FakeFormats formats;
  testing::FakeRandom random;
  Desktop desktop;
  testing::FakeWindows windows{loop, desktop};
  ForgetfulTray tray;
  testing::FakeNetwork network{manual, clock};
  CurlFtpTransport ftp{loop, host.transfer_files};
  ScriptedDesktop answers;
  Machine machine{{host.files, host.open_files, host.profiles, host.processes, clock, random,
                   formats, host.registry, host.applications},
                  {loop, answers, desktop, windows, answers, tray, network, ftp}};
  std::optional<Program> program;
};

WholeProgram::WholeProgram(const LinuxSurroundings& surroundings,
                           const std::function<void(const std::string&)>& report)
    : machinery_(std::make_unique<Machinery>(surroundings, report)) {}
WholeProgram::~WholeProgram() = default;

Program& WholeProgram::Parts() {
  return *machinery_->program;
}

void WholeProgram::Do(const std::function<void()>& action) {
  machinery_->loop.Deliver(action);
}

void WholeProgram::Choose(const std::vector<Path>& paths) {
  machinery_->answers.choices = {paths.begin(), paths.end()};
}

testing::ManualLoop& WholeProgram::Loop() {
  return machinery_->manual;
}

testing::FakeClock& WholeProgram::Clock() {
  return machinery_->clock;
}

testing::FakeWindows& WholeProgram::Windows() {
  return machinery_->windows;
}

}  // namespace tarnvale::reliability
