#include "windows/com/NamedObject.h"

#include <algorithm>
#include <cstring>

#include "core/Numbers.h"

namespace vexa::windows {
namespace {

class Enumerator final : public ServerObject<IEnumVARIANT> {
 public:
  using Count = std::function<int32_t()>;
  using Item = std::function<void(int32_t, VARIANT&)>;

  Enumerator(Count count, Item item, int32_t next = 1)
      : ServerObject(nullptr), count_(std::move(count)), item_(std::move(item)), next_(next) {}

  STDMETHODIMP Next(ULONG wanted, VARIANT* items, ULONG* fetched) override {
    ULONG given = 0;
    const HRESULT outcome = Run([&] {
      RequirePointer(items);
      for (; given < wanted && next_ <= count_(); ++given, ++next_) {
        VariantInit(&items[given]);
        item_(next_, items[given]);
      }
    });
    if (fetched != nullptr) *fetched = given;
    if (FAILED(outcome)) return outcome;
    return given == wanted ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) override {
    HRESULT reached = S_OK;
    const HRESULT outcome = Run([&] {
      const int64_t target = int64_t{next_} + count;
      const int64_t end = int64_t{count_()} + 1;
      if (target > end) reached = S_FALSE;
      next_ = static_cast<int32_t>(std::min(target, end));
    });
    return FAILED(outcome) ? outcome : reached;
  }
  STDMETHODIMP Reset() override {
    next_ = 1;
    return S_OK;
  }
  STDMETHODIMP Clone(IEnumVARIANT** copy) override {
    return Run([&] {
      RequirePointer(copy);
      *copy = MakeObject<IEnumVARIANT, Enumerator>(count_, item_, next_).Detach();
    });
  }

 private:
  Count count_;
  Item item_;
  int32_t next_;
};

bool EqualsIgnoringCase(const wchar_t* one, const wchar_t* other) {
  return CompareStringOrdinal(one, -1, other, -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

const IID& IContractObject::Id() {
  static const char here = 0;
  static const IID id = [] {
    IID made{0x1D7F93F5, 0x3B5B, 0x4C0B, {}};
    const auto address = reinterpret_cast<uintptr_t>(&here);
    std::memcpy(made.Data4, &address, sizeof address);
    return made;
  }();
  return id;
}

ObjectRef ObjectBehind(IUnknown* object) {
  if (object == nullptr) return nullptr;
  void* found = nullptr;
  if (SUCCEEDED(object->QueryInterface(IContractObject::Id(), &found))) {
    return ComPtr<IContractObject>::Attach(static_cast<IContractObject*>(found))->Contract();
  }
  return std::make_shared<ComObject>(ComPtr<IUnknown>(object));
}

bool CallArguments::IsMissing(size_t index) const {
  if (index >= Count()) return true;
  const VARIANT& value = At(index);
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

std::string CallArguments::Text(size_t index) const {
  if (IsMissing(index)) throw MakeError(ErrorNumber::InvalidProcedureCall);
  return FromVariant(At(index)).ToText();
}

int32_t CallArguments::Number(size_t index) const {
  if (IsMissing(index)) throw MakeError(ErrorNumber::InvalidProcedureCall);
  OwnedVariant number;
  if (FAILED(VariantChangeType(&number.Get(), &At(index), 0, VT_R8)))
    throw MakeError(ErrorNumber::TypeMismatch);
  return ToInt32(number.Get().dblVal);
}

void GiveObject(ComPtr<IDispatch> object, VARIANT& result) {
  result.vt = VT_DISPATCH;
  result.pdispVal = object.Detach();
}

ComPtr<IUnknown> MakeEnumerator(std::function<int32_t()> count, std::function<void(int32_t, VARIANT&)> item) {
  return MakeObject<IEnumVARIANT, Enumerator>(std::move(count), std::move(item)).As<IUnknown>();
}

HRESULT FillException(HRESULT code, EXCEPINFO* exception) {
  if (exception == nullptr) return code;
  *exception = {};
  exception->scode = code;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) == S_OK && info) {
    // What cannot be read stays empty; the code says what matters.
    info->GetDescription(&exception->bstrDescription);
    info->GetSource(&exception->bstrSource);
    info->GetHelpFile(&exception->bstrHelpFile);
    info->GetHelpContext(&exception->dwHelpContext);
  }
  return DISP_E_EXCEPTION;
}

STDMETHODIMP NamedObjectBase::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP NamedObjectBase::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return DISP_E_BADINDEX;
}

STDMETHODIMP NamedObjectBase::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                            DISPID* ids) {
  if (names == nullptr || ids == nullptr || count == 0) return E_POINTER;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  for (size_t index = 0; index < MemberCount(); ++index) {
    if (EqualsIgnoringCase(ShapeOf(index).name, names[0])) ids[0] = ShapeOf(index).id;
  }
  // Names behind the first are those of arguments, and these have none.
  return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT NamedObjectBase::InvokeDefault(size_t index, DISPPARAMS& parameters, VARIANT* result,
                                       EXCEPINFO* exception) {
  OwnedVariant answer;
  const DISPPARAMS none{};
  const HRESULT outcome = Run([&] { Call(index, CallArguments(none), answer.Get()); });
  if (FAILED(outcome)) return FillException(outcome, exception);
  if (answer.Get().vt != VT_DISPATCH || answer.Get().pdispVal == nullptr) return DISP_E_BADPARAMCOUNT;
  return answer.Get().pdispVal->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                       DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, result, exception,
                                       nullptr);
}

STDMETHODIMP NamedObjectBase::Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* /*wrongArgument*/) {
  if (parameters == nullptr) return E_POINTER;
  if (result != nullptr) VariantInit(result);
  size_t index = 0;
  while (index < MemberCount() && ShapeOf(index).id != member) ++index;
  if (index == MemberCount()) return DISP_E_MEMBERNOTFOUND;
  const MemberShape& shape = ShapeOf(index);
  // Reading and calling are one: scripts do not tell them apart.
  const WORD fitting = shape.assigned ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  if ((flags & fitting) == 0) return DISP_E_MEMBERNOTFOUND;
  // An assigned value is an argument with a name of its own.
  if (parameters->cNamedArgs != (shape.assigned ? 1 : 0)) return DISP_E_NONAMEDARGS;
  if (shape.most == 0 && parameters->cArgs > 0) return InvokeDefault(index, *parameters, result, exception);
  if (parameters->cArgs < shape.least || parameters->cArgs > shape.most) return DISP_E_BADPARAMCOUNT;
  const HRESULT outcome = Run([&] {
    OwnedVariant answer;
    Call(index, CallArguments(*parameters), answer.Get());
    if (result != nullptr) *result = std::exchange(answer.Get(), VARIANT{});
  });
  return FAILED(outcome) ? FillException(outcome, exception) : S_OK;
}

}  // namespace vexa::windows
