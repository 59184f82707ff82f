// A container for the options page that can be as poor, as clumsy and as hostile as a test wants: it offers
// only what it is told to, and does what it is told to in the middle of any call that it gets. In all else it
// is the host's. It counts its references, so that a test can tell that the page let go of it.
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

class Container {
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

  /// The top-level window, with a button behind the area that the page stands in.
  HWND Top() const { return top_; }
  HWND Area() const { return area_; }
  HWND Behind() const { return behind_; }

  /// Takes a page in and activates it, as Outlook does.
  void Embed(const ComPtr<IOutlookPropertiesPage>& page);
  void Site(const ComPtr<IOutlookPropertiesPage>& page);
  HRESULT DoVerb(LONG verb);
  /// Lets go of the page as it should be done.
  void LetGo();
  /// Drops its references to it without a word.
  void Forget();
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
  void Click(const std::string& control);

  /// What is to be done in the middle of the next call of this name.
  void During(const std::string& call, std::function<void()> operation) {
    operations_[call] = std::move(operation);
  }

  std::vector<std::string> calls;
  /// What the page has said of its access keys.
  CONTROLINFO accessKeys{};

 private:
  class PoorFrame;
  class PoorSite;

  HRESULT Called(const std::string& call, HRESULT result = S_OK);
  void Handle(MSG& message);

  Offers offers_;
  HWND top_ = nullptr;
  HWND area_ = nullptr;
  HWND behind_ = nullptr;
  ComPtr<PoorFrame> frame_;
  ComPtr<PoorSite> site_;
  ComPtr<IOutlookPropertiesPage> page_;
  std::map<std::string, std::function<void()>> operations_;
};

}  // namespace vexa::windows
