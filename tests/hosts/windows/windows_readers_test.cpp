// What a screen reader finds: every window of the program, with all that is on it.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/windows/wide.h"
#include "tests/hosts/windows/program_fixture.h"

namespace tarnvale::testing {
namespace {

/// What the system gives to those that read the screen.
class Reader {
 public:
  explicit Reader(HWND window) {
    ::CoInitialize(nullptr);
    ::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                 reinterpret_cast<void**>(&object_));
  }
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;
  ~Reader() {
    if (object_ != nullptr) object_->Release();
    ::CoUninitialize();
  }

  IAccessible* operator->() const { return object_; }
  bool IsThere() const { return object_ != nullptr; }

  static VARIANT Number(LONG number) {
    VARIANT child;
    child.vt = VT_I4;
    child.lVal = number;
    return child;
  }
  using TextCall = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
  std::string Text(TextCall call, LONG child) const {
    BSTR text = nullptr;
    if (FAILED((object_->*call)(Number(child), &text)) || text == nullptr) return {};
    std::string narrow = Narrow(std::wstring(text, ::SysStringLen(text)));
    ::SysFreeString(text);
    return narrow;
  }
  std::string Name(LONG child) const { return Text(&IAccessible::get_accName, child); }
  std::string Value(LONG child) const { return Text(&IAccessible::get_accValue, child); }
  std::string Action(LONG child) const { return Text(&IAccessible::get_accDefaultAction, child); }
  LONG Role(LONG child) const { return NumberOf(&IAccessible::get_accRole, child); }
  LONG State(LONG child) const { return NumberOf(&IAccessible::get_accState, child); }
  LONG Count() const {
    LONG count = 0;
    object_->get_accChildCount(&count);
    return count;
  }
  HRESULT Press(LONG child) const { return object_->accDoDefaultAction(Number(child)); }

 private:
  using NumberCall = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, VARIANT*);
  LONG NumberOf(NumberCall call, LONG child) const {
    VARIANT number;
    number.vt = VT_EMPTY;
    (object_->*call)(Number(child), &number);
    return number.vt == VT_I4 ? number.lVal : -1;
  }

  IAccessible* object_ = nullptr;
};

class WindowsReaders : public WindowsProgramTest {
 protected:
  /// The number of a control on its window.
  static LONG NumberOf(const Control& control) {
    LONG number = 0;
    for (const Placement& placement : control.Owner()->Placements()) {
      ++number;
      if (placement.control == &control) return number;
    }
    return 0;
  }

  /// Everything but what only holds others, or is drawn as ground.
  static bool NeedsName(LONG role, LONG state) {
    switch (role) {
      case ROLE_SYSTEM_GROUPING:
      case ROLE_SYSTEM_STATICTEXT:  // an empty line says nothing to sighted users, either
        return false;
      case ROLE_SYSTEM_PANE:
      case ROLE_SYSTEM_GRAPHIC:
        return (state & STATE_SYSTEM_FOCUSABLE) != 0;
      default:
        return true;
    }
  }

  void ExpectAllNamed(Window& window, const std::string& name) {
    ASSERT_TRUE(WaitUntilShown(window)) << name;
    const Reader reader(NativeOf(window));
    ASSERT_TRUE(reader.IsThere()) << name;
    ASSERT_EQ(reader.Count(), static_cast<LONG>(window.Placements().size())) << name;
    int met = 0;
    for (LONG number = 1; number <= reader.Count(); ++number) {
      if ((reader.State(number) & STATE_SYSTEM_INVISIBLE) != 0) continue;
      ++met;
      Control& control = *window.Placements()[static_cast<std::size_t>(number - 1)].control;
      const std::string where = name + ", " + std::to_string(number);
      EXPECT_GT(reader.Role(number), 0) << where;
      if (NeedsName(reader.Role(number), reader.State(number))) {
        EXPECT_NE(reader.Name(number), "") << where;
      }
      ExpectPlace(reader, number, window, control, where);
      ExpectNativeTheSame(reader, number, window, control, where);
    }
    EXPECT_GT(met, 0) << name;
  }

