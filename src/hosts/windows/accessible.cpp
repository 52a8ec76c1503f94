#include "hosts/windows/accessible.h"

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "hosts/windows/com.h"
#include "hosts/windows/shown_text.h"
#include "hosts/windows/wide.h"
#include "hosts/windows/windows_window.h"

namespace tarnvale {
namespace {

HRESULT Give(const std::wstring& text, BSTR* place) {
  *place = nullptr;
  if (text.empty()) return S_FALSE;
  *place = ::SysAllocStringLen(text.c_str(), static_cast<UINT>(text.size()));
  return *place == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT Give(LONG number, VARIANT* place) {
  place->vt = VT_I4;
  place->lVal = number;
  return S_OK;
}

HRESULT Give(Held<IDispatch>& object, VARIANT* place) {
  place->vt = VT_DISPATCH;
  place->pdispVal = object.Take();
  return S_OK;
}

// The system's interfaces have no virtual destructor: objects delete themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The system's object of a window. What differs is said by those who inherit from it.
class PassingAccessible : public Counted<IAccessible, IDispatch> {
 public:
  // IDispatch.
  STDMETHOD(GetTypeInfoCount)(UINT* count) override { return system_->GetTypeInfoCount(count); }
  STDMETHOD(GetTypeInfo)(UINT index, LCID locale, ITypeInfo** info) override {
    return system_->GetTypeInfo(index, locale, info);
  }
  STDMETHOD(GetIDsOfNames)
  (REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
    return system_->GetIDsOfNames(id, names, count, locale, ids);
  }
  STDMETHOD(Invoke)
  (DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }

  // IAccessible.
  STDMETHOD(get_accParent)(IDispatch** parent) override { return system_->get_accParent(parent); }
  STDMETHOD(get_accChildCount)(LONG* count) override { return system_->get_accChildCount(count); }
  STDMETHOD(get_accChild)(VARIANT child, IDispatch** object) override {
    return system_->get_accChild(child, object);
  }
  STDMETHOD(get_accName)(VARIANT child, BSTR* name) override {
    return system_->get_accName(child, name);
  }
  STDMETHOD(get_accValue)(VARIANT child, BSTR* value) override {
    return system_->get_accValue(child, value);
  }
  STDMETHOD(get_accDescription)(VARIANT child, BSTR* text) override {
    return system_->get_accDescription(child, text);
  }
  STDMETHOD(get_accRole)(VARIANT child, VARIANT* role) override {
    return system_->get_accRole(child, role);
  }
  STDMETHOD(get_accState)(VARIANT child, VARIANT* state) override {
    return system_->get_accState(child, state);
  }
  STDMETHOD(get_accHelp)(VARIANT child, BSTR* help) override {
    return system_->get_accHelp(child, help);
  }
  STDMETHOD(get_accHelpTopic)(BSTR* file, VARIANT child, LONG* topic) override {
    return system_->get_accHelpTopic(file, child, topic);
  }
  STDMETHOD(get_accKeyboardShortcut)(VARIANT child, BSTR* key) override {
    return system_->get_accKeyboardShortcut(child, key);
  }
  STDMETHOD(get_accFocus)(VARIANT* child) override { return system_->get_accFocus(child); }
  STDMETHOD(get_accSelection)(VARIANT* children) override {
    return system_->get_accSelection(children);
  }
  STDMETHOD(get_accDefaultAction)(VARIANT child, BSTR* action) override {
    return system_->get_accDefaultAction(child, action);
  }
  STDMETHOD(accSelect)(LONG flags, VARIANT child) override {
    return system_->accSelect(flags, child);
  }
  STDMETHOD(accLocation)
  (LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override {
    return system_->accLocation(left, top, width, height, child);
  }
  STDMETHOD(accNavigate)(LONG direction, VARIANT start, VARIANT* end) override {
    return system_->accNavigate(direction, start, end);
  }
  STDMETHOD(accHitTest)(LONG left, LONG top, VARIANT* child) override {
    return system_->accHitTest(left, top, child);
  }
  STDMETHOD(accDoDefaultAction)(VARIANT child) override {
    return system_->accDoDefaultAction(child);
  }
  STDMETHOD(put_accName)(VARIANT, BSTR) override { return E_NOTIMPL; }
  STDMETHOD(put_accValue)(VARIANT child, BSTR value) override {
    return system_->put_accValue(child, value);
  }

  /// False where the system has no object for the window.
  bool Wrap(HWND window) {
    return SUCCEEDED(::CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible),
                                                 system_.Place())) &&
           system_.Get() != nullptr;
  }

 protected:
  explicit PassingAccessible(WindowsWindow& window) : window_(window), lives_(window.Lives()) {}

  static bool IsSelf(const VARIANT& child) {
    return child.vt != VT_I4 || child.lVal == CHILDID_SELF;
  }

  /// No error gets out to the system.
  template <class Answer>
  HRESULT Guarded(Answer answer) const {
    if (!*lives_ || !window_.ServesReaders()) return CO_E_OBJNOTCONNECTED;
    try {
      return answer();
    } catch (const std::exception&) {
      return E_FAIL;
    }
  }

  WindowsWindow& window_;

 private:
  std::shared_ptr<const bool> lives_;
  Held<IAccessible> system_;
};

class SceneAccessible final : public PassingAccessible {
 public:
  explicit SceneAccessible(WindowsWindow& window) : PassingAccessible(window) {}

