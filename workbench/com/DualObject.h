// A COM object that implements a dual interface of the type library: bound by position through its vtable,
// by name through the library's description of it.
#pragma once

#include "windows/com/ServerObject.h"

namespace vexa::workbench {

template <typename Interface>
class DualObject : public windows::ServerObject<Interface> {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    *info = windows::ComPtr<ITypeInfo>(info_).Detach();
    return S_OK;
  }
  STDMETHODIMP GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                             DISPID* ids) override {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    return DispGetIDsOfNames(info_.Get(), names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override {
    if (parameters == nullptr) return E_POINTER;
    SetErrorInfo(0, nullptr);  // one left from before would become this call's
    return DispInvoke(static_cast<Interface*>(this), info_.Get(), member, flags, parameters, result,
                      exception, wrongArgument);
  }

 protected:
  DualObject(ObjectRef contract, ITypeLib& library) : windows::ServerObject<Interface>(std::move(contract)) {
    windows::Check(library.GetTypeInfoOfGuid(__uuidof(Interface), info_.Receive()));
  }

 private:
  windows::ComPtr<ITypeInfo> info_;
};

}  // namespace vexa::workbench
