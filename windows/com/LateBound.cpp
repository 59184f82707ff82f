#include "windows/com/LateBound.h"

#include <vector>

#include "core/Numbers.h"

namespace vexa::windows {
namespace {

constexpr int32_t NoAutomation = 430;  // "Class does not support Automation"

/// Marks an argument that is left out on its way through a Variant.
class Missing final : public Object {};

bool IsMissing(const Variant& value) {
  return dynamic_cast<const Missing*>(value.ToObject().get()) != nullptr;
}

/// Arguments as IDispatch wants them, last one first.
class Arguments {
 public:
  explicit Arguments(std::initializer_list<Variant> values) : variants_(values.size()) {
    size_t position = values.size();
    for (VARIANT& variant : variants_) VariantInit(&variant);
    try {
      for (const Variant& value : values) {
        VARIANT& variant = variants_[--position];
        if (IsMissing(value)) {
          variant.vt = VT_ERROR;
          variant.scode = DISP_E_PARAMNOTFOUND;
        } else {
          ToVariant(value, variant);
        }
      }
    } catch (...) {
      Clear();
      throw;
    }
  }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments() { Clear(); }

  DISPPARAMS Parameters() {
    return {variants_.empty() ? nullptr : variants_.data(), nullptr, static_cast<UINT>(variants_.size()), 0};
  }

 private:
  void Clear() {
    for (VARIANT& variant : variants_) VariantClear(&variant);
  }
  std::vector<VARIANT> variants_;
};

}  // namespace

LateBound::LateBound(const ComPtr<IUnknown>& object) {
  if (!object) throw MakeError(ErrorNumber::ObjectNotSet);
  object_ = object.As<IDispatch>();
  if (!object_) throw Error(NoAutomation, "Class does not support Automation", "VexaControls");
}

Variant LateBound::Call(const wchar_t* member, std::initializer_list<Variant> arguments) {
  OwnedVariant result;
  Invoke(member, arguments, result.Get());
  return FromVariant(result.Get());
}

ComPtr<IUnknown> LateBound::CallForObject(const wchar_t* member, std::initializer_list<Variant> arguments) {
  OwnedVariant result;
  Invoke(member, arguments, result.Get());
  VARIANT& value = result.Get();
  if (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) return ComPtr<IUnknown>(value.punkVal);
  if (value.vt == VT_EMPTY || value.vt == VT_NULL) return nullptr;
  throw MakeError(ErrorNumber::TypeMismatch);
}

int32_t LateBound::CallForNumber(const wchar_t* member, std::initializer_list<Variant> arguments) {
  OwnedVariant result;
  Invoke(member, arguments, result.Get());
  OwnedVariant number;
  if (FAILED(VariantChangeType(&number.Get(), &result.Get(), 0, VT_R8)))
    throw MakeError(ErrorNumber::TypeMismatch);
  return ToInt32(number.Get().dblVal);
}

std::string LateBound::CallForText(const wchar_t* member, std::initializer_list<Variant> arguments) {
  return Call(member, arguments).ToText();
}

void LateBound::Put(const wchar_t* member, const Variant& value) {
  const DISPID id = IdOf(member);
  Arguments packed({value});
  DISPPARAMS parameters = packed.Parameters();
  DISPID assigned = DISPID_PROPERTYPUT;  // the name of the value among the arguments
  parameters.rgdispidNamedArgs = &assigned;
  parameters.cNamedArgs = 1;
  Invoke(id, DISPATCH_PROPERTYPUT, parameters, nullptr);
}

void LateBound::Invoke(const wchar_t* member, std::initializer_list<Variant> arguments, VARIANT& result) {
  const DISPID id = IdOf(member);
  Arguments packed(arguments);
  DISPPARAMS parameters = packed.Parameters();
  Invoke(id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, &result);
}

void LateBound::Invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result) {
  EXCEPINFO exception{};
  UINT wrongArgument = 0;
  const ComPtr<IDispatch> object = object_;
  const HRESULT outcome = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                                         &exception, &wrongArgument);
  CheckInvoke(outcome, exception);
}

DISPID LateBound::IdOf(const wchar_t* member) {
  const auto known = ids_.find(member);
  if (known != ids_.end()) return known->second;
  std::wstring name = member;  // GetIDsOfNames takes no constant text
  LPOLESTR names = name.data();
  DISPID id = DISPID_UNKNOWN;
  windows::Call(object_, &IDispatch::GetIDsOfNames, IID_NULL, &names, UINT{1}, LCID{LOCALE_USER_DEFAULT},
                &id);
  ids_.emplace(std::move(name), id);
  return id;
}

Variant MissingArgument() { return ObjectRef(std::make_shared<Missing>()); }

}  // namespace vexa::windows
