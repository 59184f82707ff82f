// The workbench's objects, there and back again: a call on a contract of the client side goes through COM to
// the object of the workbench. Whatever is called directly and through COM must come to the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "contracts/List.h"
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
using windows::OwnedVariant;

class Export : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }
  void TearDown() override {
    EXPECT_EQ(LivingObjects::Count(), 0) << "not everything was released";
    CoUninitialize();
  }
};

std::string LongText(int place) {
  std::string text = "place " + std::to_string(place) + " ";
  while (text.size() < 1 << 20) text += text;
  return text;
}

/// Texts that a careless border would cut, mend or refuse.
std::vector<std::string> DifficultTexts(int place) {
  using namespace std::string_literals;
  return {""s, "zero \0 inside, zero behind\0"s + std::to_string(place),
          "lone surrogates \xED\xA0\x80 \xED\xBF\xBF in the wrong order \xED\xB0\x80\xED\xA0\x80"s,
          "a pair \xF0\x9F\x93\xAC, accents \xC3\xA9\xC3\xA0, noncharacter \xEF\xBF\xBF"s, LongText(place)};
}

std::vector<bool> SamplesOf(const bool*, int) { return {true, false}; }
std::vector<int16_t> SamplesOf(const int16_t*, int place) {
  return {static_cast<int16_t>(place * 100), INT16_MIN, INT16_MAX};
}
std::vector<int32_t> SamplesOf(const int32_t*, int place) { return {place * 100000, INT32_MIN, INT32_MAX}; }
std::vector<std::string> SamplesOf(const std::string*, int place) { return DifficultTexts(place); }

