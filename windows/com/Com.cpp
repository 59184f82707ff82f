#include "windows/com/Com.h"

#include <array>
#include <cmath>
#include <limits>

#include "windows/com/Text.h"

namespace vexa::windows {
namespace {

constexpr HRESULT ControlErrorBase = static_cast<HRESULT>(0x800A0000);  // FACILITY_CONTROL

/// Never 0, which is no error.
int32_t NumberOf(HRESULT result) {
  const bool ofControl = HRESULT_FACILITY(result) == FACILITY_CONTROL && HRESULT_CODE(result) != 0;
  return ofControl ? HRESULT_CODE(result) : static_cast<int32_t>(result);
}

HRESULT ResultOf(int32_t number) {
  if (number > 0 && number <= 0xFFFF) return static_cast<HRESULT>(ControlErrorBase + number);
  return number < 0 ? static_cast<HRESULT>(number) : E_FAIL;
}

/// What Windows says about a code.
std::string SystemDescription(HRESULT result) {
  std::array<wchar_t, 512> buffer{};
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(result), 0, buffer.data(),
                                static_cast<DWORD>(buffer.size()), nullptr);
  while (length > 0 &&
         (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r' || buffer[length - 1] == L' ')) {
    --length;
  }
  if (length > 0) return ToUtf8({buffer.data(), length});
  return "Automation error " + std::to_string(static_cast<int32_t>(result));
}

void AddErrorInfo(Error& error) {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK || !info) return;
  Bstr text;
  if (SUCCEEDED(info->GetDescription(text.Receive()))) error.Description = text.Text();
  if (SUCCEEDED(info->GetSource(text.Receive()))) error.Source = text.Text();
  if (SUCCEEDED(info->GetHelpFile(text.Receive()))) error.HelpFile = text.Text();
  DWORD context = 0;
  if (SUCCEEDED(info->GetHelpContext(&context))) error.HelpContext = static_cast<int32_t>(context);
}

}  // namespace

Bstr::Bstr(std::string_view utf8) {
  const std::wstring text = ToUtf16(utf8);
  text_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (text_ == nullptr) throw std::bad_alloc();
}

std::string Bstr::Text() const { return TextOf(text_); }

std::string TextOf(BSTR text) { return text == nullptr ? std::string() : ToUtf8({text, SysStringLen(text)}); }

Variant FromVariant(VARIANT& value) {
  OwnedVariant direct;
  Check(VariantCopyInd(&direct.Get(), &value));
  VARIANT& held = direct.Get();
  switch (held.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_BOOL:
      return held.boolVal != VARIANT_FALSE;
    case VT_I1:
      return static_cast<int32_t>(held.cVal);
    case VT_UI1:
      return static_cast<int32_t>(held.bVal);
    case VT_I2:
      return static_cast<int32_t>(held.iVal);
    case VT_UI2:
      return static_cast<int32_t>(held.uiVal);
    case VT_I4:
    case VT_INT:
      return static_cast<int32_t>(held.lVal);
    case VT_UI4:
    case VT_UINT:
      return static_cast<int64_t>(held.ulVal);
    case VT_I8:
      return static_cast<int64_t>(held.llVal);
    case VT_R4:
      return static_cast<double>(held.fltVal);
    case VT_R8:
      return held.dblVal;
    case VT_BSTR:
      return TextOf(held.bstrVal);
    case VT_DISPATCH:
    case VT_UNKNOWN: {
      if (held.punkVal == nullptr) return ObjectRef();
      return ObjectRef(std::make_shared<ComObject>(ComPtr<IUnknown>(held.punkVal)));
    }
    default:
      break;
  }
  OwnedVariant text;
  if (FAILED(VariantChangeType(&text.Get(), &held, VARIANT_ALPHABOOL, VT_BSTR))) {
    throw MakeError(ErrorNumber::TypeMismatch);
  }
  return TextOf(text.Get().bstrVal);
}

void ToVariant(const Variant& value, VARIANT& result) {
  struct Filler {
    VARIANT& result;
    void operator()(std::monostate) const { result.vt = VT_EMPTY; }
    void operator()(bool flag) const {
      result.vt = VT_BOOL;
      result.boolVal = ToVariantBool(flag);
    }
    void operator()(int64_t number) const {
      if (number >= std::numeric_limits<LONG>::min() && number <= std::numeric_limits<LONG>::max()) {
        result.vt = VT_I4;
        result.lVal = static_cast<LONG>(number);
      } else {
        result.vt = VT_R8;
        result.dblVal = static_cast<double>(number);
      }
    }
    void operator()(double number) const {
      result.vt = VT_R8;
      result.dblVal = number;
    }
    void operator()(const std::string& text) const {
      result.bstrVal = Bstr(text).Detach();
      result.vt = VT_BSTR;
    }
    void operator()(const ObjectRef& object) const {
      result.vt = VT_DISPATCH;
      result.pdispVal = nullptr;
      if (object == nullptr) return;
      const auto* ours = dynamic_cast<const ComObject*>(object.get());
      if (ours == nullptr) throw MakeError(ErrorNumber::TypeMismatch);
      result.pdispVal = ours->Unknown().As<IDispatch>().Detach();
    }
  };
  value.Visit(Filler{result});
}

void Check(HRESULT result) { Check(result, nullptr, IID_NULL); }

void Check(HRESULT result, IUnknown* object, const IID& interfaceId) {
  if (SUCCEEDED(result)) return;
  Error error(NumberOf(result), {}, {});
  error.LastDLLError = static_cast<int32_t>(GetLastError());
  const auto support = ComPtr<IUnknown>(object).As<ISupportErrorInfo>();
  if (support && support->InterfaceSupportsErrorInfo(interfaceId) == S_OK) AddErrorInfo(error);
  if (error.Description.empty()) error.Description = SystemDescription(result);
  throw error;
}

void CheckInvoke(HRESULT result, EXCEPINFO& exception) {
  if (SUCCEEDED(result)) return;
  if (result != DISP_E_EXCEPTION) Check(result);
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  HRESULT code = result;
  if (exception.wCode != 0) code = static_cast<HRESULT>(ControlErrorBase + exception.wCode);
  if (exception.scode != 0) code = exception.scode;
  Error error(NumberOf(code), TextOf(exception.bstrDescription), TextOf(exception.bstrSource));
  error.HelpFile = TextOf(exception.bstrHelpFile);
  error.HelpContext = static_cast<int32_t>(exception.dwHelpContext);
  for (BSTR text : {exception.bstrDescription, exception.bstrSource, exception.bstrHelpFile})
    SysFreeString(text);
  if (error.Description.empty()) error.Description = SystemDescription(code);
  throw error;
}

HRESULT Report(const Error& error, const IID& interfaceId) noexcept {
  const HRESULT result = ResultOf(error.Number);
  try {
    ComPtr<ICreateErrorInfo> info;
    if (FAILED(CreateErrorInfo(info.Receive()))) return result;
    // A part that cannot be set is missing from the report; the code says what matters.
    info->SetGUID(interfaceId);
    info->SetDescription(Bstr(error.Description).Get());
    info->SetSource(Bstr(error.Source).Get());
    if (!error.HelpFile.empty()) info->SetHelpFile(Bstr(error.HelpFile).Get());
    info->SetHelpContext(static_cast<DWORD>(error.HelpContext));
    if (const ComPtr<IErrorInfo> finished = info.As<IErrorInfo>()) SetErrorInfo(0, finished.Get());
  } catch (...) {
    // Out of memory while reporting: the code alone has to do.
  }
  return result;
}

}  // namespace vexa::windows
