#include "windows/views/LinksAccessible.h"

namespace vexa::windows {
namespace {

constexpr int Itself = -1;

HRESULT Nothing(BSTR* text) {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  return S_FALSE;
}

void Set(VARIANT& value, LONG number) {
  value.vt = VT_I4;
  value.lVal = number;
}

/// Links have no objects of their own: they go by their number, the first is 1.
LONG ChildId(int link) { return link == Itself ? CHILDID_SELF : link + 1; }

}  // namespace

template <typename Body>
HRESULT LinksAccessible::With(const VARIANT& child, Body&& body) {
  if (text_ == nullptr) return CO_E_OBJNOTCONNECTED;
  if (child.vt != VT_I4 || child.lVal < CHILDID_SELF || child.lVal > text_->LinkCount()) return E_INVALIDARG;
  HRESULT outcome = S_OK;
  const HRESULT called =
      Guarded(__uuidof(IAccessible), [&] { outcome = body(static_cast<int>(child.lVal) - 1); });
  return FAILED(called) ? called : outcome;
}

template <typename Body>
HRESULT LinksAccessible::AskSystem(Body&& body) {
  if (text_ == nullptr) return CO_E_OBJNOTCONNECTED;
  if (!system_) {
    void* made = nullptr;
    const HRESULT outcome =
        CreateStdAccessibleObject(text_->TextWindow(), OBJID_CLIENT, __uuidof(IAccessible), &made);
    if (FAILED(outcome)) return outcome;
    system_ = ComPtr<IAccessible>::Attach(static_cast<IAccessible*>(made));
  }
  return body(*system_.Get());
}

// --- by name: the system's object knows the names

STDMETHODIMP LinksAccessible::GetTypeInfoCount(UINT* count) {
  return AskSystem([&](IAccessible& system) { return system.GetTypeInfoCount(count); });
}
STDMETHODIMP LinksAccessible::GetTypeInfo(UINT info, LCID locale, ITypeInfo** found) {
  return AskSystem([&](IAccessible& system) { return system.GetTypeInfo(info, locale, found); });
}
STDMETHODIMP LinksAccessible::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) {
  return AskSystem(
      [&](IAccessible& system) { return system.GetIDsOfNames(reserved, names, count, locale, ids); });
}
STDMETHODIMP LinksAccessible::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* wrongArgument) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  ComPtr<ITypeInfo> info;
  const HRESULT outcome = GetTypeInfo(0, locale, info.Receive());
  if (FAILED(outcome)) return outcome;
  return info->Invoke(static_cast<IAccessible*>(this), member, flags, parameters, result, exception,
                      wrongArgument);
}

// --- what there is

STDMETHODIMP LinksAccessible::get_accParent(IDispatch** parent) {
  return AskSystem([&](IAccessible& system) { return system.get_accParent(parent); });
}

STDMETHODIMP LinksAccessible::get_accChildCount(LONG* count) {
  if (count == nullptr) return E_POINTER;
  if (text_ == nullptr) return CO_E_OBJNOTCONNECTED;
  *count = text_->LinkCount();
  return S_OK;
}

STDMETHODIMP LinksAccessible::get_accChild(VARIANT child, IDispatch** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  return With(child, [](int) { return S_FALSE; });
}

STDMETHODIMP LinksAccessible::get_accName(VARIANT child, BSTR* name) {
  if (name == nullptr) return E_POINTER;
  *name = nullptr;
  return With(child, [&](int link) {
    *name = Bstr(link == Itself ? text_->WholeText() : text_->LinkText(link)).Detach();
    return S_OK;
  });
}

STDMETHODIMP LinksAccessible::get_accRole(VARIANT child, VARIANT* role) {
  if (role == nullptr) return E_POINTER;
  VariantInit(role);
  return With(child, [&](int link) {
    Set(*role, link == Itself ? ROLE_SYSTEM_STATICTEXT : ROLE_SYSTEM_LINK);
    return S_OK;
  });
}

STDMETHODIMP LinksAccessible::get_accState(VARIANT child, VARIANT* state) {
  if (state == nullptr) return E_POINTER;
  VariantInit(state);
  return With(child, [&](int link) {
    const HWND window = text_->TextWindow();
    LONG bits = link == Itself ? STATE_SYSTEM_READONLY : STATE_SYSTEM_LINKED;
    if (IsWindowVisible(window) == FALSE) bits |= STATE_SYSTEM_INVISIBLE;
    if (IsWindowEnabled(window) == FALSE) bits |= STATE_SYSTEM_UNAVAILABLE;
    if (link != Itself) bits |= STATE_SYSTEM_FOCUSABLE;
    if (link == text_->CurrentLink() && GetFocus() == window) bits |= STATE_SYSTEM_FOCUSED;
    Set(*state, bits);
    return S_OK;
  });
}

