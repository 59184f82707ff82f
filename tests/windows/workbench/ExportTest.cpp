// The workbench's objects, there and back again: a call on a contract of the client side goes through COM to
// the object of the workbench. Whatever is called directly and through COM must come to the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <type_traits>
#include <utility>

#include "tests/windows/Bench.h"
#include "windows/adapters/Adapters.h"
#include "windows/com/LateBound.h"
#include "workbench/Settings.h"
#include "workbench/Workbench.h"
#include "workbench/com/Export.h"

namespace vexa::workbench {
namespace {

using windows::ComPtr;
using windows::LateBound;

class Export : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }
  void TearDown() override {
    EXPECT_EQ(LivingObjects::Count(), 0) << "not everything was released";
    CoUninitialize();
  }
};

// --- the same calls, directly and through COM

std::string TextOf(bool value) { return value ? "True" : "False"; }
std::string TextOf(int32_t value) { return std::to_string(value); }
std::string TextOf(ItemType value) { return std::to_string(static_cast<int32_t>(value)); }
std::string TextOf(const std::string& value) { return value; }
std::string TextOf(const Variant& value) { return value.ToText(); }
template <typename Kind>
std::string TextOf(const std::shared_ptr<Kind>& object) {
  return object == nullptr ? "nothing" : "an object";
}

/// What a series of calls answered, one line a call; an error is an answer.
class Answers {
 public:
  template <typename Body>
  void Call(const char* name, Body&& body) {
    std::string line = std::string(name) + ": ";
    try {
      if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
        body();
      } else {
        line += TextOf(body());
      }
    } catch (const Error& error) {
      line += "error " + std::to_string(error.Number) + " " + error.Description + " from " + error.Source +
              " help " + error.HelpFile + " " + std::to_string(error.HelpContext);
    }
    lines.push_back(line);
  }
  std::vector<std::string> lines;
};
#define ANSWER(expression) answers.Call(#expression, [&] { return (expression); })

std::vector<bool> SamplesOf(const bool*) { return {true, false}; }
std::vector<int16_t> SamplesOf(const int16_t*) { return {12, INT16_MIN, INT16_MAX}; }
std::vector<int32_t> SamplesOf(const int32_t*) { return {70000, INT32_MIN, INT32_MAX}; }
/// Texts that a careless border would cut, mend or refuse.
std::vector<std::string> SamplesOf(const std::string*) {
  using namespace std::string_literals;
  return {"text"s,
          ""s,
          "zero \0 inside, zero behind\0"s,
          "lone surrogates \xED\xA0\x80 \xED\xBF\xBF in the wrong order \xED\xB0\x80\xED\xA0\x80"s,
          "a pair \xF0\x9F\x93\xAC, accents \xC3\xA9\xC3\xA0, noncharacter \xEF\xBF\xBF"s,
          std::string(5000, 'x')};
}

template <typename Value>
void CallCollection(Answers& answers, const std::function<CollectionRef<Value>()>& list) {
  const std::vector<Value> samples = SamplesOf(static_cast<const Value*>(nullptr));
  for (const Value& sample : samples) {
    ANSWER(Require(list()).AddBefore(sample, 1));
    ANSWER(Require(list()).Item(1));
  }
  ANSWER(Require(list()).Add(samples[0]));
  ANSWER(Require(list()).AddAfter(samples[0], 2));
  ANSWER(Require(list()).Count());
  ANSWER(Require(list()).Item(2));
  ANSWER(Require(list()).Item(0));
  ANSWER(Require(list()).AddAfter(samples[0], 99));
  ANSWER(Require(list()).Remove(1));
  ANSWER(Require(list()).Remove(99));
}

