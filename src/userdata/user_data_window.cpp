#include "userdata/user_data_window.h"

#include <utility>

#include "base/failure.h"
#include "userdata/profile_paths.h"

namespace tarnvale {

userdata::userdata(Machine& machine)
    : Timer1(machine.loop.Timers(), 500, true),
      machine_(machine),
      control_(machine.files, machine.boxes, machine.loop) {
  LayOut(*this);
  WirePanels();
  Timer1.Tick.Listen([this] { FollowProfile(); });
  // Its ticks show nothing while it is hidden.
  const auto wake_while_seen = [this] { Timer1.WakesLoop = Visible.Get(); };
  Visible.Changed.Listen(wake_while_seen);
  wake_while_seen();
}

std::string userdata::Reg_Read(const std::string& path) {
  return machine_.registry.Read(path);
}

void userdata::WirePanels() {
  for (const Panel& panel : Panels()) {
    (this->*panel.link).Clicked.Listen([this, &panel] { ShowPanel(panel); });
    (this->*panel.backup).Click.Listen([this, &panel] { (this->*panel.back_up)(panel); });
    if (panel.restore == nullptr) continue;
    (this->*panel.restore).Click.Listen([this, &panel] { (this->*panel.restore_from)(panel); });
  }
}

void userdata::ShowPanel(const Panel& panel) {
  for (const Panel& each : Panels()) (this->*each.frame).Visible = &each == &panel;
}

// Required: written at each tick, whether it changed or not; nothing is looked
// for on the medium.
void userdata::FollowProfile() {
  PassedOver pass;
  // Chosen: without the value the identity is empty, and the window lives on.
  std::string identity;
  pass.Step([&] { identity = Reg_Read("HKEY_CURRENT_USER\\Identities\\Default User ID"); });
  Text10.Text = std::move(identity);

  const std::string user = machine_.processes.Variable("username").value_or(std::string());
  const ProfilePaths paths = ProfilePathsOf(user, Text10.Text);
  const auto place_of = [this](Application application, const Path& classic) {
    return machine_.applications.DataFolder(application).value_or(classic);
  };
  Text11.Text = paths.outlook_express;
  Text1.Text = place_of(Application::kFirefox, paths.firefox);
  Text20.Text = place_of(Application::kOpera, paths.opera);
  Text3.Text = place_of(Application::kThunderbird, paths.thunderbird);
  Text5.Text = paths.favorites;
  Text7.Text = paths.outlook;
  Text16.Text = paths.cookies;
  Text17.Text = paths.history;
  Text18.Text = paths.temporary_files;
}

}  // namespace tarnvale