STDMETHODIMP LinksAccessible::get_accFocus(VARIANT* child) {
  if (child == nullptr) return E_POINTER;
  VariantInit(child);
  if (text_ == nullptr) return CO_E_OBJNOTCONNECTED;
  if (GetFocus() != text_->TextWindow()) return S_FALSE;
  Set(*child, text_->LinkCount() == 0 ? CHILDID_SELF : ChildId(text_->CurrentLink()));
  return S_OK;
}

STDMETHODIMP LinksAccessible::get_accSelection(VARIANT* children) {
  if (children == nullptr) return E_POINTER;
  VariantInit(children);
  return S_FALSE;
}

STDMETHODIMP LinksAccessible::get_accValue(VARIANT /*child*/, BSTR* value) { return Nothing(value); }
STDMETHODIMP LinksAccessible::get_accDescription(VARIANT /*child*/, BSTR* text) { return Nothing(text); }
STDMETHODIMP LinksAccessible::get_accHelp(VARIANT /*child*/, BSTR* help) { return Nothing(help); }
STDMETHODIMP LinksAccessible::get_accHelpTopic(BSTR* file, VARIANT /*child*/, LONG* /*topic*/) {
  return Nothing(file);
}
STDMETHODIMP LinksAccessible::get_accKeyboardShortcut(VARIANT /*child*/, BSTR* shortcut) {
  return Nothing(shortcut);
}
STDMETHODIMP LinksAccessible::put_accName(VARIANT /*child*/, BSTR /*name*/) { return DISP_E_MEMBERNOTFOUND; }
STDMETHODIMP LinksAccessible::put_accValue(VARIANT /*child*/, BSTR /*value*/) {
  return DISP_E_MEMBERNOTFOUND;
}

// --- where it is

STDMETHODIMP LinksAccessible::accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) {
  if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_POINTER;
  return With(child, [&](int link) {
    RECT area{};
    const HWND window = text_->TextWindow();
    if (link == Itself) {
      GetWindowRect(window, &area);
    } else {
      area = text_->LinkArea(link);
      MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&area), 2);
    }
    *left = area.left;
    *top = area.top;
    *width = area.right - area.left;
    *height = area.bottom - area.top;
    return S_OK;
  });
}

STDMETHODIMP LinksAccessible::accHitTest(LONG x, LONG y, VARIANT* child) {
  if (child == nullptr) return E_POINTER;
  VariantInit(child);
  if (text_ == nullptr) return CO_E_OBJNOTCONNECTED;
  POINT at{x, y};
  RECT client{};
  ScreenToClient(text_->TextWindow(), &at);
  GetClientRect(text_->TextWindow(), &client);
  if (PtInRect(&client, at) == FALSE) return S_FALSE;
  int found = Itself;
  for (int link = 0; link < text_->LinkCount(); ++link) {
    const RECT area = text_->LinkArea(link);
    if (PtInRect(&area, at) != FALSE) found = link;
  }
  Set(*child, ChildId(found));
  return S_OK;
}

STDMETHODIMP LinksAccessible::accNavigate(LONG direction, VARIANT start, VARIANT* end) {
  if (end == nullptr) return E_POINTER;
  VariantInit(end);
  return With(start, [&](int link) {
    const int count = text_->LinkCount();
    int found = Itself;
    switch (direction) {
      case NAVDIR_FIRSTCHILD:
      case NAVDIR_LASTCHILD:
        if (link != Itself || count == 0) return S_FALSE;
        found = direction == NAVDIR_FIRSTCHILD ? 0 : count - 1;
        break;
      case NAVDIR_NEXT:
      case NAVDIR_PREVIOUS:
        if (link == Itself) {
          return AskSystem([&](IAccessible& system) { return system.accNavigate(direction, start, end); });
        }
        found = direction == NAVDIR_NEXT ? link + 1 : link - 1;
        if (found < 0 || found >= count) return S_FALSE;
        break;
      default:
        return S_FALSE;
    }
    Set(*end, ChildId(found));
    return S_OK;
  });
}

// --- what can be done

STDMETHODIMP LinksAccessible::get_accDefaultAction(VARIANT child, BSTR* action) {
  // To follow the link: what that is, the link says itself, in the language of the screen.
  if (child.vt == VT_I4 && child.lVal == CHILDID_SELF) return Nothing(action);
  return get_accName(child, action);
}

STDMETHODIMP LinksAccessible::accDoDefaultAction(VARIANT child) {
  return With(child, [&](int link) {
    if (link == Itself) return DISP_E_MEMBERNOTFOUND;
    text_->FollowLink(link);
    return S_OK;
  });
}

STDMETHODIMP LinksAccessible::accSelect(LONG flags, VARIANT child) {
  return With(child, [&](int link) {
    if (flags != SELFLAG_TAKEFOCUS || link == Itself) return E_INVALIDARG;
    text_->ReachLink(link);
    return S_OK;
  });
}

}  // namespace vexa::windows