void CallSettings(Answers& answers, AddinObjectFactory& objects, AddinApp& addin) {
  RegSettingsRef settings;
  bool blocked = true;
  bool available = false;
  int32_t argument = 0;
  ANSWER(settings = objects.CreateRegSettings());
  if (settings == nullptr) return;
  ANSWER(settings->Load(0, blocked, available));
  ANSWER(TextOf(blocked) + TextOf(available));
#define VEXA_READ(place, Name, Type) ANSWER(settings->Get##Name());
#define VEXA_READ_ONLY(place, Name, Type) VEXA_READ(place, Name, Type)
#define VEXA_PROPERTY(place, Name, Type)                                   \
  for (const Type sample : SamplesOf(static_cast<const Type*>(nullptr))) { \
    ANSWER(settings->Let##Name(sample));                                   \
    ANSWER(settings->Get##Name());                                         \
  }
#define VEXA_COLLECTION(place, Name, Type)                              \
  CallCollection<Type>(answers, [&] { return settings->Get##Name(); }); \
  ANSWER(settings->Let##Name(settings->Get##Name()));                   \
  ANSWER(settings->Set##Name(settings->Get##Name()));
#include "contracts/RegSettings.members.inc"
  ANSWER(settings->RestoreHiddenDialogs());
  ANSWER(settings->CanWrite(argument));
  ANSWER(settings->FindFolderSet("text", "TEXT", addin.FolderSetContext()));
  const RegSettingsRef given = settings;
  ANSWER(addin.ApplySettings(settings));
  ANSWER(given == settings);
}

void CallFolder(Answers& answers, AddinApp& addin, const FolderRef& folder) {
  ANSWER(Require(folder).Name());
  ANSWER(Require(folder).EntryID());
  ANSWER(Require(folder).StoreID());
  ANSWER(Require(folder).DefaultItemType());
  ANSWER(Require(Require(folder).Parent()).Name());
  ANSWER(Require(Require(folder).Folders()).Count());
  ANSWER(Require(addin.Utilities()).GetFolderPath(folder));
  ANSWER(Require(addin.Utilities()).IsPublicFolder(folder));
}

void CallSession(Answers& answers, FixedAnswers& user, AddinApp& addin) {
  NameSpaceRef session;
  FolderRef folder;
  ANSWER(session = addin.Session());
  ANSWER(Require(Require(session).Folders()).Count());
  ANSWER(folder = Require(Require(session).Folders()).Item(2));
  CallFolder(answers, addin, folder);
  ANSWER(Require(Require(session).Folders()).Item(9));
  ANSWER(folder = Require(session).GetFolderFromID("P2", "BB02"));
  CallFolder(answers, addin, folder);
  ANSWER(Require(session).GetFolderFromID("P9", "BB02"));
  ANSWER(Require(Require(session).GetDefaultFolder(6)).Name());
  ANSWER(Require(session).GetDefaultFolder(99));
  user.picked = 2;
  ANSWER(Require(Require(session).PickFolder()).Name());
  ANSWER(Require(session).PickFolder());
  ANSWER(Require(session).CurrentProfileName());
  ANSWER(Require(Require(session).CurrentUser()).Name());
  std::shared_ptr<MailItem> mail;
  ANSWER(mail = Require(Require(session).Application()).CreateItem(ItemType::Mail));
  ANSWER(Require(mail).LetSubject("subject"));
  ANSWER(Require(mail).LetBody("a body\r\nof two lines"));
  ANSWER(Require(mail).AddRecipient("somebody@tolvane.example"));
  ANSWER(Require(mail).AddAttachment("C:\\log.txt"));
  ANSWER(Require(mail).Send());
}

void CallMonitoredFolder(Answers& answers, AddinObjectFactory& objects) {
  std::shared_ptr<MonitoredFolder> folder;
  ANSWER(folder = objects.CreateMonitoredFolder());
  ANSWER(Require(folder).LetEntryID("E"));
  ANSWER(Require(folder).LetStoreID("S"));
  ANSWER(Require(folder).LetItemTypes(5));
  ANSWER(Require(folder).GetEntryID() + Require(folder).GetStoreID());
  ANSWER(Require(folder).SetMailDefaults(true));
  ANSWER(Require(folder).LetFlag(4, false));
  ANSWER(TextOf(Require(folder).GetItemTypes()) + TextOf(Require(folder).GetFlag(1)));
  ANSWER(Require(folder).MaskFromResId(150));
  ANSWER(Require(folder).ResIdFromMask(8));
  ANSWER(Require(folder).MaskFromOlItemType(ItemType::Journal));
  ANSWER(Require(folder).MaskFromResId(134));
  ANSWER(Require(folder).Excluded());
}

/// Calls every member of every contract.
std::vector<std::string> CallEverything(FixedAnswers& user, AddinApp& addin, AddinObjectFactory& objects) {
  Answers answers;
  bool open = true;
  ANSWER(Require(addin.Utilities()).BypassBlocked());
  ANSWER(Require(addin.Utilities()).DelayAvailable());
  ANSWER(Require(Require(addin.Utilities()).App()).Path());
  ANSWER(Require(addin.Utilities()).SetUserProperty(nullptr, "name", Variant("value"), 1, true));
  ANSWER(Require(addin.Utilities()).AboutInfo());
  ANSWER(Require(addin.Utilities()).GetFolderPath(nullptr));
  ANSWER(Require(addin.Scanner()).StartSearch(true));
  ANSWER(Require(addin.Scanner()).IsScanning());
  ANSWER(addin.SetOptionsPageOpen(open));
  ANSWER(open);
  CallSession(answers, user, addin);
  CallSettings(answers, objects, addin);
  CallMonitoredFolder(answers, objects);
  return answers.lines;
}
#undef ANSWER

struct Outcome {
  std::vector<std::string> answers;
  std::vector<std::string> trace;
};

/// Calls everything, with a fault planned for a member unless it is empty.
Outcome CallAll(bool throughCom, const std::string& member = {}, const Fault& fault = Error()) {
  Bench bench;
  if (!member.empty()) bench.calls.PlanFault(member, 1, fault);
  std::vector<std::string> answers;
  if (throughCom) {
    const ClassRegistration classes(bench.exports);
    const AddinAppRef addin = windows::AdaptAddin(bench.exports->Addin().Get());
    answers = CallEverything(bench.user, *addin, *windows::MakeObjectFactory());
  } else {
    answers = CallEverything(bench.user, *bench.workbench.Addin(), bench.workbench.Objects());
  }
  return {std::move(answers), bench.calls.Lines()};
}

TEST_F(Export, CallsAnswerAndLeaveATraceAsWithoutCom) {
  const Outcome direct = CallAll(false);
  const Outcome com = CallAll(true);
  EXPECT_EQ(com.answers, direct.answers);
  EXPECT_EQ(com.trace, direct.trace);
  EXPECT_GT(direct.trace.size(), 300U);
}

TEST_F(Export, EveryFailureArrivesWholeAndAtTheSameCall) {
  Error fault(1234, "cannot do \xC3\xA9", "VexaAddin\r\n-->Inner.Call(3)");
  fault.HelpFile = "help.chm";
  fault.HelpContext = 77;
  int tried = 0;
  for (const std::string& member : CallLog::KnownMembers()) {
    // What is no object of Outlook or the add-in does not cross the border.
    constexpr std::array machines = {"View.", "Shell.", "Site.", "Files.", "Reg.", "Sys."};
    if (std::ranges::any_of(machines, [&](const char* own) { return member.starts_with(own); })) continue;
    std::vector<Fault> faults{fault};
    if (CallLog::AnswersWithObject(member)) faults.emplace_back(Fault::Kind::Nothing);
    for (const Fault& planned : faults) {
      SCOPED_TRACE(member + (planned.kind == Fault::Kind::Nothing ? " answers with no object" : " fails"));
      const Outcome direct = CallAll(false, member, planned);
      ASSERT_NE(std::count_if(direct.trace.begin(), direct.trace.end(),
                              [](const std::string& line) { return line.find(" !! ") != line.npos; }),
                0)
          << "the fault did not come up";
      const Outcome com = CallAll(true, member, planned);
      EXPECT_EQ(com.answers, direct.answers);
      EXPECT_EQ(com.trace, direct.trace);
      ++tried;
    }
  }
  EXPECT_GT(tried, 180);
}

// --- called by name

TEST_F(Export, ForEachGoesThroughCollectionsAndFolders) {
  Bench bench;
  const auto behind = std::make_shared<WorkbenchSettings>(bench.workbench);
  behind->data.FolderSetFlags = {3, 1, 2};
  const ComPtr<IDispatch> lists[] = {windows::ExportCollection(behind->GetFolderSetFlags()),
                                     bench.exports->Export(bench.workbench.Addin()->Session()->Folders())};
  std::string seen;
  const auto goThrough = [&](IEnumVARIANT& enumerator) {
    for (ULONG fetched = 2; fetched == 2;) {
      VARIANT items[2]{};
      const HRESULT outcome = enumerator.Next(2, items, &fetched);
      EXPECT_EQ(outcome, fetched == 2 ? S_OK : S_FALSE);
      for (VARIANT& item : items) {
        if (item.vt == VT_DISPATCH) seen += LateBound(ComPtr<IUnknown>(item.pdispVal)).CallForText(L"Name");
        if (item.vt != VT_DISPATCH && item.vt != VT_EMPTY) seen += windows::FromVariant(item).ToText();
        seen += ";";
        VariantClear(&item);
      }
    }
  };
  for (const ComPtr<IDispatch>& list : lists) {
    const auto enumerator = LateBound(list.As<IUnknown>()).CallForObject(L"_NewEnum").As<IEnumVARIANT>();
    ASSERT_TRUE(enumerator);
    goThrough(*enumerator.Get());
    ASSERT_EQ(enumerator->Reset(), S_OK);
    EXPECT_EQ(enumerator->Skip(1), S_OK);
    ComPtr<IEnumVARIANT> copy;
    ASSERT_EQ(enumerator->Clone(copy.Receive()), S_OK);
    goThrough(*copy.Get());
    EXPECT_EQ(copy->Skip(1), S_FALSE);
  }
  EXPECT_EQ(seen, "3;1;2;;1;2;;;Mailbox;Public Folders;;;Public Folders;;");
}

int32_t NumberOfError(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Number;
  }
  return 0;
}

TEST_F(Export, CallsByNameAreCheckedAndFindMembersInAnyCase) {
  Bench bench;
  const auto behind = std::make_shared<WorkbenchSettings>(bench.workbench);
  LateBound list(windows::ExportCollection(behind->GetContactEntryIDs()).As<IUnknown>());
  list.Call(L"ADD", {"b"});
  list.Call(L"add", {"a", windows::MissingArgument(), 1.4});  // a fraction is rounded
  list.Call(L"Add", {7, windows::MissingArgument(), windows::MissingArgument(), "2"});
  EXPECT_EQ(behind->data.ContactEntryIDs, (std::vector<std::string>{"a", "b", "7"}));

  EXPECT_EQ(NumberOfError([&] { list.Call(L"Sort"); }), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Item"); }), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Count", {1}); }), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Item", {"x"}); }), 13);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Item", {1e10}); }), 6);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Item", {4}); }), 9);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Add", {"c", "key"}); }), 5);
  EXPECT_EQ(NumberOfError([&] { list.Call(L"Add", {"c", windows::MissingArgument(), 1, 1}); }), 5);
  EXPECT_EQ(behind->data.ContactEntryIDs.size(), 3U);
}