  void ExpectPlace(const Reader& reader, LONG number, Window& window, Control& control,
                   const std::string& where) {
    RECT place{};
    ASSERT_EQ(reader->accLocation(&place.left, &place.top, &place.right, &place.bottom,
                                  Reader::Number(number)),
              S_OK)
        << where;
    POINT corner{0, 0};
    ::ClientToScreen(NativeOf(window), &corner);
    const RECT& area = screen->host.NativeOf(window)->PeerOf(control)->SeenArea();
    EXPECT_EQ(place.left - corner.x, area.left) << where;
    EXPECT_EQ(place.top - corner.y, area.top) << where;
    EXPECT_EQ(place.right, area.right - area.left) << where;
  }

  // A reader gets to the system's own controls by the focus, and by the window.
  void ExpectNativeTheSame(const Reader& reader, LONG number, Window& window, Control& control,
                           const std::string& where) {
    auto* native = dynamic_cast<NativePeer*>(screen->host.NativeOf(window)->PeerOf(control));
    IDispatch* object = nullptr;
    const HRESULT found = reader->get_accChild(Reader::Number(number), &object);
    EXPECT_EQ(found, native != nullptr ? S_OK : S_FALSE) << where;
    if (object != nullptr) object->Release();
    if (native == nullptr) return;
    const Reader own(native->Native());
    ASSERT_TRUE(own.IsThere()) << where;
    EXPECT_NE(own.Name(CHILDID_SELF), "") << where;
    EXPECT_EQ(own.Name(CHILDID_SELF), reader.Name(number)) << where;
    EXPECT_EQ(own.Role(CHILDID_SELF), reader.Role(number)) << where;
  }
};

TEST_F(WindowsReaders, EverythingOnEachScreenOfTheMainWindowHasANameAndARole) {
  Program& p = StartAndBringUp();
  ForEachScreen(p, [&](const std::string& name) { ExpectAllNamed(p.form, name); });
}

TEST_F(WindowsReaders, EverythingOnEachOtherWindowHasANameAndARole) {
  Program& p = StartAndBringUp();
  LoadEveryWindow(p);
  for (Window* window : Windows()) {
    if (window == &p.form || window == &p.Splash) continue;
    window->Show();
    ExpectAllNamed(*window, NameOf(*window));
    // Panels share a place, and one of them lies before the others.
    for (const Placement& placement : window->Placements()) {
      if (dynamic_cast<GroupBox*>(placement.control) != nullptr) placement.control->Visible = true;
    }
    ExpectAllNamed(*window, NameOf(*window) + ", all panels");
    window->Hide();
  }
}

TEST_F(WindowsReaders, DrawnControlsReportTheirState) {
  Form1& f = StartAndBringUp(96, "[Log]\r\nSave=True\r\n[Setup]\r\nWizard=1\r\n").form;
  const Reader reader(NativeOf(f));
  const auto state = [&](Control& control) { return reader.State(NumberOf(control)); };
  EXPECT_EQ(reader.Role(NumberOf(f.Schedule.CheckBox9)), ROLE_SYSTEM_CHECKBUTTON);
  EXPECT_EQ(state(f.Schedule.CheckBox9) & STATE_SYSTEM_CHECKED, 0);
  f.Schedule.CheckBox9.Checked = true;
  EXPECT_NE(state(f.Schedule.CheckBox9) & STATE_SYSTEM_CHECKED, 0);
  EXPECT_EQ(reader.Role(NumberOf(f.Advanced.chameleonButton5)), ROLE_SYSTEM_PUSHBUTTON);
  EXPECT_EQ(state(f.Advanced.chameleonButton5) & STATE_SYSTEM_UNAVAILABLE, 0);
  f.Advanced.chameleonButton5.Enabled = false;
  EXPECT_NE(state(f.Advanced.chameleonButton5) & STATE_SYSTEM_UNAVAILABLE, 0);
  program->engine.run.CopyBar = 40;
  EXPECT_EQ(reader.Role(NumberOf(f.Progress.XP_ProgressBar1)), ROLE_SYSTEM_PROGRESSBAR);
  EXPECT_EQ(reader.Value(NumberOf(f.Progress.XP_ProgressBar1)), "40%");
}

