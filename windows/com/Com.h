// The border to COM: owners for what COM hands out, and the two directions in which errors cross. Calls on
// outside objects go through Call, which turns a failure with the object's error information into an Error;
// calls from outside run in Guarded, which turns an Error into an HRESULT with error information. Nothing
// else crosses.
#pragma once

#include <windows.h>
// windows.h first
#include <oaidl.h>
#include <ocidl.h>

#include <string>
#include <string_view>
#include <utility>

#include "core/Error.h"
#include "core/Variant.h"

namespace vexa::windows {

/// Owner of one reference to a COM object.
template <typename Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  /// Shares: adds a reference.
  explicit ComPtr(Interface* pointer) : pointer_(pointer) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() { Reset(); }

  /// Takes over a reference that the caller owns.
  static ComPtr Attach(Interface* pointer) {
    ComPtr owner;
    owner.pointer_ = pointer;
    return owner;
  }
  Interface* Detach() { return std::exchange(pointer_, nullptr); }
  void Reset() {
    if (Interface* former = std::exchange(pointer_, nullptr)) former->Release();
  }
  /// For out-parameters; what was held is released first.
  Interface** Receive() {
    Reset();
    return &pointer_;
  }
  Interface* Get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  friend bool operator==(const ComPtr& pointer, std::nullptr_t) { return pointer.pointer_ == nullptr; }

  /// The object's other interface, or null when it has none.
  template <typename Other>
  ComPtr<Other> As() const {
    ComPtr<Other> other;
    if (pointer_ != nullptr) {
      void* found = nullptr;
      if (SUCCEEDED(pointer_->QueryInterface(__uuidof(Other), &found))) {
        other = ComPtr<Other>::Attach(static_cast<Other*>(found));
      }
    }
    return other;
  }

 private:
  Interface* pointer_ = nullptr;
};

/// Owner of a BSTR.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::string_view utf8);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  BSTR Get() const { return text_; }
  BSTR Detach() { return std::exchange(text_, nullptr); }
  BSTR* Receive() {
    SysFreeString(std::exchange(text_, nullptr));
    return &text_;
  }
  std::string Text() const;

 private:
  BSTR text_ = nullptr;
};

/// A BSTR's text; a null BSTR is empty.
std::string TextOf(BSTR text);

/// Owner of a VARIANT's content.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(&value_); }

  VARIANT& Get() { return value_; }
  const VARIANT& Get() const { return value_; }
  VARIANT* Receive() {
    VariantClear(&value_);
    return &value_;
  }

 private:
  VARIANT value_;
};

inline VARIANT_BOOL ToVariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

/// The object as the library's contracts carry it, and back.
class ComObject : public Object {
 public:
  explicit ComObject(ComPtr<IUnknown> object) : object_(std::move(object)) {}
  const ComPtr<IUnknown>& Unknown() const { return object_; }

 private:
  ComPtr<IUnknown> object_;
};

/// A library value made of a VARIANT, following references; objects become a ComObject. Error 13 for what
/// the library has no type for (arrays and the like).
Variant FromVariant(VARIANT& value);
/// Fills an empty VARIANT. Error 13 for an object that did not come from COM.
void ToVariant(const Variant& value, VARIANT& result);

/// Throws the Error for a failed system function: the number, and what Windows says about the code.
void Check(HRESULT result);
/// Throws the Error for a call on `object` that failed. Description, source, help file and context come from
/// the thread's error information if the object says that it leaves some for this interface; otherwise the
/// information there, if any, belongs to another call. `object` may be null.
void Check(HRESULT result, IUnknown* object, const IID& interfaceId);
template <typename Interface>
void Check(HRESULT result, const ComPtr<Interface>& object) {
  Check(result, object.Get(), __uuidof(Interface));
}
/// Throws the Error for a failed late-bound call, which brings its own exception record. A record without a
/// number leaves the number to `result`.
void CheckInvoke(HRESULT result, EXCEPINFO& exception);

/// Calls a member of an outside object, which stays alive until the call has ended. Throws the Error when the
/// call fails.
template <typename Interface, typename... Parameters, typename... Arguments>
void Call(ComPtr<Interface> object, HRESULT (STDMETHODCALLTYPE Interface::*member)(Parameters...),
          const Arguments&... arguments) {
  Check((object.Get()->*member)(arguments...), object);
}

/// Leaves `error` as this thread's error object and gives its HRESULT: 0x800A0000 + number for numbers of 16
/// bits, the number itself when it is a failure code.
HRESULT Report(const Error& error, const IID& interfaceId) noexcept;

/// Runs a call from outside.
template <typename Body>
HRESULT Guarded(const IID& interfaceId, Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
    return S_OK;
  } catch (...) {
    return Report(CurrentError(), interfaceId);
  }
}

/// Error 5 for a null pointer where the caller owes a place for the answer.
template <typename Pointer>
void RequirePointer(Pointer* pointer) {
  if (pointer == nullptr) throw MakeError(ErrorNumber::InvalidProcedureCall);
}

}  // namespace vexa::windows
