// The IUnknown of every COM object that is made here: references are counted, the first interface of the list
// is the object's identity, and each answers for those that it stands on. An object belongs to its references
// and ends with the last. Living objects are counted: as long as there are any, the module stays loaded, and
// a host can tell that everything was released.
#pragma once

#include <windows.h>
// windows.h first
#include <oleidl.h>

#include <atomic>
#include <tuple>
#include <type_traits>
#include <utility>

#include "windows/com/Com.h"

namespace vexa::windows {

/// How many COM objects of this module there are.
class LivingObjects {
 public:
  LivingObjects() { ++count_; }
  LivingObjects(const LivingObjects&) = delete;
  LivingObjects& operator=(const LivingObjects&) = delete;
  ~LivingObjects() { --count_; }
  static LONG Count() { return count_; }

 private:
  static inline std::atomic<LONG> count_ = 0;
};

/// The number that an interface is asked for by.
template <typename Interface>
const IID& IdOf() {
  return __uuidof(Interface);
}

template <typename... Interfaces>
class CountedObject : public Interfaces... {
 public:
  CountedObject(const CountedObject&) = delete;
  CountedObject& operator=(const CountedObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = Find(interfaceId);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left != 0) return left;
    // Whoever is called from the destructor may ask for references; they must not destroy twice.
    references_ = 1;
    delete this;
    return 0;
  }

 protected:
  CountedObject() = default;
  virtual ~CountedObject() = default;

  /// The interface of this number, without a reference; null when there is none.
  virtual void* Find(REFIID interfaceId) {
    using Identity = std::tuple_element_t<0, std::tuple<Interfaces...>>;
    if (interfaceId == IID_IUnknown) return static_cast<Identity*>(this);
    void* found = nullptr;
    const auto look = [&](auto* candidate) {
      if (found == nullptr && IsOrStandsOn(candidate, interfaceId)) found = candidate;
    };
    (look(static_cast<Interfaces*>(this)), ...);
    return found;
  }

 private:
  template <typename Interface>
  static bool IsOrStandsOn(const Interface* /*candidate*/, REFIID id) {
    return id == IdOf<Interface>() ||
           IsBase<Interface, IDispatch, IOleWindow, IOleInPlaceUIWindow, IViewObject, IPersist>(id);
  }
  template <typename Interface, typename... Bases>
  static bool IsBase(REFIID id) {
    return ((std::is_base_of_v<Bases, Interface> && id == IdOf<Bases>()) || ...);
  }

  std::atomic<ULONG> references_ = 1;
  LivingObjects living_;
};

/// A new object, owned; `Made` is what the owner sees of it.
template <typename Made, typename Class, typename... Arguments>
ComPtr<Made> MakeObject(Arguments&&... arguments) {
  return ComPtr<Made>::Attach(new Class(std::forward<Arguments>(arguments)...));
}

}  // namespace vexa::windows
