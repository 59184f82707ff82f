// What assistive software sees of a text with links in it: the text, and below it the links, each of which
// can be found, reached and followed. The windows' own support knows such texts as one piece. The object may
// outlive the window; then every call fails.
#pragma once

#include <windows.h>
// windows.h first
#include <oleacc.h>

#include <string>

#include "windows/com/CountedObject.h"

namespace vexa::windows {

/// The text, as its view knows it. Links count from 0.
class LinkedText {
 public:
  LinkedText() = default;
  LinkedText(const LinkedText&) = delete;
  LinkedText& operator=(const LinkedText&) = delete;
  virtual ~LinkedText() = default;

  virtual HWND TextWindow() const = 0;
  virtual std::string WholeText() const = 0;
  virtual int LinkCount() const = 0;
  virtual std::string LinkText(int link) const = 0;
  /// In the window.
  virtual RECT LinkArea(int link) const = 0;
  virtual int CurrentLink() const = 0;
  virtual void ReachLink(int link) = 0;
  /// Does not wait for what comes of it.
  virtual void FollowLink(int link) = 0;
};

class LinksAccessible final : public CountedObject<IAccessible> {
 public:
  explicit LinksAccessible(LinkedText& text) : text_(&text) {}
  /// The text is gone.
  void Disconnect() { text_ = nullptr; }
  /// The answer to WM_GETOBJECT.
  LRESULT Answer(WPARAM wParam) { return LresultFromObject(__uuidof(IAccessible), wParam, this); }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT info, LCID locale, ITypeInfo** found) override;
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

  STDMETHODIMP get_accParent(IDispatch** parent) override;
  STDMETHODIMP get_accChildCount(LONG* count) override;
  STDMETHODIMP get_accChild(VARIANT child, IDispatch** object) override;
  STDMETHODIMP get_accName(VARIANT child, BSTR* name) override;
  STDMETHODIMP get_accValue(VARIANT child, BSTR* value) override;
  STDMETHODIMP get_accDescription(VARIANT child, BSTR* description) override;
  STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) override;
  STDMETHODIMP get_accState(VARIANT child, VARIANT* state) override;
  STDMETHODIMP get_accHelp(VARIANT child, BSTR* help) override;
  STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) override;
  STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override;
  STDMETHODIMP get_accFocus(VARIANT* child) override;
  STDMETHODIMP get_accSelection(VARIANT* children) override;
  STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* action) override;
  STDMETHODIMP accSelect(LONG flags, VARIANT child) override;
  STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override;
  STDMETHODIMP accNavigate(LONG direction, VARIANT start, VARIANT* end) override;
  STDMETHODIMP accHitTest(LONG x, LONG y, VARIANT* child) override;
  STDMETHODIMP accDoDefaultAction(VARIANT child) override;
  STDMETHODIMP put_accName(VARIANT child, BSTR name) override;
  STDMETHODIMP put_accValue(VARIANT child, BSTR value) override;

 private:
  /// Runs `body` with the link that `child` names, -1 for the text itself.
  template <typename Body>
  HRESULT With(const VARIANT& child, Body&& body);
  /// What the system says of the window.
  template <typename Body>
  HRESULT AskSystem(Body&& body);

  LinkedText* text_;
  ComPtr<IAccessible> system_;
};

}  // namespace vexa::windows