  STDMETHOD(get_accChildCount)(LONG* count) override {
    *count = 0;
    return Guarded([&] {
      *count = static_cast<LONG>(window_.Peers().size());
      return S_OK;
    });
  }

  STDMETHOD(get_accChild)(VARIANT child, IDispatch** object) override {
    *object = nullptr;
    return Guarded([&] {
      auto* native = dynamic_cast<NativePeer*>(PeerAt(child));
      if (native == nullptr) return S_FALSE;
      Held<IDispatch> found;
      const HRESULT status = ObjectOf(*native, found);
      *object = found.Take();
      return status;
    });
  }

  STDMETHOD(get_accName)(VARIANT child, BSTR* name) override {
    if (IsSelf(child)) return PassingAccessible::get_accName(child, name);
    return ForPeer(child, [&](Peer& peer) { return Give(NameOf(peer), name); });
  }

  STDMETHOD(get_accValue)(VARIANT child, BSTR* value) override {
    *value = nullptr;
    if (IsSelf(child)) return S_FALSE;
    return ForDrawn(child, [&](DrawnPeer& peer) {
      const auto range = peer.StateForReaders().range;
      if (!range || range->max <= range->min) return S_FALSE;
      const int percent = ::MulDiv(range->value - range->min, 100, range->max - range->min);
      return Give(Wide(std::to_string(percent) + "%"), value);
    });
  }

  STDMETHOD(get_accDescription)(VARIANT child, BSTR* text) override {
    *text = nullptr;
    if (IsSelf(child)) return S_FALSE;
    return ForPeer(child, [&](Peer& peer) {
      const std::wstring tip = ToShown(peer.Tip());
      return tip == NameOf(peer) ? S_FALSE : Give(tip, text);
    });
  }

  STDMETHOD(get_accRole)(VARIANT child, VARIANT* role) override {
    if (IsSelf(child)) return PassingAccessible::get_accRole(child, role);
    return ForPeer(child, [&](Peer& peer) { return Give(peer.RoleForReaders(), role); });
  }

  STDMETHOD(get_accState)(VARIANT child, VARIANT* state) override {
    if (IsSelf(child)) return PassingAccessible::get_accState(child, state);
    return ForPeer(child, [&](Peer& peer) { return Give(StateOf(peer), state); });
  }

  STDMETHOD(get_accKeyboardShortcut)(VARIANT child, BSTR* key) override {
    *key = nullptr;
    if (IsSelf(child)) return S_FALSE;
    return ForDrawn(child, [&](DrawnPeer& peer) {
      const char32_t letter = peer.AccessKey();
      if (letter == 0) return S_FALSE;
      auto shown = static_cast<wchar_t>(letter);
      ::CharUpperBuffW(&shown, 1);
      return Give(std::wstring(L"Alt+") + shown, key);
    });
  }

  STDMETHOD(get_accFocus)(VARIANT* child) override {
    child->vt = VT_EMPTY;
    return Guarded([&] {
      const Control* focused = window_.Record().Focused();
      if (focused == nullptr || ::GetActiveWindow() != window_.Native()) return S_FALSE;
      return GiveChild(window_.PeerOf(*focused), child);
    });
  }

