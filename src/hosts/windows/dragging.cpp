#include "hosts/windows/dragging.h"

#include <ole2.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "hosts/windows/com.h"
#include "hosts/windows/keys.h"
#include "hosts/windows/wide.h"
#include "ui/input_rules.h"

namespace tarnvale {
namespace {

constexpr DWORD kEffects = DROPEFFECT_COPY | DROPEFFECT_MOVE;
static_assert(DROPEFFECT_COPY == kCopies && DROPEFFECT_MOVE == kMoves);

FORMATETC InMemory(CLIPFORMAT format) {
  return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

/// What an object of data gives in one format; `Use` gets its memory and the size in bytes.
template <class Use>
bool Read(IDataObject& data, CLIPFORMAT format, Use use) {
  FORMATETC wanted = InMemory(format);
  STGMEDIUM medium{};
  if (data.GetData(&wanted, &medium) != S_OK) return false;
  const void* held = medium.tymed == TYMED_HGLOBAL ? ::GlobalLock(medium.hGlobal) : nullptr;
  if (held != nullptr) {
    use(medium.hGlobal, held, ::GlobalSize(medium.hGlobal));
    ::GlobalUnlock(medium.hGlobal);
  }
  ::ReleaseStgMedium(&medium);
  return held != nullptr;
}

std::string TextIn(IDataObject& data, const ProgramPath& program_path) {
  std::vector<Path> files;
  Read(data, CF_HDROP, [&](HGLOBAL drop, const void*, SIZE_T) {
    files = DroppedPaths(static_cast<HDROP>(drop), program_path);
  });
  std::wstring text;
  Read(data, CF_UNICODETEXT, [&](HGLOBAL, const void* held, SIZE_T size) {
    text.assign(static_cast<const wchar_t*>(held), size / sizeof(wchar_t));
    text.resize(std::min(text.size(), text.find(L'\0')));
  });
  return DraggedText(Narrow(text), files);
}

// Ctrl copies and Shift moves, as everywhere in the system.
int ProposedEffect(DWORD keys, int allowed) {
  const int wanted = (keys & MK_CONTROL) != 0 ? kCopies
                     : (keys & MK_SHIFT) != 0 ? kMoves
                                              : kCopies | kMoves;
  return AllowedEffect(wanted, allowed);
}

// The system's interfaces have no virtual destructor: objects delete themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A text to be dragged.
class TextData final : public Counted<IDataObject> {
 public:
  explicit TextData(std::wstring text) : text_(std::move(text)) {}

  STDMETHOD(GetData)(FORMATETC* wanted, STGMEDIUM* medium) override {
    const HRESULT known = QueryGetData(wanted);
    if (known != S_OK) return known;
    const SIZE_T size = (text_.size() + 1) * sizeof(wchar_t);
    HGLOBAL const memory = ::GlobalAlloc(GMEM_MOVEABLE, size);
    void* place = memory == nullptr ? nullptr : ::GlobalLock(memory);
    if (place == nullptr) return E_OUTOFMEMORY;
    std::memcpy(place, text_.c_str(), size);
    ::GlobalUnlock(memory);
    *medium = {};
    medium->tymed = TYMED_HGLOBAL;
    medium->hGlobal = memory;
    return S_OK;
  }
  STDMETHOD(QueryGetData)(FORMATETC* wanted) override {
    const bool is_known = wanted->cfFormat == CF_UNICODETEXT &&
                          (wanted->tymed & TYMED_HGLOBAL) != 0 &&
                          wanted->dwAspect == DVASPECT_CONTENT;
    return is_known ? S_OK : DV_E_FORMATETC;
  }
  STDMETHOD(EnumFormatEtc)(DWORD direction, IEnumFORMATETC** formats) override {
    *formats = nullptr;
    const FORMATETC text = InMemory(CF_UNICODETEXT);
    return direction == DATADIR_GET ? ::SHCreateStdEnumFmtEtc(1, &text, formats) : E_NOTIMPL;
  }
  STDMETHOD(GetDataHere)(FORMATETC*, STGMEDIUM*) override { return DV_E_FORMATETC; }
  STDMETHOD(GetCanonicalFormatEtc)(FORMATETC*, FORMATETC* same) override {
    same->ptd = nullptr;
    return E_NOTIMPL;
  }
  STDMETHOD(SetData)(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  STDMETHOD(DAdvise)(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
    return OLE_E_ADVISENOTSUPPORTED;
  }
  STDMETHOD(DUnadvise)(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
  STDMETHOD(EnumDAdvise)(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

 private:
  const std::wstring text_;
};

/// Where a drag comes from: it ends with the button, or is given up with Escape.
class Source final : public Counted<IDropSource> {
 public:
  explicit Source(std::function<void(int effect)> feedback) : feedback_(std::move(feedback)) {}

  STDMETHOD(QueryContinueDrag)(BOOL is_escape, DWORD keys) override {
    if (is_escape != FALSE) return DRAGDROP_S_CANCEL;
    return HeldButton(keys) == MouseButton::kNone ? DRAGDROP_S_DROP : S_OK;
  }
  STDMETHOD(GiveFeedback)(DWORD effect) override {
    const int now = static_cast<int>(effect & kEffects);
    if (std::exchange(effect_, now) != now) feedback_(now);
    return DRAGDROP_S_USEDEFAULTCURSORS;
  }

 private:
  const std::function<void(int effect)> feedback_;
  int effect_ = 0;
};

}  // namespace

class DropArea::Target final : public Counted<IDropTarget> {
 public:
  Target(const ProgramPath& program_path, Answer answer)
      : program_path_(program_path), answer_(std::move(answer)) {}

  STDMETHOD(DragEnter)(IDataObject* data, DWORD keys, POINTL at, DWORD* effect) override {
    if (answer_) text_ = TextIn(*data, program_path_);
    return DragOver(keys, at, effect);
  }
  STDMETHOD(DragOver)(DWORD keys, POINTL at, DWORD* effect) override {
    // It is released at the drop.
    button_ = HeldButton(keys);
    return Step(keys, at, effect, false);
  }
  STDMETHOD(DragLeave)() override {
    text_.clear();
    return S_OK;
  }
  STDMETHOD(Drop)(IDataObject* data, DWORD keys, POINTL at, DWORD* effect) override {
    if (answer_) text_ = TextIn(*data, program_path_);
    const HRESULT result = Step(keys, at, effect, true);
    text_.clear();
    return result;
  }

  /// The window is gone; the system may still hold the object.
  void Close() { answer_ = nullptr; }

 private:
  HRESULT Step(DWORD keys, POINTL at, DWORD* effect, bool is_drop) {
    const int allowed = static_cast<int>(*effect & kEffects);
    const DragStep step{
        .data = text_, .effect = ProposedEffect(keys, allowed), .button = button_, .at = {}};
    // It may be closed while it answers.
    const Answer answer = answer_;
    *effect = answer ? static_cast<DWORD>(answer(step, {at.x, at.y}, allowed, is_drop))
                     : static_cast<DWORD>(DROPEFFECT_NONE);
    return S_OK;
  }

  const ProgramPath& program_path_;
  Answer answer_;
  std::string text_;
  MouseButton button_ = MouseButton::kNone;
};

#pragma GCC diagnostic pop

std::vector<Path> DroppedPaths(HDROP drop, const ProgramPath& program_path) {
  std::vector<Path> paths;
  const UINT count = ::DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    std::wstring native(::DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
    native.resize(::DragQueryFileW(drop, i, native.data(), static_cast<UINT>(native.size())));
    Path path = program_path(native);
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

Ole::Ole() : is_begun_(SUCCEEDED(::OleInitialize(nullptr))) {}

Ole::~Ole() {
  if (is_begun_) ::OleUninitialize();
}

DropArea::DropArea(HWND window, const ProgramPath& program_path, Answer answer)
    : window_(window), target_(new Target(program_path, std::move(answer))) {
  ::RegisterDragDrop(window_, target_);
}

DropArea::~DropArea() {
  ::RevokeDragDrop(window_);
  target_->Close();
  target_->Release();
}

int DragTextAway(const std::string& text, std::function<void(int effect)> feedback) {
  const Ole ole;
  const Held<TextData> data(new TextData(Wide(text)));
  const Held<Source> source(new Source(std::move(feedback)));
  DWORD effect = DROPEFFECT_NONE;
  const HRESULT result = ::DoDragDrop(data.Get(), source.Get(), kEffects, &effect);
  return result == DRAGDROP_S_DROP ? static_cast<int>(effect & kEffects) : 0;
}

}  // namespace tarnvale
