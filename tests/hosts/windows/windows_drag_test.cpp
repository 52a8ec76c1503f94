// Dragging over drawn controls and away from them, by the system's OLE.
#include <ole2.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>

#include "hosts/windows/com.h"
#include "kit/group_box.h"
#include "tests/hosts/windows/scripted_system.h"
#include "tests/hosts/windows/windows_fixture.h"

namespace tarnvale::testing {
namespace {

constexpr DWORD kBoth = DROPEFFECT_COPY | DROPEFFECT_MOVE;

// The system's interfaces have no virtual destructor: objects delete themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// What another program drags: one format in memory.
class Dragged final : public Counted<IDataObject> {
 public:
  Dragged(CLIPFORMAT format, std::string bytes) : format_(format), bytes_(std::move(bytes)) {}

  static Dragged* Text(std::wstring_view text) {
    return new Dragged(CF_UNICODETEXT, BytesOf(text) + std::string(2, '\0'));
  }
  /// Each path with a NUL behind it.
  static Dragged* Files(std::wstring_view paths) {
    DROPFILES head{};
    head.pFiles = sizeof head;
    head.fWide = TRUE;
    std::string bytes(sizeof head, '\0');
    std::memcpy(bytes.data(), &head, sizeof head);
    return new Dragged(CF_HDROP, bytes + BytesOf(paths) + std::string(2, '\0'));
  }

