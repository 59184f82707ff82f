// Where the options page is embedded, as Outlook offers it: client site, in-place site and frame, and the
// page site that hears of changes.
#pragma once

#include <windows.h>
// windows.h first
#include <ocidl.h>
#include <oleidl.h>

#include <functional>

#include "windows/com/CountedObject.h"

namespace vexa::workbench {

/// The container's window that stands around the page.
class PageFrame : public windows::CountedObject<IOleInPlaceFrame> {
 public:
  /// `window` is the top-level window.
  explicit PageFrame(HWND window) : window_(window) {}

  /// The object that has the keyboard; null while the container itself has it.
  const windows::ComPtr<IOleInPlaceActiveObject>& ActiveObject() const { return active_; }

  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
  STDMETHODIMP GetBorder(LPRECT border) override;
  STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS widths) override;
  STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS widths) override;
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR name) override;
  STDMETHODIMP InsertMenus(HMENU menu, LPOLEMENUGROUPWIDTHS widths) override;
  STDMETHODIMP SetMenu(HMENU menu, HOLEMENU shared, HWND object) override;
  STDMETHODIMP RemoveMenus(HMENU menu) override;
  STDMETHODIMP SetStatusText(LPCOLESTR text) override;
  STDMETHODIMP EnableModeless(BOOL enable) override;
  STDMETHODIMP TranslateAccelerator(LPMSG message, WORD id) override;

 private:
  HWND window_;
  windows::ComPtr<IOleInPlaceActiveObject> active_;
};

class PageSite : public windows::CountedObject<IOleClientSite, IOleInPlaceSite, IOleControlSite, IDispatch> {
 public:
  struct Events {
    std::function<bool()> isPageSite;  // whether PropertyPageSite is answered
    std::function<void()> statusChanged;
    std::function<void(bool backwards)> tabbedOut;
  };

  /// `area` is the window that the page's becomes a child of.
  PageSite(windows::ComPtr<PageFrame> frame, HWND area, Events events)
      : frame_(std::move(frame)), area_(area), events_(std::move(events)) {}

  /// From here on nothing is told any more: the container is going.
  void Detach() { events_ = {}; }

  // IOleClientSite
  STDMETHODIMP SaveObject() override;
  STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override;
  STDMETHODIMP OnShowWindow(BOOL show) override;
  STDMETHODIMP RequestNewObjectLayout() override;

  // IOleInPlaceSite
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
  STDMETHODIMP CanInPlaceActivate() override;
  STDMETHODIMP OnInPlaceActivate() override;
  STDMETHODIMP OnUIActivate() override;
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window, LPRECT position,
                                LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
  STDMETHODIMP Scroll(SIZE extent) override;
  STDMETHODIMP OnUIDeactivate(BOOL undoable) override;
  STDMETHODIMP OnInPlaceDeactivate() override;
  STDMETHODIMP DiscardUndoState() override;
  STDMETHODIMP DeactivateAndUndo() override;
  STDMETHODIMP OnPosRectChange(LPCRECT position) override;

  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override;
  STDMETHODIMP LockInPlaceActive(BOOL lock) override;
  STDMETHODIMP GetExtendedControl(IDispatch** control) override;
  STDMETHODIMP TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) override;
  STDMETHODIMP TranslateAccelerator(LPMSG message, DWORD modifiers) override;
  STDMETHODIMP OnFocus(BOOL got) override;
  STDMETHODIMP ShowPropertyFrame() override;

  // IDispatch: ambient properties, and PropertyPageSite
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 protected:
  void* Find(REFIID interfaceId) override;

 private:
  windows::ComPtr<PageFrame> frame_;
  HWND area_;
  Events events_;
};

}  // namespace vexa::workbench