  STDMETHOD(get_accSelection)(VARIANT* children) override {
    children->vt = VT_EMPTY;
    return S_FALSE;
  }

  STDMETHOD(get_accDefaultAction)(VARIANT child, BSTR* action) override {
    *action = nullptr;
    if (IsSelf(child)) return S_FALSE;
    return ForDrawn(child, [&](DrawnPeer& peer) { return Give(ActionOf(peer), action); });
  }

  STDMETHOD(accDoDefaultAction)(VARIANT child) override {
    return ForDrawn(child, [&](DrawnPeer& peer) {
      return window_.PressForReaders(peer) ? S_OK : DISP_E_MEMBERNOTFOUND;
    });
  }

  STDMETHOD(accSelect)(LONG flags, VARIANT child) override {
    if (IsSelf(child)) return PassingAccessible::accSelect(flags, child);
    if ((flags & SELFLAG_TAKEFOCUS) == 0) return E_INVALIDARG;
    return ForPeer(child, [&](Peer& peer) {
      window_.FocusForReaders(peer);
      return S_OK;
    });
  }

  STDMETHOD(accLocation)
  (LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override {
    if (IsSelf(child)) {
      return PassingAccessible::accLocation(left, top, width, height, child);
    }
    return ForPeer(child, [&](Peer& peer) {
      const RECT& area = peer.SeenArea();
      POINT corner{area.left, area.top};
      ::ClientToScreen(window_.Native(), &corner);
      *left = corner.x;
      *top = corner.y;
      *width = area.right - area.left;
      *height = area.bottom - area.top;
      return S_OK;
    });
  }

  // The next ones are found by their numbers.
  STDMETHOD(accNavigate)(LONG direction, VARIANT start, VARIANT* end) override {
    const bool is_inward = direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD;
    if (IsSelf(start) && !is_inward) return PassingAccessible::accNavigate(direction, start, end);
    end->vt = VT_EMPTY;
    return Guarded([&] {
      const auto last = static_cast<LONG>(window_.Peers().size());
      LONG wanted = 0;
      if (is_inward) {
        wanted = direction == NAVDIR_FIRSTCHILD ? 1 : last;
      } else if (direction == NAVDIR_NEXT || direction == NAVDIR_PREVIOUS) {
        wanted = start.lVal + (direction == NAVDIR_NEXT ? 1 : -1);
      }
      if (wanted < 1 || wanted > last) return S_FALSE;
      return GiveChild(window_.Peers()[static_cast<std::size_t>(wanted - 1)].get(), end);
    });
  }

  STDMETHOD(accHitTest)(LONG left, LONG top, VARIANT* child) override {
    child->vt = VT_EMPTY;
    return Guarded([&] {
      POINT at{left, top};
      ::ScreenToClient(window_.Native(), &at);
      RECT client{};
      ::GetClientRect(window_.Native(), &client);
      if (::PtInRect(&client, at) == 0) return S_FALSE;
      Peer* found = window_.At(at);
      return found == nullptr ? Give(CHILDID_SELF, child) : GiveChild(found, child);
    });
  }

 private:
  std::wstring NameOf(Peer& peer) const { return ToShown(window_.NameForReaders(peer)); }

  Peer* PeerAt(const VARIANT& child) const {
    const auto& peers = window_.Peers();
    const bool is_one =
        child.vt == VT_I4 && child.lVal >= 1 && child.lVal <= static_cast<LONG>(peers.size());
    return is_one ? peers[static_cast<std::size_t>(child.lVal - 1)].get() : nullptr;
  }

  template <class Answer>
  HRESULT ForPeer(const VARIANT& child, Answer answer) const {
    return Guarded([&]() -> HRESULT {
      Peer* peer = PeerAt(child);
      return peer == nullptr ? E_INVALIDARG : answer(*peer);
    });
  }
  template <class Answer>
  HRESULT ForDrawn(const VARIANT& child, Answer answer) const {
    return ForPeer(child, [&](Peer& peer) -> HRESULT {
      auto* drawn = dynamic_cast<DrawnPeer*>(&peer);
      return drawn == nullptr ? DISP_E_MEMBERNOTFOUND : answer(*drawn);
    });
  }

  static HRESULT ObjectOf(const NativePeer& native, Held<IDispatch>& object) {
    return ::AccessibleObjectFromWindow(native.Native(), static_cast<DWORD>(OBJID_WINDOW),
                                        IID_IDispatch, object.Place());
  }

  HRESULT GiveChild(Peer* peer, VARIANT* child) const {
    if (auto* native = dynamic_cast<NativePeer*>(peer)) {
      Held<IDispatch> object;
      const HRESULT status = ObjectOf(*native, object);
      return FAILED(status) ? status : Give(object, child);
    }
    return peer == nullptr ? S_FALSE : Give(window_.NumberForReaders(*peer), child);
  }

  LONG StateOf(Peer& peer) const {
    LONG state = 0;
    if (!peer.IsShown()) state |= STATE_SYSTEM_INVISIBLE;
    if (!peer.IsUsable()) state |= STATE_SYSTEM_UNAVAILABLE;
    if (peer.Record().TakesFocus()) state |= STATE_SYSTEM_FOCUSABLE;
    if (window_.Record().Focused() == &peer.Record()) state |= STATE_SYSTEM_FOCUSED;
    if (peer.RoleForReaders() == ROLE_SYSTEM_LINK) state |= STATE_SYSTEM_LINKED;
    auto* drawn = dynamic_cast<DrawnPeer*>(&peer);
    if (drawn == nullptr) return state;
    const AccessibleState own = drawn->StateForReaders();
    if (own.checked.value_or(false)) state |= STATE_SYSTEM_CHECKED;
    if (own.pressed) state |= STATE_SYSTEM_PRESSED;
    if (!drawn->CanBePressed()) state |= STATE_SYSTEM_READONLY;
    return state;
  }

  static std::wstring ActionOf(const DrawnPeer& peer) {
    if (!peer.CanBePressed() || !peer.IsUsable()) return {};
    if (peer.RoleForReaders() == ROLE_SYSTEM_LINK) return L"Jump";
    const auto checked = peer.StateForReaders().checked;
    return !checked ? L"Press" : *checked ? L"Uncheck" : L"Check";
  }
};

class NativeAccessible final : public PassingAccessible {
 public:
  NativeAccessible(WindowsWindow& window, NativePeer& peer)
      : PassingAccessible(window), peer_(peer) {}