  STDMETHOD(GetData)(FORMATETC* wanted, STGMEDIUM* medium) override {
    if (wanted->cfFormat != format_) return DV_E_FORMATETC;
    *medium = {};
    medium->tymed = TYMED_HGLOBAL;
    medium->hGlobal = ::GlobalAlloc(GMEM_MOVEABLE, bytes_.size());
    std::memcpy(::GlobalLock(medium->hGlobal), bytes_.data(), bytes_.size());
    ::GlobalUnlock(medium->hGlobal);
    return S_OK;
  }
  STDMETHOD(QueryGetData)(FORMATETC* wanted) override {
    return wanted->cfFormat == format_ ? S_OK : DV_E_FORMATETC;
  }
  STDMETHOD(GetDataHere)(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  STDMETHOD(GetCanonicalFormatEtc)(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
  STDMETHOD(SetData)(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  STDMETHOD(EnumFormatEtc)(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
  STDMETHOD(DAdvise)(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
  STDMETHOD(DUnadvise)(DWORD) override { return E_NOTIMPL; }
  STDMETHOD(EnumDAdvise)(IEnumSTATDATA**) override { return E_NOTIMPL; }

 private:
  static std::string BytesOf(std::wstring_view text) {
    std::string bytes(text.size() * sizeof(wchar_t), '\0');
    std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
  }

  const CLIPFORMAT format_;
  const std::string bytes_;
};

#pragma GCC diagnostic pop

class WindowsDragging : public WindowsWindowTest {
 protected:
  WindowsDragging() {
    frame.OLEDropMode = 1;
    frame.OLEDragOver.Listen([this](DragStep& step) {
      Note("over", step);
      if (step.at.x_px > 100) step.effect = 0;
    });
    frame.OLEDragDrop.Listen([this](DragStep& step) { Note("drop", step); });
  }

  void Note(const std::string& what, const DragStep& step) {
    steps.push_back(what + " " + std::to_string(step.effect) + " " + step.data);
    last = step;
  }
  /// What the system would call for the window; null for one that takes no drops.
  IDropTarget* Target() {
    return static_cast<IDropTarget*>(::GetPropW(Native(), L"OleDropTargetInterface"));
  }
  /// A point of a control on the screen.
  POINTL On(Control& control, POINT within) {
    POINT at{PeerOf(control).Area().left + within.x, PeerOf(control).Area().top + within.y};
    ::ClientToScreen(Native(), &at);
    return {at.x, at.y};
  }
  DWORD Enter(IDataObject* data, Control& over, POINT within, DWORD keys = MK_LBUTTON,
              DWORD allowed = kBoth) {
    DWORD effect = allowed;
    EXPECT_EQ(Target()->DragEnter(data, keys, On(over, within), &effect), S_OK);
    return effect;
  }
  DWORD Move(Control& over, POINT within, DWORD keys = MK_LBUTTON) {
    DWORD effect = kBoth;
    EXPECT_EQ(Target()->DragOver(keys, On(over, within), &effect), S_OK);
    return effect;
  }
  DWORD Drop(IDataObject* data, Control& over, POINT within, DWORD allowed = kBoth) {
    DWORD effect = allowed;
    EXPECT_EQ(Target()->Drop(data, 0, On(over, within), &effect), S_OK);
    return effect;
  }

  GroupBox frame;
  std::vector<std::string> steps;
  DragStep last;
};

TEST_F(WindowsDragging, AWindowTakesDropsWhileADrawnControlOfItDoes) {
  Place(frame);
  frame.OLEDropMode = 0;
  Show();
  EXPECT_EQ(Target(), nullptr);
  frame.OLEDropMode = 1;
  EXPECT_TRUE(WaitFor([&] { return Target() != nullptr; }));
  frame.OLEDropMode = 0;
  EXPECT_TRUE(WaitFor([&] { return Target() == nullptr; }));
}

TEST_F(WindowsDragging, WhatIsDraggedOverIt) {
  Place(frame);
  Show();
  ASSERT_NE(Target(), nullptr);
  const tarnvale::Held<Dragged> data(Dragged::Text(L"a\u00E4.txt"));
  EXPECT_EQ(Enter(data.Get(), frame, {5, 7}), DWORD{DROPEFFECT_COPY});
  EXPECT_EQ(last.at.x_px, 5);
  EXPECT_EQ(last.at.y_px, 7);
  EXPECT_EQ(last.button, MouseButton::kLeft);
  EXPECT_EQ(Move(frame, {150, 5}), DWORD{DROPEFFECT_NONE}) << "refused";
  EXPECT_EQ(Move(frame, {5, 5}, MK_RBUTTON | MK_SHIFT), DWORD{DROPEFFECT_MOVE});
  EXPECT_EQ(last.button, MouseButton::kRight);
  EXPECT_EQ(Drop(data.Get(), frame, {5, 5}), DWORD{DROPEFFECT_COPY});
  EXPECT_EQ(last.button, MouseButton::kRight) << "it was held until then";
  EXPECT_EQ(steps, (std::vector<std::string>{"over 1 a\xC3\xA4.txt", "over 1 a\xC3\xA4.txt",
                                             "over 2 a\xC3\xA4.txt", "drop 1 a\xC3\xA4.txt"}));
}

TEST_F(WindowsDragging, FilesAreTheirPaths) {
  Place(frame);
  Show();
  const tarnvale::Held<Dragged> data(
      Dragged::Files(std::wstring_view(L"C:\\one.txt\0C:\\two.txt\0", 22)));
  Enter(data.Get(), frame, {5, 5});
  EXPECT_EQ(last.data, "C:\\one.txt\nC:\\two.txt");
}

TEST_F(WindowsDragging, OnlyWhatTheDragAllowsIsAnswered) {
  Place(frame);
  Show();
  const tarnvale::Held<Dragged> data(Dragged::Text(L"text"));
  EXPECT_EQ(Enter(data.Get(), frame, {5, 5}, MK_LBUTTON, DROPEFFECT_MOVE), DWORD{DROPEFFECT_MOVE});
  frame.OLEDragDrop.Listen([](DragStep& step) { step.effect = kCopies; });
  EXPECT_EQ(Drop(data.Get(), frame, {5, 5}, DROPEFFECT_MOVE), DWORD{DROPEFFECT_NONE});
}

TEST_F(WindowsDragging, WhatLiesOnAFrameLetsDropsThroughToItAndTheRestRefuses) {
  GroupBox other;
  Label label;
  TextBox field;
  Place(frame);
  Place(other);
  window.Place({{&label, &frame, {20, 20, 60, 20}}, {&field, &frame, {20, 50, 60, 22}}});
  Show();
  const tarnvale::Held<Dragged> data(Dragged::Text(L"text"));
  EXPECT_EQ(Enter(data.Get(), label, {5, 5}), DWORD{DROPEFFECT_COPY});
  EXPECT_EQ(last.at.x_px, 25) << "counted from the frame";
  EXPECT_EQ(Move(field, {5, 5}), DWORD{DROPEFFECT_COPY});
  EXPECT_EQ(Move(other, {5, 5}), DWORD{DROPEFFECT_NONE});
  EXPECT_EQ(steps.size(), 2U);
  frame.Enabled = false;
  EXPECT_EQ(Drop(data.Get(), label, {5, 5}), DWORD{DROPEFFECT_NONE});
  frame.Enabled = true;
  const WindowsWindowHost::Modal box(host, nullptr);
  EXPECT_EQ(Drop(data.Get(), label, {5, 5}), DWORD{DROPEFFECT_NONE}) << "a box is open";
  EXPECT_EQ(steps.size(), 2U);
}

// By the mouse, as a user does, over another frame, which would copy it.
TEST_F(WindowsDragging, WhatADropOfWhatIsDraggedAwayWouldDo) {
  GroupBox source;
  source.OLEStartDrag.Listen([](DragStep& step) { step.data = "text \xC3\xA4"; });
  source.OLEGiveFeedback.Listen([this](DragStep& step) { Note("would be", step); });
  source.OLECompleteDrag.Listen([this](DragStep& step) { Note("was", step); });
  Place(source);
  Place(frame);
  Show();
  const auto put = [&](Control& over, LONG x) {
    const POINTL at = On(over, {x, 30});
    ::SetCursorPos(at.x, at.y);
  };
  put(source, 50);
  ::mouse_event(MOUSEEVENTF_LEFTDOWN, 0, 0, 0, 0);
  ASSERT_TRUE(WaitFor([] { return ::GetKeyState(VK_LBUTTON) < 0; }));
  LONG x = 0;
  Timer timer(loop.Timers(), 50, true);
  timer.Tick.Listen([&] {
    const bool is_over =
        std::find(steps.begin(), steps.end(), "would be 1 text \xC3\xA4") != steps.end();
    if (!is_over && ++x < 100) {
      put(frame, 20 + x % 2);
    } else {
      timer.Enabled = false;
      ::mouse_event(MOUSEEVENTF_LEFTUP, 0, 0, 0, 0);
    }
  });
  loop.Deliver([&] { source.OLEDrag(); });
  timer.Enabled = false;
  // Each move of the mouse over the other frame is a step.
  EXPECT_GT(std::erase(steps, "over 1 text \xC3\xA4"), 0U);
  EXPECT_EQ(steps, (std::vector<std::string>{"would be 1 text \xC3\xA4", "drop 1 text \xC3\xA4",
                                             "was 1 text \xC3\xA4"}));
}

}  // namespace
}  // namespace tarnvale::testing
