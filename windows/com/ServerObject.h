// A COM object that is handed out, as a rule over one object of the contracts. NamedObject stands on it and
// answers calls by name alone.
#pragma once

#include <memory>
#include <utility>

#include "windows/com/CountedObject.h"

namespace vexa::windows {

/// Finds the contract's object again when a COM object of this module comes back as an argument. The number
/// is made at run time, a different one in each module of the process: what the objects of another module
/// hold is none of this one's business.
class IContractObject : public IUnknown {
 public:
  static const IID& Id();
  virtual ObjectRef STDMETHODCALLTYPE Contract() = 0;
};

template <>
inline const IID& IdOf<IContractObject>() {
  return IContractObject::Id();
}

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
class ServerObject : public CountedObject<Interface, IContractObject, ISupportErrorInfo> {
 public:
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID interfaceId) override {
    return interfaceId == __uuidof(Interface) ? S_OK : S_FALSE;
  }

  ObjectRef STDMETHODCALLTYPE Contract() override { return contract_; }

 protected:
  explicit ServerObject(ObjectRef contract) : contract_(std::move(contract)) {}

  template <typename Body>
  static HRESULT Run(Body&& body) noexcept {
    return Guarded(__uuidof(Interface), std::forward<Body>(body));
  }

 private:
  ObjectRef contract_;
};

}  // namespace vexa::windows
