// A COM object whose members are called by name alone, as Outlook's objects and Visual Basic's collections
// are: each kind states its members in one table. Arguments come by position; names for them are refused.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "core/Variant.h"
#include "windows/com/ServerObject.h"

namespace vexa::windows {

/// The arguments of a call, in their declared order, counted from 0.
class CallArguments {
 public:
  explicit CallArguments(const DISPPARAMS& parameters) : parameters_(parameters) {}

  size_t Count() const { return parameters_.cArgs; }
  /// Not given, or left out with its place kept.
  bool IsMissing(size_t index) const;
  /// Error 13 when it cannot be read as such, 6 for a number that does not fit.
  std::string Text(size_t index) const;
  int32_t Number(size_t index) const;

 private:
  VARIANT& At(size_t index) const { return parameters_.rgvarg[parameters_.cArgs - 1 - index]; }
  const DISPPARAMS& parameters_;
};

void GiveObject(ComPtr<IDispatch> object, VARIANT& result);

/// The end of a failed late-bound call: the error object that was left for `code` goes into `exception`. What
/// the call then returns.
HRESULT FillException(HRESULT code, EXCEPINFO* exception);

/// For Each over things counted from 1. It reads them as it goes.
ComPtr<IUnknown> MakeEnumerator(std::function<int32_t()> count,
                                std::function<void(int32_t position, VARIANT& result)> item);

/// What is the same for objects of all kinds.
class NamedObjectBase : public ServerObject<IDispatch> {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 protected:
  using ServerObject::ServerObject;

  struct MemberShape {
    const wchar_t* name;
    DISPID id;
    size_t least, most;     // number of arguments
    bool assigned = false;  // a property that is assigned its one argument, not called
  };
  virtual size_t MemberCount() const = 0;
  virtual const MemberShape& ShapeOf(size_t index) const = 0;
  virtual void Call(size_t index, const CallArguments& arguments, VARIANT& result) = 0;

 private:
  /// "Folders(1)": the arguments are meant for what a member without any answers.
  HRESULT InvokeDefault(size_t index, DISPPARAMS& parameters, VARIANT* result, EXCEPINFO* exception);
};

/// `Self` has a static function Members() that gives its table.
template <typename Self>
class NamedObject : public NamedObjectBase {
 protected:
  using NamedObjectBase::NamedObjectBase;

  struct Member {
    MemberShape shape;
    void (Self::*call)(const CallArguments& arguments, VARIANT& result);
  };

  size_t MemberCount() const override { return Table().size(); }
  const MemberShape& ShapeOf(size_t index) const override { return Table()[index].shape; }
  void Call(size_t index, const CallArguments& arguments, VARIANT& result) override {
    (static_cast<Self&>(*this).*Table()[index].call)(arguments, result);
  }

 private:
  static std::span<const Member> Table() { return Self::Members(); }
};

}  // namespace vexa::windows
