// A container for the options page that can be as poor, as clumsy and as hostile as a test wants: it offers
// only what it is told to, and does what it is told to in the middle of any call that it gets. It counts its
// references, so that a test can tell that the page let go of it.
#pragma once

#include <windows.h>
// windows.h first
#include <ole2.h>
#include <olectl.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "VexaControls.h"
#include "windows/com/Com.h"

namespace vexa::windows {

class Container final : public IOleClientSite,
                        public IOleInPlaceSite,
                        public IOleControlSite,
                        public IDispatch {
 public:
  enum class Context { Whole, WithoutFrame, Fails };
  struct Offers {
    bool inPlace = true;
    bool controlSite = true;
    bool automation = true;  // ambient properties, and the page site
    bool pageSite = true;
    Context context = Context::Whole;
    HRESULT canActivate = S_OK;
    HRESULT activate = S_OK;
    HRESULT uiActivate = S_OK;
    bool noWindow = false;
  };

  Container() : Container(Offers()) {}
  explicit Container(const Offers& offers);
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;
  ~Container();

  /// The top-level window, with a button before and one behind the area that the page stands in.
  HWND Top() const { return top_; }
  HWND Area() const { return area_; }
  HWND Before() const { return before_; }
  HWND Behind() const { return behind_; }

  /// Takes a page in and activates it, as Outlook does.
  void Embed(const ComPtr<IOutlookPropertiesPage>& page);
  void Site(const ComPtr<IOutlookPropertiesPage>& page);
  HRESULT DoVerb(LONG verb);
  /// Lets go of the page as it should be done.
  void LetGo();
  /// Drops its references to it without a word.
  void Forget() {
    frame_.active.Reset();
    page_.Reset();
  }
  void DestroyWindows();

  IOutlookPropertiesPage& Page() const { return *page_.Get(); }
  template <typename Interface>
  ComPtr<Interface> PageAs() const {
    return page_.As<Interface>();
  }
  /// The page's own window; null when it has none.
  HWND PageWindow() const;
  HWND Control(const std::string& name) const;

  /// Handles every message that waits, as the container's own loop would.
  void Pump();
  /// Presses a key in the focused window and pumps.
  void Press(int key, bool shift = false);
  void Click(const std::string& control);

  /// What is to be done in the middle of the next call of this name.
  void During(const std::string& call, std::function<void()> deed) { deeds_[call] = std::move(deed); }

  std::vector<std::string> calls;
  /// What the page has said of its access keys.
  CONTROLINFO accessKeys{};
  /// References that others hold on the container and its frame.
  ULONG References() const { return references_ + frame_.references; }

  // IUnknown
  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }

  // IOleClientSite
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override { return Called("ShowObject"); }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleInPlaceSite
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override { return Called("CanInPlaceActivate", offers_.canActivate); }
  STDMETHODIMP OnInPlaceActivate() override { return Called("OnInPlaceActivate", offers_.activate); }
  STDMETHODIMP OnUIActivate() override { return Called("OnUIActivate", offers_.uiActivate); }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window, LPRECT position,
                                LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return Called("OnUIDeactivate"); }
  STDMETHODIMP OnInPlaceDeactivate() override { return Called("OnInPlaceDeactivate"); }
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(LPCRECT) override { return E_NOTIMPL; }

  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override;
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch**) override { return E_NOTIMPL; }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(LPMSG message, DWORD modifiers) override;
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }

  // IDispatch
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* wrongArgument) override;

 private:
  class Frame final : public IOleInPlaceFrame {
   public:
    explicit Frame(Container& container) : container_(container) {}
    ULONG references = 0;
    ComPtr<IOleInPlaceActiveObject> active;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return container_.Called("SetBorderSpace"); }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override;
    STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return E_NOTIMPL; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
    STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

   private:
    Container& container_;
  };

  HRESULT Called(const std::string& call, HRESULT result = S_OK);
  void Handle(MSG& message);

  Offers offers_;
  Frame frame_{*this};
  ULONG references_ = 0;
  HWND top_ = nullptr;
  HWND before_ = nullptr;
  HWND area_ = nullptr;
  HWND behind_ = nullptr;
  ComPtr<IOutlookPropertiesPage> page_;
  std::map<std::string, std::function<void()>> deeds_;
};

}  // namespace vexa::windows
