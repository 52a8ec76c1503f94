// What can be known of the program's windows from another process. Answers each line of its
// input by lines of fields with tabs between them, and a line with a point at the end:
//
//   layout     control  WINDOW NAME KIND LEFT TOP WIDTH HEIGHT
//              every control of every window, drawn ones too, by the name that readers of the
//              screen give it; from the window's client area, at 96 dpi
//   windows    window   HANDLE PROCESS CLASS TEXT FLAGS LEFT TOP WIDTH HEIGHT
//              child    HANDLE TOP-LEVEL-HANDLE CLASS TEXT FLAGS LEFT TOP WIDTH HEIGHT
//              row      HANDLE SELECTED TEXT
//              every window of the desktop's: its client area on the screen, FLAGS being those
//              of "visible enabled minimised foreground focus menu" that hold
#include <algorithm>
#include <iostream>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "app/program.h"
#include "hosts/windows/system_headers.h"
#include "hosts/windows/wide.h"
#include "tests/support/fake_machine.h"
#include "ui/accessible_names.h"

namespace tarnvale::testing {
namespace {

// A program that is at work answers nobody.
constexpr UINT kPatienceMs = 1000;

std::string Field(std::string text) {
  std::replace_if(
      text.begin(), text.end(),
      [](char letter) { return letter == '\t' || letter == '\n' || letter == '\r'; }, ' ');
  return text;
}

// --- where everything is ---

class KindOf final : public ControlVisitor {
 public:
  explicit KindOf(Control& control) { control.Accept(*this); }
  std::string_view Name() const { return name_; }

  void Visit(Label& label) override { name_ = label.Role == TextRole::kLink ? "link" : "label"; }
  void Visit(TextBox&) override { name_ = "field"; }
  void Visit(ListBox&) override { name_ = "list"; }
  void Visit(ComboBox&) override { name_ = "combo"; }
  void Visit(OptionButton&) override { name_ = "option"; }
  void Visit(CheckButton&) override { name_ = "check"; }
  void Visit(FileList&) override { name_ = "files"; }
  void Visit(FolderTree&) override { name_ = "tree"; }
  void Visit(PictureBox&) override { name_ = "picture"; }
  void Visit(OwnerDrawn&) override { name_ = "drawn"; }