// --- what a failure says

constexpr HRESULT ControlError = static_cast<HRESULT>(0x800A0000);

struct Failure {
  const char* name;
  bool says;  // that it leaves error information
  bool byName;
  HRESULT result;
  SCODE scode;
  WORD code;
  int32_t number;
  const char* description;  // null: what the system says
};

/// Fails as told.
class FailingObject final : public windows::CountedObject<IDispatch, ISupportErrorInfo> {
 public:
  explicit FailingObject(const Failure& failure) : failure_(failure) {}
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return failure_.result; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override { return *ids = 1, S_OK; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception,
                      UINT*) override {
    exception->scode = failure_.scode;
    exception->wCode = failure_.code;
    if (failure_.description != nullptr)
      exception->bstrDescription = windows::Bstr(failure_.description).Detach();
    return failure_.result;
  }
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return failure_.says ? S_OK : S_FALSE; }

 private:
  const Failure& failure_;
};

TEST_F(Export, FailuresSayWhatTheFailingObjectSaysOfThem) {
  const char* const left = "left in the thread";
  const Failure failures[] = {
      {"its own information", true, false, E_ABORT, 0, 0, E_ABORT, left},
      {"the information of another", false, false, E_ABORT, 0, 0, E_ABORT, nullptr},
      {"a code without a number", true, false, ControlError, 0, 0, ControlError, left},
      {"a code of its own", true, true, DISP_E_EXCEPTION, E_ABORT, 0, E_ABORT, "said"},
      {"a number", true, true, DISP_E_EXCEPTION, 0, 1004, 1004, "said"},
      {"no number", true, true, DISP_E_EXCEPTION, 0, 0, DISP_E_EXCEPTION, "said"},
      {"no record", true, true, DISP_E_EXCEPTION, 0, 0, DISP_E_EXCEPTION, nullptr},
      {"no exception", true, true, E_ABORT, 0, 0, E_ABORT, nullptr},
  };
  for (const Failure& failure : failures) {
    SCOPED_TRACE(failure.name);
    const auto object = MakeObject<IDispatch, FailingObject>(failure);
    windows::Report(Error(1, left, {}), IID_IDispatch);
    try {
      UINT count = 0;
      if (!failure.byName) windows::Call(object, &IDispatch::GetTypeInfoCount, &count);
      LateBound(object.As<IUnknown>()).Call(L"Fail");
      ADD_FAILURE() << "no error";
    } catch (const Error& error) {
      EXPECT_EQ(error.Number, failure.number);
      EXPECT_TRUE(failure.description == nullptr || error.Description == failure.description)
          << error.Description;
      EXPECT_EQ(error.Description == left, failure.description == left) << error.Description;
    }
  }
  SetErrorInfo(0, nullptr);
}

// --- misuse of the interfaces

TEST_F(Export, ObjectsOfOthersAndMissingOnesAreErrors) {
  Bench bench;
  const ComPtr<IVexaAddin> addin = bench.exports->Addin();
  ComPtr<IVexaUtilities> utilities;
  ASSERT_EQ(addin->get_Utilities(utilities.Receive()), S_OK);
  windows::Bstr path;
  EXPECT_EQ(utilities->GetFolderPath(addin.As<IDispatch>().Get(), path.Receive()),
            static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(path.Get(), nullptr);
  const ComPtr<IRegSettings> settings = bench.exports->NewRegSettings();
  EXPECT_EQ(settings->put_ContactEntryIDs(nullptr), static_cast<HRESULT>(0x800A005B));
  EXPECT_EQ(settings->put_UsingEnterpriseSettings(VARIANT_TRUE), E_NOTIMPL);
  EXPECT_EQ(settings->Unused60(), E_NOTIMPL);
  SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace vexa::workbench