TEST_F(WindowsReaders, AReaderPressesWhatCanBePressed) {
  Form1& f = StartAndBringUp().form;
  const Reader reader(NativeOf(f));
  EXPECT_EQ(reader.Role(NumberOf(f.Label37)), ROLE_SYSTEM_LINK);
  EXPECT_EQ(reader.Action(NumberOf(f.Label37)), "Jump");
  f.List.GroupBox1.Visible = false;
  EXPECT_EQ(reader.Press(NumberOf(f.Label37)), S_OK);
  EXPECT_TRUE(WaitFor([&] { return f.List.GroupBox1.Visible.Get(); }));
  EXPECT_EQ(reader.Action(NumberOf(f.List.Command4)), "Press");
  f.List.Command4.Enabled = false;
  EXPECT_EQ(reader.Action(NumberOf(f.List.Command4)), "");
  EXPECT_NE(reader.Press(NumberOf(f.List.Command4)), S_OK);
  EXPECT_EQ(reader.Action(NumberOf(f.List.GroupBox1)), "");
}

TEST_F(WindowsReaders, ThePointerAndTheFocusLeadToTheControl) {
  Form1& f = StartAndBringUp().form;
  f.List.GroupBox1.Visible = true;
  ASSERT_TRUE(WaitFor([&] { return ::GetActiveWindow() == NativeOf(f); }));
  const Reader reader(NativeOf(f));
  const auto number_at = [&](Control& control) {
    const RECT& area = screen->host.NativeOf(f)->PeerOf(control)->SeenArea();
    POINT at{area.left + 1, area.top + 1};
    ::ClientToScreen(NativeOf(f), &at);
    VARIANT found;
    EXPECT_EQ(reader->accHitTest(at.x, at.y, &found), S_OK);
    if (found.vt == VT_DISPATCH) found.pdispVal->Release();
    return std::pair(found.vt, found.vt == VT_I4 ? found.lVal : 0);
  };
  using Found = std::pair<VARTYPE, LONG>;
  EXPECT_EQ(number_at(f.Label37), Found(VT_I4, NumberOf(f.Label37)));
  EXPECT_EQ(number_at(f.List.Command4), Found(VT_I4, NumberOf(f.List.Command4)));
  const auto focused = [&] {
    VARIANT found;
    reader->get_accFocus(&found);
    if (found.vt == VT_DISPATCH) found.pdispVal->Release();
    return std::pair(found.vt, found.vt == VT_I4 ? found.lVal : 0);
  };
  f.Focus(f.List.Command4);
  EXPECT_EQ(focused(), Found(VT_I4, NumberOf(f.List.Command4)));
  EXPECT_NE(reader.State(NumberOf(f.List.Command4)) & STATE_SYSTEM_FOCUSED, 0);
  f.Focus(f.List.List1);
  EXPECT_EQ(number_at(f.List.List1), Found(VT_DISPATCH, 0));
  EXPECT_EQ(focused(), Found(VT_DISPATCH, 0));
}

TEST_F(WindowsReaders, NobodyReadsAPassword) {
  Program& p = StartAndBringUp();
  LoadEveryWindow(p);
  int passwords = 0;
  for (Window* window : Windows()) {
    for (const Placement& placement : window->Placements()) {
      auto* box = dynamic_cast<TextBox*>(placement.control);
      if (box == nullptr || box->Kind != TextKind::kPassword) continue;
      box->Text = "secret";
      window->Show();
      ASSERT_TRUE(WaitUntilShown(*window));
      auto* native =
          dynamic_cast<NativePeer*>(screen->host.NativeOf(*window)->PeerOf(*placement.control));
      const Reader reader(native->Native());
      EXPECT_EQ(reader.Value(CHILDID_SELF), "");
      ++passwords;
      window->Hide();
    }
  }
  EXPECT_GT(passwords, 0);
}

TEST_F(WindowsReaders, AReaderMayOutliveTheWindow) {
  Program& p = StartAndBringUp();
  std::optional<Reader> reader(std::in_place, NativeOf(p.form));
  ASSERT_GT(reader->Count(), 0);
  program.reset();
  screen.reset();
  EXPECT_EQ(reader->Count(), 0);
  EXPECT_EQ(reader->Name(1), "");
}

}  // namespace
}  // namespace tarnvale::testing
