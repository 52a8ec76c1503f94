// Objects of the system's (COM): references to them, and the base of our own.
#pragma once

#include "hosts/windows/system_headers.h"

#include <utility>

namespace tarnvale {

/// A reference to an object of the system's.
template <class Object>
class Held {
 public:
  Held() = default;
  /// Takes the reference over.
  explicit Held(Object* object) : object_(object) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    if (object_ != nullptr) object_->Release();
  }
  Object* operator->() const { return object_; }
  Object* Get() const { return object_; }
  void** Place() { return reinterpret_cast<void**>(&object_); }
  Object* Take() { return std::exchange(object_, nullptr); }

 private:
  Object* object_ = nullptr;
};

// The system's interfaces have no virtual destructor: objects delete themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An object for the system, which may hold it for longer than its maker is there. `Bases`:
/// what `Interface` inherits from, as it is asked for them too.
template <class Interface, class... Bases>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  STDMETHOD(QueryInterface)(REFIID id, void** place) override {
    *place = nullptr;
    if (id != IID_IUnknown && id != __uuidof(Interface) && (... && (id != __uuidof(Bases)))) {
      return E_NOINTERFACE;
    }
    AddRef();
    *place = static_cast<Interface*>(this);
    return S_OK;
  }
  STDMETHOD_(ULONG, AddRef)() override { return ++references_; }
  STDMETHOD_(ULONG, Release)() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  ULONG references_ = 1;
};

#pragma GCC diagnostic pop

}  // namespace tarnvale