  STDMETHOD(get_accName)(VARIANT child, BSTR* name) override {
    if (!IsSelf(child)) return PassingAccessible::get_accName(child, name);
    return Guarded([&] { return Give(ToShown(window_.NameForReaders(peer_)), name); });
  }
  STDMETHOD(get_accRole)(VARIANT child, VARIANT* role) override {
    if (!IsSelf(child)) return PassingAccessible::get_accRole(child, role);
    return Guarded([&] { return Give(peer_.RoleForReaders(), role); });
  }
  STDMETHOD(get_accValue)(VARIANT child, BSTR* value) override {
    *value = nullptr;
    return Guarded([&] {
      // A password is nobody's to read.
      const auto* box = dynamic_cast<const TextBox*>(&peer_.Record());
      if (box != nullptr && box->Kind == TextKind::kPassword) return E_ACCESSDENIED;
      return PassingAccessible::get_accValue(child, value);
    });
  }

 private:
  NativePeer& peer_;
};

#pragma GCC diagnostic pop

// `object` comes with one reference, which is given up.
LRESULT Answer(PassingAccessible* object, HWND window, WPARAM flags) {
  LRESULT answer = 0;
  if (object->Wrap(window)) {
    answer = ::LresultFromObject(__uuidof(IAccessible), flags, static_cast<IAccessible*>(object));
  }
  object->Release();
  return answer;
}

}  // namespace

bool WantsClientObject(LPARAM object) {
  // Its upper half means nothing.
  return static_cast<LONG>(object) == OBJID_CLIENT;
}

LRESULT SceneForReaders(WindowsWindow& window, WPARAM flags) {
  return Answer(new SceneAccessible(window), window.Native(), flags);
}

LRESULT NativeForReaders(WindowsWindow& window, NativePeer& peer, HWND native, WPARAM flags) {
  return Answer(new NativeAccessible(window, peer), native, flags);
}

}  // namespace tarnvale
