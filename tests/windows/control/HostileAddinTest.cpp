// Add-ins that are not what they should be: they answer with nothing, with something else, or with codes that
// nobody has heard of. The user is told, nothing crashes, and everything is released.
#include <gtest/gtest.h>

#include <functional>

#include "tests/windows/Modals.h"
#include "tests/windows/control/Handles.h"
#include "tests/windows/control/PageTest.h"
#include "workbench/com/DualObject.h"

namespace vexa::windows {
namespace {

/// What a member of the add-in does instead of its duty.
using Misdeed = std::function<HRESULT(IUnknown** answer)>;

enum class Member { Utilities, Scanner, Session, FolderSetContext, SetOptionsPageOpen, ApplySettings };

/// The true add-in, but for one member at a time.
class FalseAddin final : public workbench::DualObject<IVexaAddin> {
 public:
  FalseAddin(workbench::Exports& exports, Member member, Misdeed misdeed)
      : DualObject(nullptr, exports.Library()),
        real_(exports.Addin()),
        member_(member),
        misdeed_(std::move(misdeed)) {}

  STDMETHODIMP get_Utilities(IVexaUtilities** value) override {
    return Answer(Member::Utilities, value, [&] { return real_->get_Utilities(value); });
  }
  STDMETHODIMP get_Scanner(IVexaScanner** value) override {
    return Answer(Member::Scanner, value, [&] { return real_->get_Scanner(value); });
  }
  STDMETHODIMP get_Session(IDispatch** value) override {
    return Answer(Member::Session, value, [&] { return real_->get_Session(value); });
  }
  STDMETHODIMP get_FolderSetContext(IDispatch** value) override {
    return Answer(Member::FolderSetContext, value, [&] { return real_->get_FolderSetContext(value); });
  }
  STDMETHODIMP SetOptionsPageOpen(VARIANT_BOOL* open) override {
    IUnknown* none = nullptr;
    return Answer(Member::SetOptionsPageOpen, &none, [&] { return real_->SetOptionsPageOpen(open); });
  }
  STDMETHODIMP ApplySettings(IRegSettings** settings) override {
    IRegSettings* const given = *settings;
    const HRESULT result =
        Answer(Member::ApplySettings, settings, [&] { return real_->ApplySettings(settings); });
    if (member_ == Member::ApplySettings && *settings != given)
      given->Release();  // what is replaced is let go
    return result;
  }

 private:
  template <typename Interface>
  HRESULT Answer(Member member, Interface** value, const std::function<HRESULT()>& duty) {
    return member == member_ ? misdeed_(reinterpret_cast<IUnknown**>(value)) : duty();
  }

  ComPtr<IVexaAddin> real_;
  Member member_;
  Misdeed misdeed_;
};

class HostileAddin : public PageTest {
 protected:
  static constexpr const char* AnyObject = "answers with some other object";

  std::vector<std::pair<std::string, Misdeed>> Misdeeds() {
    return {
        {"succeeds with nothing", [](IUnknown** answer) { return *answer = nullptr, S_OK; }},
        {"does not answer", [](IUnknown**) { return S_OK; }},
        // Members of a type of their own cannot answer with another without breaking COM itself.
        {AnyObject,
         [this](IUnknown** answer) {
           *answer = container_->PageAs<IDispatch>().Detach();
           return S_OK;
         }},
        {"is gone", [](IUnknown**) { return RPC_E_DISCONNECTED; }},
        {"fails without a word", [](IUnknown**) { return E_FAIL; }},
        {"gives a code that nobody knows", [](IUnknown**) { return static_cast<HRESULT>(0x8BADF00D); }},
        {"pumps messages",
         [this](IUnknown**) {
           container_->Pump();
           return E_ABORT;
         }},
        {"drops the page",
         [this](IUnknown**) {
           if (container_->PageAs<IUnknown>()) container_->Forget();
           return E_ABORT;
         }},
        {"destroys the windows", [this](IUnknown**) { return container_->DestroyWindows(), E_ABORT; }},
    };
  }

  /// The user presses whatever can be pressed.
  void PressEverything() {
    for (const char* const button :
         {"cmdAdd", "cmdChange", "cmdRemove", "cmdTracking", "cmdAdvanced", "cmdAbout"}) {
      const HWND page = container_->PageWindow();
      const HWND found = page == nullptr ? nullptr : FindNamed(page, button);
      if (found == nullptr || IsWindowEnabled(found) == FALSE) continue;
      Modals::PostClick(found);
      container_->Pump();
    }
  }

  Container* container_ = nullptr;
};

TEST_F(HostileAddin, NoAnswerOfItsHurtsThePage) {
  for (int place = 0; place <= static_cast<int>(Member::ApplySettings); ++place) {
    const auto member = static_cast<Member>(place);
    for (const auto& [name, misdeed] : Misdeeds()) {
      const bool takesAny = member == Member::Session || member == Member::FolderSetContext;
      if (name == AnyObject && !takesAny) continue;
      SCOPED_TRACE("member " + std::to_string(place) + " " + name);
      const Modals user(Modals::Unexpected::AreSentAway);
      const auto addin = MakeObject<IVexaAddin, FalseAddin>(*bench_->exports, member, misdeed);
      {
        Container container;
        container_ = &container;
        container.Embed(CreatePage());
        const ComPtr<IOutlookPropertiesPage> page = container.PageAs<IOutlookPropertiesPage>();
        VARIANT_BOOL again = VARIANT_FALSE;
        page->Initialize(addin.Get(), &again);
        container.Pump();
        PressEverything();
        page->SetDirty();
        page->PropertyPage_Apply();
        container.Pump();
        EXPECT_TRUE(container.Top() == nullptr || IsWindowEnabled(container.Top()) != FALSE);
      }
      EXPECT_EQ((addin->AddRef(), addin->Release()), 1U) << "the add-in is still held";
    }
  }
}

TEST_F(HostileAddin, SixteenPagesAtOnceKeepOutOfEachOthersWay) {
  const auto liveTogether = [&] {
    const Modals user(Modals::Unexpected::AreSentAway);
    std::vector<std::unique_ptr<Container>> containers;
    for (int i = 0; i < 16; ++i) {
      containers.push_back(std::make_unique<Container>());
      Open(*containers.back());
    }
    for (size_t i = 0; i < containers.size(); i += 3) {
      container_ = containers[i].get();
      ASSERT_EQ(container_->DoVerb(OLEIVERB_UIACTIVATE), S_OK);
      PressEverything();
    }
    for (size_t i = 0; i < containers.size(); i += 2) containers[i].reset();
    for (size_t i = 1; i < containers.size(); i += 2) {
      EXPECT_NE(IsWindowEnabled(containers[i]->Control("cmdAdd")), FALSE)
          << "page " << i << " is as usable as before";
    }
  };
  liveTogether();  // what is kept for the whole process is there now
  const HandleCounts before = CountHandles();
  liveTogether();
  EXPECT_EQ(CountHandles(), before);
}

}  // namespace
}  // namespace vexa::windows