TEST_F(Export, EverySettingKeepsItsValueAndTouchesNoOther) {
  Bench bench;
  const auto behind = std::make_shared<WorkbenchSettings>(bench.workbench);
  const RegSettingsRef client = windows::AdaptSettings(bench.exports->Export(behind));

#define VEXA_READ(place, Name, Type)                                              \
  for (const Type sample : SamplesOf(static_cast<const Type*>(nullptr), place)) { \
    behind->data.Name = sample;                                                   \
    EXPECT_TRUE(client->Get##Name() == sample) << #Name;                          \
  }
#define VEXA_READ_ONLY(place, Name, Type) VEXA_READ(place, Name, Type)
#define VEXA_PROPERTY(place, Name, Type)                                          \
  VEXA_READ(place, Name, Type)                                                    \
  for (const Type sample : SamplesOf(static_cast<const Type*>(nullptr), place)) { \
    SettingsData expected = behind->data;                                         \
    LetSetting(#Name, expected.Name, Type(sample));                               \
    client->Let##Name(sample);                                                    \
    EXPECT_TRUE(behind->data == expected) << #Name;                               \
  }
#include "contracts/RegSettings.members.inc"
}

TEST_F(Export, EveryCollectionIsEditedInPlace) {
  Bench bench;
  const auto behind = std::make_shared<WorkbenchSettings>(bench.workbench);
  const RegSettingsRef client = windows::AdaptSettings(bench.exports->Export(behind));
  const auto other = std::make_shared<WorkbenchSettings>(bench.workbench);
  const RegSettingsRef otherClient = windows::AdaptSettings(bench.exports->Export(other));

#define VEXA_COLLECTION(place, Name, Type)                                           \
  {                                                                                  \
    SCOPED_TRACE(#Name);                                                             \
    const auto samples = SamplesOf(static_cast<const Type*>(nullptr), place);        \
    SettingsData expected = behind->data;                                            \
    const CollectionRef<Type> collection = client->Get##Name();                      \
    collection->Add(samples[1]);                                                     \
    collection->AddBefore(samples[0], 1);                                            \
    collection->AddAfter(samples[2], 1);                                             \
    expected.Name = {samples[0], samples[2], samples[1]};                            \
    EXPECT_TRUE(behind->data == expected);                                           \
    EXPECT_EQ(collection->Count(), 3);                                               \
    for (int32_t i = 1; i <= 3; ++i) {                                               \
      EXPECT_TRUE(collection->Item(i) == expected.Name[static_cast<size_t>(i - 1)]); \
    }                                                                                \
    collection->Remove(2);                                                           \
    expected.Name = {samples[0], samples[1]};                                        \
    EXPECT_TRUE(behind->data == expected);                                           \
    other->data.Name = samples;                                                      \
    client->Let##Name(otherClient->Get##Name());                                     \
    EXPECT_TRUE(behind->data.Name == samples);                                       \
    other->data.Name.pop_back();                                                     \
    client->Set##Name(otherClient->Get##Name());                                     \
    EXPECT_TRUE(behind->data.Name == other->data.Name);                              \
  }
#include "contracts/RegSettings.members.inc"
}

/// A settings object of another add-in: it keeps the collection that it is given.
TEST_F(Export, ACollectionOfTheLibrarysOwnCanBeKept) {
  Bench bench;
  const auto behind = std::make_shared<WorkbenchSettings>(bench.workbench);
  const RegSettingsRef client = windows::AdaptSettings(bench.exports->Export(behind));
  const auto texts = std::make_shared<List<std::string>>();
  for (const std::string& text : DifficultTexts(1)) texts->Add(text);
  client->SetMonitoredFolderEntryIDs(texts);
  EXPECT_EQ(behind->data.MonitoredFolderEntryIDs, DifficultTexts(1));
  const auto numbers = std::make_shared<List<int32_t>>();
  numbers->Add(INT32_MIN);
  client->SetMonitoredFolderItemTypes(numbers);
  client->LetFolderSetFlags(numbers);
  EXPECT_EQ(behind->data.MonitoredFolderItemTypes, std::vector{INT32_MIN});
  EXPECT_EQ(behind->data.FolderSetFlags, std::vector{INT32_MIN});

  {
    const CollectionRef<std::string> own = std::make_shared<List<std::string>>();
    LateBound kept(windows::ExportCollection(own).As<IUnknown>());
    kept.Call(L"add", {"b"});
    kept.Call(L"Add", {"a", windows::MissingArgument(), 1});
    kept.Call(L"Add", {"c", windows::MissingArgument(), windows::MissingArgument(), 2});
    EXPECT_EQ(own->Item(1) + own->Item(2) + own->Item(3), "abc");
    EXPECT_EQ(kept.CallForText(L"Item", {2}), "b");
    kept.Call(L"Remove", {1});
    EXPECT_EQ(kept.CallForNumber(L"Count"), 2);
    std::string seen;
    {
      const auto enumerator = kept.CallForObject(L"_NewEnum").As<IEnumVARIANT>();
      ASSERT_TRUE(enumerator);
      OwnedVariant item;
      while (enumerator->Next(1, item.Receive(), nullptr) == S_OK) {
        seen += windows::FromVariant(item.Get()).ToText() + " ";
      }
    }
    EXPECT_EQ(seen, "b c ");
    for (const int32_t position : {0, 3}) {
      try {
        kept.Call(L"Item", {position});
        ADD_FAILURE() << position;
      } catch (const Error& error) {
        EXPECT_EQ(error.Number, 9);
        EXPECT_EQ(error.Description, "Subscript out of range");
      }
    }
    EXPECT_THROW(kept.Call(L"Add", {"x", "key"}), Error) << "these lists have no keys";
  }
}

// --- the same calls, directly and through COM

/// What a series of calls answered, one line a call; an error is an answer.
class Answers {
 public:
  void Call(const std::string& name, const std::function<std::string()>& call) {
    std::string line = name + ": ";
    try {
      line += call();
    } catch (const Error& error) {
      line += "error " + std::to_string(error.Number) + " " + error.Description + " from " + error.Source +
              " help " + error.HelpFile + " " + std::to_string(error.HelpContext);
    }
    lines.push_back(line);
  }
  std::vector<std::string> lines;
};

std::string TextOf(bool value) { return value ? "True" : "False"; }
std::string TextOf(int32_t value) { return std::to_string(value); }
std::string TextOf(const std::string& value) { return value; }

template <typename Value>
void CallCollection(Answers& answers, const std::string& name,
                    const std::function<CollectionRef<Value>()>& get, const Value& value) {
  const auto call = [&](const char* part, const std::function<std::string(Collection<Value>&)>& body) {
    answers.Call(name + part, [&] { return body(Require(get())); });
  };
  call(".Add", [&](auto& list) { return list.Add(value), std::string(); });
  call(".AddBefore", [&](auto& list) { return list.AddBefore(value, 1), std::string(); });
  call(".AddAfter", [&](auto& list) { return list.AddAfter(value, 2), std::string(); });
  call(".Count", [&](auto& list) { return TextOf(list.Count()); });
  call(".Item", [&](auto& list) { return TextOf(list.Item(2)); });
  call(".Item(0)", [&](auto& list) { return TextOf(list.Item(0)); });
  call(".AddAfter(9)", [&](auto& list) { return list.AddAfter(value, 9), std::string(); });
  call(".Remove", [&](auto& list) { return list.Remove(1), std::string(); });
  call(".Remove(9)", [&](auto& list) { return list.Remove(9), std::string(); });
}

bool SampleOf(const bool*) { return true; }
int16_t SampleOf(const int16_t*) { return 12; }
int32_t SampleOf(const int32_t*) { return 70000; }
std::string SampleOf(const std::string*) { return "text"; }

void CallSettings(Answers& answers, AddinObjectFactory& objects, AddinApp& addin) {
  RegSettingsRef settings;
  answers.Call("New RegSettings", [&] { return settings = objects.CreateRegSettings(), std::string(); });
  if (settings == nullptr) return;
  answers.Call("Load", [&] {
    bool blocked = true;
    bool available = false;
    settings->Load(0, blocked, available);
    return TextOf(blocked) + TextOf(available);
  });
#define VEXA_READ(place, Name, Type) answers.Call(#Name, [&] { return TextOf(settings->Get##Name()); });
#define VEXA_READ_ONLY(place, Name, Type) VEXA_READ(place, Name, Type)
#define VEXA_PROPERTY(place, Name, Type)                                                    \
  answers.Call(#Name "=", [&] {                                                             \
    return settings->Let##Name(SampleOf(static_cast<const Type*>(nullptr))), std::string(); \
  });                                                                                       \
  VEXA_READ(place, Name, Type)
#define VEXA_COLLECTION(place, Name, Type)                                                                 \
  CallCollection<Type>(                                                                                    \
      answers, #Name, [&] { return settings->Get##Name(); }, SampleOf(static_cast<const Type*>(nullptr))); \
  answers.Call(#Name "=", [&] { return settings->Let##Name(settings->Get##Name()), std::string(); });      \
  answers.Call(#Name ":=", [&] { return settings->Set##Name(settings->Get##Name()), std::string(); });
#include "contracts/RegSettings.members.inc"
  answers.Call("RestoreHiddenDialogs", [&] { return settings->RestoreHiddenDialogs(), std::string(); });
  answers.Call("CanWrite", [&] {
    int32_t argument = 0;
    return TextOf(settings->CanWrite(argument)) + TextOf(argument);
  });
  answers.Call("FindFolderSet",
               [&] { return settings->FindFolderSet("text", "TEXT", addin.FolderSetContext()).ToText(); });
  answers.Call("ApplySettings", [&] {
    const RegSettingsRef given = settings;
    addin.ApplySettings(settings);
    return TextOf(given == settings);
  });
}

void CallFolder(Answers& answers, Utilities* utilities, const FolderRef& folder) {
  answers.Call("Folder.Name", [&] { return Require(folder).Name(); });
  answers.Call("Folder.EntryID", [&] { return Require(folder).EntryID(); });
  answers.Call("Folder.StoreID", [&] { return Require(folder).StoreID(); });
  answers.Call("Folder.DefaultItemType",
               [&] { return TextOf(static_cast<int32_t>(Require(folder).DefaultItemType())); });
  answers.Call("Folder.Parent", [&] {
    const FolderRef parent = Require(folder).Parent();
    return parent == nullptr ? "none" : parent->Name();
  });
  answers.Call("Folder.Folders", [&] { return TextOf(Require(Require(folder).Folders()).Count()); });
  if (utilities == nullptr) return;
  answers.Call("GetFolderPath", [&] { return utilities->GetFolderPath(folder); });
  answers.Call("IsPublicFolder", [&] { return TextOf(utilities->IsPublicFolder(folder)); });
}

void CallSession(Answers& answers, FixedAnswers& user, NameSpace& session, Utilities* utilities) {
  FolderRef folder;
  answers.Call("Folders", [&] {
    const std::shared_ptr<Folders> stores = session.Folders();
    const int32_t count = Require(stores).Count();
    folder = stores->Item(count);
    return TextOf(count);
  });
  CallFolder(answers, utilities, folder);
  answers.Call("Folders.Item(9)", [&] { return Require(Require(session.Folders()).Item(9)).Name(); });
  answers.Call("GetFolderFromID",
               [&] { return folder = session.GetFolderFromID("P2", "BB02"), std::string(); });
  CallFolder(answers, utilities, folder);
  answers.Call("GetFolderFromID gone", [&] { return session.GetFolderFromID("P9", "BB02"), std::string(); });
  answers.Call("GetDefaultFolder", [&] { return Require(session.GetDefaultFolder(6)).Name(); });
  answers.Call("GetDefaultFolder 99", [&] { return Require(session.GetDefaultFolder(99)).Name(); });
  user.picked = 2;
  answers.Call("PickFolder", [&] { return Require(session.PickFolder()).Name(); });
  user.picked.reset();
  answers.Call("PickFolder", [&] { return session.PickFolder() == nullptr ? "nothing" : "a folder"; });
  answers.Call("CurrentProfileName", [&] { return session.CurrentProfileName(); });
  answers.Call("CurrentUser", [&] { return Require(session.CurrentUser()).Name(); });
  std::shared_ptr<MailItem> mail;
  answers.Call("CreateItem", [&] {
    return mail = Require(session.Application()).CreateItem(ItemType::Mail), std::string();
  });
  if (mail == nullptr) return;
  answers.Call("Subject=", [&] { return mail->LetSubject("subject"), std::string(); });
  answers.Call("Body=", [&] { return mail->LetBody("a body\r\nof two lines"), std::string(); });
  answers.Call("Recipients.Add",
               [&] { return mail->AddRecipient("somebody@tolvane.example"), std::string(); });
  answers.Call("Attachments.Add", [&] { return mail->AddAttachment("C:\\log.txt"), std::string(); });
  answers.Call("Send", [&] { return mail->Send(), std::string(); });
}

void CallMonitoredFolder(Answers& answers, AddinObjectFactory& objects) {
  std::shared_ptr<MonitoredFolder> folder;
  answers.Call("New MonitoredFolder",
               [&] { return folder = objects.CreateMonitoredFolder(), std::string(); });
  if (folder == nullptr) return;
  answers.Call("EntryID=", [&] { return folder->LetEntryID("E"), std::string(); });
  answers.Call("StoreID=", [&] { return folder->LetStoreID("S"), std::string(); });
  answers.Call("ItemTypes=", [&] { return folder->LetItemTypes(5), std::string(); });
  answers.Call("ids", [&] { return folder->GetEntryID() + folder->GetStoreID(); });
  answers.Call("SetMailDefaults", [&] { return folder->SetMailDefaults(true), std::string(); });
  answers.Call("Flag=", [&] { return folder->LetFlag(4, false), std::string(); });
  answers.Call("types", [&] { return TextOf(folder->GetItemTypes()) + TextOf(folder->GetFlag(1)); });
  answers.Call("masks", [&] {
    return TextOf(folder->MaskFromResId(150)) + " " + TextOf(int32_t{folder->ResIdFromMask(8)}) + " " +
           TextOf(folder->MaskFromOlItemType(ItemType::Journal));
  });
  answers.Call("no mask", [&] { return TextOf(folder->MaskFromResId(134)); });
  answers.Call("Excluded", [&] { return TextOf(folder->Excluded()); });
}

/// Calls every member of every contract.
std::vector<std::string> CallEverything(FixedAnswers& user, AddinApp& addin, AddinObjectFactory& objects) {
  Answers answers;
  std::shared_ptr<Utilities> utilities;
  answers.Call("Utilities", [&] { return utilities = addin.Utilities(), std::string(); });
  if (utilities != nullptr) {
    answers.Call("BypassBlocked", [&] { return TextOf(utilities->BypassBlocked()); });
    answers.Call("DelayAvailable", [&] { return TextOf(utilities->DelayAvailable()); });
    answers.Call("Path", [&] { return Require(utilities->App()).Path(); });
    answers.Call("SetUserProperty", [&] {
      return utilities->SetUserProperty(nullptr, "name", Variant("value"), 1, true), std::string();
    });
    answers.Call("AboutInfo", [&] { return utilities->AboutInfo().ToText(); });
    answers.Call("GetFolderPath nothing", [&] { return utilities->GetFolderPath(nullptr); });
  }
  answers.Call("Scanner", [&] {
    const std::shared_ptr<Scanner> scanner = addin.Scanner();
    Require(scanner).StartSearch(true);
    return TextOf(scanner->IsScanning());
  });
  answers.Call("Session", [&] {
    const NameSpaceRef session = addin.Session();
    CallSession(answers, user, Require(session), utilities.get());
    return std::string();
  });
  answers.Call("SetOptionsPageOpen", [&] {
    bool open = true;
    return addin.SetOptionsPageOpen(open), TextOf(open);
  });
  CallSettings(answers, objects, addin);
  CallMonitoredFolder(answers, objects);
  return answers.lines;
}

struct Outcome {
  std::vector<std::string> answers;
  std::vector<std::string> trace;
};

/// Calls everything, with a fault planned for a member unless it is empty.
Outcome RunDirectly(const std::string& member, const Error& fault) {
  Bench bench;
  if (!member.empty()) bench.calls.PlanFault(member, 1, fault);
  std::vector<std::string> answers =
      CallEverything(bench.user, *bench.workbench.Addin(), bench.workbench.Objects());
  return {std::move(answers), bench.calls.Lines()};
}

Outcome RunThroughCom(const std::string& member, const Error& fault) {
  Bench bench;
  if (!member.empty()) bench.calls.PlanFault(member, 1, fault);
  const ClassRegistration classes(bench.exports);
  const AddinAppRef addin = windows::AdaptAddin(bench.exports->Addin().Get());
  std::vector<std::string> answers = CallEverything(bench.user, *addin, *windows::MakeObjectFactory());
  return {std::move(answers), bench.calls.Lines()};
}

TEST_F(Export, CallsAnswerAndLeaveATraceAsWithoutCom) {
  const Outcome direct = RunDirectly("", {});
  const Outcome com = RunThroughCom("", {});
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
    SCOPED_TRACE(member);
    const Outcome direct = RunDirectly(member, fault);
    ASSERT_NE(std::count_if(direct.trace.begin(), direct.trace.end(),
                            [](const std::string& line) { return line.find(" !! 1234") != line.npos; }),
              0)
        << "the fault did not come up";
    const Outcome com = RunThroughCom(member, fault);
    EXPECT_EQ(com.answers, direct.answers);
    EXPECT_EQ(com.trace, direct.trace);
    ++tried;
  }
  EXPECT_GT(tried, 150);
}

// --- called by name

TEST_F(Export, ForEachGoesThroughCollectionsAndFolders) {
  Bench bench;
  const auto behind = std::make_shared<WorkbenchSettings>(bench.workbench);
  behind->data.FolderSetFlags = {3, 1, 2};
  const ComPtr<IDispatch> lists[] = {windows::ExportCollection(behind->GetFolderSetFlags()),
                                     bench.exports->Export(bench.workbench.Addin()->Session()->Folders())};
  std::string seen;
  for (const ComPtr<IDispatch>& list : lists) {
    const auto enumerator = LateBound(list.As<IUnknown>()).CallForObject(L"_NewEnum").As<IEnumVARIANT>();
    ASSERT_TRUE(enumerator);
    OwnedVariant item;
    while (enumerator->Next(1, item.Receive(), nullptr) == S_OK) {
      seen +=
          (item.Get().vt == VT_DISPATCH ? LateBound(ComPtr<IUnknown>(item.Get().punkVal)).CallForText(L"Name")
                                        : windows::FromVariant(item.Get()).ToText()) +
          "; ";
    }
    ASSERT_EQ(enumerator->Reset(), S_OK);
    EXPECT_EQ(enumerator->Skip(1), S_OK);
    const ComPtr<IEnumVARIANT> copy = [&] {
      ComPtr<IEnumVARIANT> made;
      EXPECT_EQ(enumerator->Clone(made.Receive()), S_OK);
      return made;
    }();
    VARIANT rest[3]{};
    ULONG fetched = 0;
    EXPECT_EQ(copy->Next(3, rest, &fetched), S_FALSE);
    seen += std::to_string(fetched) + " behind the first; ";
    for (VARIANT& left : rest) VariantClear(&left);
    EXPECT_EQ(copy->Skip(1), S_FALSE);
  }
  EXPECT_EQ(seen, "3; 1; 2; 2 behind the first; Mailbox; Public Folders; 1 behind the first; ");
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

TEST_F(Export, TheSessionStandsAboveTheStoresAndIsNoFolder) {
  Bench bench;
  LateBound session(bench.exports->Export(bench.workbench.Addin()->Session()).As<IUnknown>());
  LateBound store(LateBound(session.CallForObject(L"Folders")).CallForObject(L"Item", {1}));
  LateBound above(store.CallForObject(L"Parent"));
  EXPECT_EQ(store.CallForNumber(L"Class"), 2);
  EXPECT_NE(above.CallForNumber(L"Class"), 2);
  EXPECT_EQ(LateBound(above.CallForObject(L"Folders")).CallForNumber(L"Count"), 2);
}

// --- misuse of the interfaces

TEST_F(Export, ObjectsOfOthersAndMissingPlacesAreErrors) {
  Bench bench;
  const ComPtr<IVexaAddin> addin = bench.exports->Addin();
  ComPtr<IVexaUtilities> utilities;
  ASSERT_EQ(addin->get_Utilities(utilities.Receive()), S_OK);
  const HRESULT nothingThere = static_cast<HRESULT>(0x800A0005);
  EXPECT_EQ(addin->get_Utilities(nullptr), nothingThere);
  EXPECT_EQ(addin->ApplySettings(nullptr), nothingThere);
  EXPECT_EQ(utilities->get_BypassBlocked(nullptr), nothingThere);

  const HRESULT wrongType = static_cast<HRESULT>(0x800A000D);
  windows::Bstr path;
  EXPECT_EQ(utilities->GetFolderPath(addin.As<IDispatch>().Get(), path.Receive()), wrongType);
  EXPECT_EQ(path.Get(), nullptr);

  const ComPtr<IRegSettings> settings = bench.exports->NewRegSettings();
  EXPECT_EQ(settings->put_ContactEntryIDs(nullptr), static_cast<HRESULT>(0x800A005B));
  EXPECT_EQ(settings->put_UsingEnterpriseSettings(VARIANT_TRUE), E_NOTIMPL);
  EXPECT_EQ(settings->Unused60(), E_NOTIMPL);
  SetErrorInfo(0, nullptr);
}

}  // namespace
}  // namespace vexa::workbench
