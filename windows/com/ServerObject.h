// What a COM object that is handed out is made of: a counted object, as a rule over one object of the
// contracts. NamedObject stands on it and answers calls by name alone. Living objects are counted: as long as
// there are any, the module stays loaded, and a host can tell that everything was released.
#pragma once

#include <atomic>
#include <memory>
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

/// Finds the contract's object again when a COM object of this module comes back as an argument. The number
/// is made at run time, a different one in each module of the process: what the objects of another module
/// hold is none of this one's business.
class IContractObject : public IUnknown {
 public:
  static const IID& Id();
  virtual ObjectRef STDMETHODCALLTYPE Contract() = 0;
};

/// The contract's object behind a COM object: this module's own, or a wrapper around a foreign object; null
/// for null.
ObjectRef ObjectBehind(IUnknown* object);

/// The same where an object of one kind is expected; error 13 for any other, null for null.
template <typename Contract>
std::shared_ptr<Contract> ContractBehind(IUnknown* object) {
  if (object == nullptr) return nullptr;
  auto found = std::dynamic_pointer_cast<Contract>(ObjectBehind(object));
  if (found == nullptr) throw MakeError(ErrorNumber::TypeMismatch);
  return found;
}

template <typename Interface>
class ServerObject : public Interface, public IContractObject, public ISupportErrorInfo {
 public:
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (interfaceId == IID_IUnknown || interfaceId == __uuidof(Interface) ||
        (std::is_base_of_v<IDispatch, Interface> && interfaceId == IID_IDispatch)) {
      *object = static_cast<Interface*>(this);
    } else if (interfaceId == IContractObject::Id()) {
      *object = static_cast<IContractObject*>(this);
    } else if (interfaceId == IID_ISupportErrorInfo) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) override {
    return interfaceId == __uuidof(Interface) ? S_OK : S_FALSE;
  }

  ObjectRef STDMETHODCALLTYPE Contract() override { return contract_; }

 protected:
  explicit ServerObject(ObjectRef contract) : contract_(std::move(contract)) {}
  virtual ~ServerObject() = default;

  template <typename Body>
  static HRESULT Run(Body&& body) noexcept {
    return Guarded(__uuidof(Interface), std::forward<Body>(body));
  }

 private:
  std::atomic<ULONG> references_ = 1;
  ObjectRef contract_;
  LivingObjects living_;
};

/// A new object, owned; `Made` is what the owner sees of it.
template <typename Made, typename Class, typename... Arguments>
ComPtr<Made> MakeObject(Arguments&&... arguments) {
  return ComPtr<Made>::Attach(new Class(std::forward<Arguments>(arguments)...));
}

}  // namespace vexa::windows