 private:
  std::string_view name_;
};

void PrintLayout(const Window& window, const std::string& name) {
  const auto labels = LabelsOf(window);
  std::map<const Control*, Rect> places;
  for (const Placement& placement : window.Placements()) {
    Rect place = placement.place;
    if (placement.container != nullptr) {
      place.left_px += places[placement.container].left_px;
      place.top_px += places[placement.container].top_px;
    }
    places[placement.control] = place;
    const auto label = labels.find(placement.control);
    std::cout << "control\t" << name << '\t'
              << Field(NameForReaders(*placement.control,
                                      label == labels.end() ? nullptr : label->second))
              << '\t' << KindOf(*placement.control).Name() << '\t' << place.left_px << '\t'
              << place.top_px << '\t' << place.width_px << '\t' << place.height_px << '\n';
  }
}

// The program's own windows, on a machine that there isn't.
void PrintLayouts() {
  FakeMachine machine;
  machine.files.Write("C:\\Program\\Data.txt", "C:\\Data\r\n");
  machine.files.Write("C:\\Data\\Tarnvale.ini", "[Setup]\r\nWizard=1\r\n");
  Program program(machine.Interfaces());
  for (const Window* window : std::vector<const Window*>{
           &program.form, &program.Splash, &program.Agreement.Get(), &program.Compressor.Get(),
           &program.Splitter.Get(), &program.RegistryBackup.Get(), &program.UserData.Get(),
           &program.Mailer.Get(), &program.Transfer.Get()}) {
    PrintLayout(*window, window->Caption.Get());
  }
  program.popups.LoadAlert();
  PrintLayout(program.popups.Alert(), "alert");
  PrintLayout(program.popups.ProgressPopup(), "progress");
}

// --- what is there ---

std::string ClassOf(HWND window) {
  wchar_t name[256] = L"";
  ::GetClassNameW(window, name, 256);
  return Narrow(name);
}

DWORD_PTR Answer(HWND window, UINT message, WPARAM first, LPARAM second) {
  DWORD_PTR answer = 0;
  ::SendMessageTimeoutW(window, message, first, second, SMTO_ABORTIFHUNG, kPatienceMs, &answer);
  return answer;
}

// What the answers to both messages give; empty when the window or its row has gone meanwhile.
std::string TextBy(HWND window, UINT length_message, UINT text_message, WPARAM row) {
  constexpr DWORD_PTR kMost = 100000;
  const DWORD_PTR length = Answer(window, length_message, row, 0);
  if (length > kMost) return {};
  std::wstring text(length + 1, L'\0');
  const WPARAM first = text_message == WM_GETTEXT ? text.size() : row;
  const DWORD_PTR filled =
      Answer(window, text_message, first, reinterpret_cast<LPARAM>(text.data()));
  if (filled > length) return {};
  text.resize(filled);
  return Field(Narrow(text));
}

std::string TextOf(HWND window) {
  return TextBy(window, WM_GETTEXTLENGTH, WM_GETTEXT, 0);
}

void PrintRows(HWND list) {
  const auto count = static_cast<LRESULT>(Answer(list, LB_GETCOUNT, 0, 0));
  for (WPARAM row = 0; static_cast<LRESULT>(row) < count; ++row) {
    const auto selected = static_cast<LRESULT>(Answer(list, LB_GETSEL, row, 0));
    std::cout << "row\t" << reinterpret_cast<std::uintptr_t>(list) << '\t'
              << (selected > 0 ? "selected" : "") << '\t'
              << TextBy(list, LB_GETTEXTLEN, LB_GETTEXT, row) << '\n';
  }
}

std::string FlagsOf(HWND window) {
  GUITHREADINFO thread{};
  thread.cbSize = sizeof thread;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(window, nullptr), &thread);
  std::string flags;
  const auto add = [&](bool holds, const char* flag) {
    if (holds) flags += (flags.empty() ? "" : " ") + std::string(flag);
  };
  add(::IsWindowVisible(window) != 0, "visible");
  add(::IsWindowEnabled(window) != 0, "enabled");
  add(::IsIconic(window) != 0, "minimised");
  add(::GetForegroundWindow() == window, "foreground");
  add(thread.hwndFocus == window, "focus");
  add((thread.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0, "menu");
  return flags;
}

void PrintPlace(HWND window) {
  RECT area{};
  POINT origin{};
  ::GetClientRect(window, &area);
  ::ClientToScreen(window, &origin);
  std::cout << '\t' << ClassOf(window) << '\t' << TextOf(window) << '\t' << FlagsOf(window) << '\t'
            << origin.x << '\t' << origin.y << '\t' << area.right << '\t' << area.bottom << '\n';
}

BOOL CALLBACK PrintChild(HWND child, LPARAM) {
  std::cout << "child\t" << reinterpret_cast<std::uintptr_t>(child) << '\t'
            << reinterpret_cast<std::uintptr_t>(::GetAncestor(child, GA_ROOT));
  PrintPlace(child);
  if (ClassOf(child) == "ListBox") PrintRows(child);
  return TRUE;
}

BOOL CALLBACK PrintWindow(HWND window, LPARAM) {
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  if (process == ::GetCurrentProcessId()) return TRUE;
  std::cout << "window\t" << reinterpret_cast<std::uintptr_t>(window) << '\t' << process;
  PrintPlace(window);
  ::EnumChildWindows(window, &PrintChild, 0);
  return TRUE;
}

}  // namespace
}  // namespace tarnvale::testing

int main() {
  using namespace tarnvale::testing;
  for (std::string line; std::getline(std::cin, line);) {
    while (line.ends_with('\r')) line.pop_back();
    if (line == "layout") PrintLayouts();
    if (line == "windows") ::EnumWindows(&PrintWindow, 0);
    std::cout << ".\n" << std::flush;
  }
}
