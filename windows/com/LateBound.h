// An object whose members are called by name through IDispatch: Outlook's object model, which differs
// between versions, and the collections in the add-in's settings. Names are looked up once an object.
#pragma once

#include <initializer_list>
#include <map>
#include <string>

#include "windows/com/Com.h"

namespace vexa::windows {

class LateBound {
 public:
  /// Error 91 for no object, 430 for one that cannot be called by name.
  explicit LateBound(const ComPtr<IUnknown>& object);

  /// Calls a method or reads a property; arguments in their declared order.
  Variant Call(const wchar_t* member, std::initializer_list<Variant> arguments = {});
  /// The same, for a member that answers an object; null when it answers none.
  ComPtr<IUnknown> CallForObject(const wchar_t* member, std::initializer_list<Variant> arguments = {});
  /// The same, for a member that answers a number; a fraction is rounded, error 6 when it does not fit.
  int32_t CallForNumber(const wchar_t* member, std::initializer_list<Variant> arguments = {});
  std::string CallForText(const wchar_t* member, std::initializer_list<Variant> arguments = {});
  /// Assigns a property.
  void Put(const wchar_t* member, const Variant& value);

  const ComPtr<IDispatch>& Dispatch() const { return object_; }

 private:
  void Invoke(const wchar_t* member, std::initializer_list<Variant> arguments, VARIANT& result);
  void Invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result);
  DISPID IdOf(const wchar_t* member);

  ComPtr<IDispatch> object_;
  std::map<std::wstring, DISPID> ids_;
};

/// Stands for an argument that is left out.
Variant MissingArgument();

}  // namespace vexa::windows
