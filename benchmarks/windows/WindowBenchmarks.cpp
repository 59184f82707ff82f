// What the real windows cost beyond the least that Windows itself takes for the same: the page against an
// empty control, the tree against a bare loop of insertions, each dialog against a
// window with the same controls bare; and whether
// a thousand pages leave memory behind. Under Wine the times themselves mean little, so the ratios count.
#include <windows.h>
// windows.h first
#include <commctrl.h>
#include <ole2.h>
#include <psapi.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <vector>

#include "VexaControls.h"
#include "benchmarks/NobodyThere.h"
#include "benchmarks/windows/EmptyControl.h"
#include "windows/com/Com.h"
#include "windows/com/Text.h"
#include "windows/views/FormWindow.h"
#include "windows/views/TreeMirror.h"
#include "windows/views/layouts/Layouts.h"
#include "workbench/EveryScreen.h"

namespace vexa::windows {
namespace {

constexpr int Rounds = 15;
constexpr int WarmRounds = 2;

using Work = std::function<double()>;  // does it once; milliseconds

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double>& samples) {
  std::sort(samples.begin(), samples.end());
  return samples[samples.size() / 2];
}

/// Both in turn, so that what disturbs the machine disturbs both.
void Compare(const std::string& what, const Work& limit, const Work& ours) {
  std::vector<double> limits;
  std::vector<double> own;
  for (int round = 0; round < Rounds + WarmRounds; ++round) {
    const double bare = limit();
    const double real = ours();
    if (round < WarmRounds) continue;
    limits.push_back(bare);
    own.push_back(real);
  }
  const double bare = Median(limits);
  const double real = Median(own);
  std::printf("%-46s %9.2f ms %9.2f ms %7.2f\n", what.c_str(), bare, real, real / bare);
}

void Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

/// A window to put things in; it hands the questions of a tree window to whoever wants to answer them.
class Frame {
 public:
  Frame() {
    static const ATOM windowClass = [] {
      WNDCLASSW definition{};
      definition.lpfnWndProc = Procedure;
      definition.hInstance = GetModuleHandleW(nullptr);
      definition.lpszClassName = L"VexaBenchmarkFrame";
      definition.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
      return RegisterClassW(&definition);
    }();
    window_ = CreateWindowExW(0, MAKEINTATOM(windowClass), L"Frame", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600,
                              nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame() { DestroyWindow(window_); }

  HWND Handle() const { return window_; }
  void Show() const {
    ShowWindow(window_, SW_SHOWNA);
    UpdateWindow(window_);
    Pump();
  }

  std::function<void(TVITEMW&)> fillIn;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* const self = reinterpret_cast<const Frame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NOTIFY && self != nullptr && self->fillIn != nullptr &&
        reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(TVN_GETDISPINFOW)) {
      self->fillIn(reinterpret_cast<NMTVDISPINFOW*>(lParam)->item);
      return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  HWND window_;
};

// --- the page

template <typename Function>
Function* Find(HMODULE module, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

ComPtr<IUnknown> MakePage(HMODULE module) {
  void* found = nullptr;
  Check(Find<decltype(DllGetClassObject)>(module, "DllGetClassObject")(CLSID_OutlookPropertiesPage,
                                                                       IID_IClassFactory, &found));
  const auto factory = ComPtr<IClassFactory>::Attach(static_cast<IClassFactory*>(found));
  void* page = nullptr;
  Check(factory->CreateInstance(nullptr, IID_IUnknown, &page));
  return ComPtr<IUnknown>::Attach(static_cast<IUnknown*>(page));
}

ComPtr<IUnknown> MakeEmpty(HMODULE module) {
  return ComPtr<IUnknown>::Attach(Find<MakeEmptyControlFunction>(module, "MakeEmptyControl")());
}

/// Shows a control in a container that is not of this system, and takes everything back.
void LiveOnce(const std::filesystem::path& library, ComPtr<IUnknown> (*make)(HMODULE)) {
  static const HMODULE atl = LoadLibraryW(L"atl.dll");
  static auto* const attach = Find<HRESULT WINAPI(IUnknown*, HWND, IUnknown**)>(atl, "AtlAxAttachControl");
  const HMODULE module = LoadLibraryW(library.c_str());
  {
    const Frame frame;
    const ComPtr<IUnknown> control = make(module);
    ComPtr<IUnknown> host;
    Check(attach(control.Get(), frame.Handle(), host.Receive()));
    frame.Show();
  }
  Pump();
  FreeLibrary(module);
}

/// Copies of a library, each of which is new to the process when it is loaded.
class Copies {
 public:
  explicit Copies(const std::filesystem::path& library)
      : library_(library),
        folder_(std::filesystem::temp_directory_path() / ("vexa-" + library.stem().string())) {
    std::filesystem::create_directories(folder_);
  }
  std::filesystem::path Next() {
    const std::filesystem::path copy = folder_ / (std::to_string(++count_) + ".dll");
    std::filesystem::copy_file(library_, copy, std::filesystem::copy_options::overwrite_existing);
    return copy;
  }

 private:
  std::filesystem::path library_;
  std::filesystem::path folder_;
  int count_ = 0;
};

Work FirstLives(Copies& copies, ComPtr<IUnknown> (*make)(HMODULE)) {
  return [&copies, make] {
    const std::filesystem::path copy = copies.Next();
    return Milliseconds([&] { LiveOnce(copy, make); });
  };
}

Work Lives(const std::filesystem::path& library, ComPtr<IUnknown> (*make)(HMODULE)) {
  return [=] { return Milliseconds([&] { LiveOnce(library, make); }); };
}

double MemoryInUse() {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return static_cast<double>(counters.WorkingSetSize) / 1024;
}

void MeasureLives(const std::filesystem::path& module, const std::filesystem::path& empty) {
  Copies modules(module);
  Copies empties(empty);
  Compare("page: load, show, take away", FirstLives(empties, MakeEmpty), FirstLives(modules, MakePage));
  LoadLibraryW(empty.c_str());  // stays loaded, as the module does by itself
  Compare("page: show again, take away", Lives(empty, MakeEmpty), Lives(module, MakePage));

  constexpr int some = 100;
  constexpr int many = 1000;
  for (int i = 0; i < some; ++i) LiveOnce(module, MakePage);
  const double before = MemoryInUse();
  for (int i = 0; i < many; ++i) LiveOnce(module, MakePage);
  const double after = MemoryInUse();
  std::printf("%-46s %9.0f KB %9.0f KB %7.2f\n", "memory after 100 lives, and 1,000 more", before, after,
              after / before);
}

// --- the tree

constexpr int Children = 10000;

class TreeForm final : public Form {
 public:
  TreeForm() : Form("Tree") {}
  Tree tree{*this, "tree"};
};

std::string KeyOf(int number) {
  constexpr size_t keyLength = 312;
  const std::string digits = std::to_string(number);
  return std::string(keyLength - digits.size(), '0') + digits;
}

class TreeWindow {
 public:
  TreeWindow() {
    constexpr DWORD style =
        TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_CHECKBOXES;
    RECT area{};
    GetClientRect(frame_.Handle(), &area);
    tree_ = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, nullptr, WS_CHILD | WS_VISIBLE | style, 0, 0,
                            area.right, area.bottom, frame_.Handle(), nullptr, GetModuleHandleW(nullptr),
                            nullptr);
    frame_.Show();
  }

  HWND Handle() const { return tree_; }
  Frame& Parent() { return frame_; }

 private:
  Frame frame_;
  HWND tree_;
};

enum class Texts { HandedOver, AskedFor };

/// A tree window that is filled by nothing but insertions.
double InsertBare(const std::vector<std::wstring>& texts, Texts how) {
  TreeWindow window;
  window.Parent().fillIn = [&](TVITEMW& item) {
    if ((item.mask & TVIF_TEXT) != 0) {
      item.pszText = const_cast<wchar_t*>(texts[static_cast<size_t>(item.lParam)].c_str());
    }
  };
  const HWND tree = window.Handle();
  TVINSERTSTRUCTW insert{};
  insert.hInsertAfter = TVI_FIRST;
  insert.item.mask = TVIF_TEXT | TVIF_PARAM;
  std::wstring text = L"Root";
  insert.item.pszText = text.data();
  const auto root = reinterpret_cast<HTREEITEM>(Send(tree, TVM_INSERTITEMW, 0, &insert));
  return Milliseconds([&] {
    Send(tree, WM_SETREDRAW, FALSE);
    insert.hParent = root;
    for (size_t i = 0; i < texts.size(); ++i) {
      insert.item.pszText =
          how == Texts::AskedFor ? LPSTR_TEXTCALLBACKW : const_cast<wchar_t*>(texts[i].c_str());
      insert.item.lParam = static_cast<LPARAM>(i);
      insert.hInsertAfter = reinterpret_cast<HTREEITEM>(Send(tree, TVM_INSERTITEMW, 0, &insert));
    }
    Send(tree, TVM_EXPAND, TVE_EXPAND, root);
    Send(tree, WM_SETREDRAW, TRUE);
    UpdateWindow(tree);
  });
}

/// The library's tree, from the first new node to the last one in the window, its own bookkeeping included.
double InsertOurs(const std::vector<std::string>& keys, HMODULE module) {
  TreeWindow window;
  TreeForm form;
  const Tree::Node root = form.tree.Add(Tree::NoNode, "root", "Root");
  IconCache icons(module, 16);
  TreeMirror mirror(window.Handle(), form.tree, icons);
  window.Parent().fillIn = [&](TVITEMW& item) { mirror.FillIn(item); };
  return Milliseconds([&] {
    for (const std::string& key : keys) form.tree.Add(root, key, "Folder", "#139");
    form.tree.SetExpanded(root, true);
    mirror.Sync();
    UpdateWindow(window.Handle());
  });
}

void MeasureTree(HMODULE module) {
  std::vector<std::string> keys;
  keys.reserve(Children);
  for (int i = 0; i < Children; ++i) keys.push_back(KeyOf(i));
  const std::vector<std::wstring> texts(Children, L"Folder");
  const Work ours = [&] { return InsertOurs(keys, module); };
  Compare(
      "tree: 10,000 children, texts asked for", [&] { return InsertBare(texts, Texts::AskedFor); }, ours);
  Compare(
      "tree: 10,000 children, texts handed over", [&] { return InsertBare(texts, Texts::HandedOver); }, ours);
}

// --- the dialogs

/// A window of the system as somebody made it.
struct WindowCopy {
  explicit WindowCopy(HWND window) {
    GetClassNameW(window, windowClass.data(), static_cast<int>(windowClass.size()));
    style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
    extendedStyle = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
    GetWindowRect(window, &area);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&area), 2);
  }
  void Make(HWND parent) const {
    CreateWindowExW(extendedStyle, windowClass.data(), L"Text", style, area.left, area.top,
                    area.right - area.left, area.bottom - area.top, parent, nullptr,
                    GetModuleHandleW(nullptr), nullptr);
  }

  std::array<wchar_t, 64> windowClass{};
  DWORD style;
  DWORD extendedStyle;
  RECT area{};
};

class DialogTimer final : public workbench::EveryScreen {
 public:
  explicit DialogTimer(HMODULE module) : module_(module) {}

 private:
  std::shared_ptr<FormWindow> Show(Form& form, Dialog* dialog) const {
    auto window = FormWindow::Make(form, {module_, FindLayout(form.Name()), nullptr, dialog});
    ShowWindow(window->Handle(), SW_SHOWNA);
    UpdateWindow(window->Handle());
    Pump();
    return window;
  }

  void Opened(Form& form, Dialog* dialog) override {
    if (dialog == nullptr) return;
    std::vector<WindowCopy> controls;
    {
      const auto window = Show(form, dialog);
      for (HWND child = GetWindow(window->Handle(), GW_CHILD); child != nullptr;
           child = GetWindow(child, GW_HWNDNEXT)) {
        controls.emplace_back(child);
      }
      window->Close();
    }
    const Work bare = [&] {
      return Milliseconds([&] {
        const Frame frame;
        for (const WindowCopy& control : controls) control.Make(frame.Handle());
        frame.Show();
      });
    };
    const Work ours = [&] { return Milliseconds([&] { Show(form, dialog)->Close(); }); };
    Compare("dialog: " + form.Name() + ", " + std::to_string(controls.size()) + " controls", bare, ours);
  }

  HMODULE module_;
};

workbench::Profile SmallProfile() {
  workbench::Profile profile;
  workbench::World& world = profile.world;
  const uint32_t store = world.AddStore("AA01", workbench::StoreKind::Mailbox);
  const workbench::FolderIndex root =
      world.AddFolder(store, workbench::NoFolder, "Mailbox", "M1", ItemType::Mail);
  world.AddFolder(store, root, "Contacts", "M2", ItemType::Contact);
  profile.addin.path = "C:\\Program Files\\Vexa";
  return profile;
}

void MeasureDialogs(HMODULE module) {
  DialogTimer timer(module);
  workbench::NoAnswers answers;
  workbench::Stage stage(SmallProfile(), "", 1033, timer, answers);
  OutlookPropertiesPage& page = stage.CreatePage();
  page.Initialize(stage.workbench.Addin());
  page.FocusFirst();
  timer.Walk(page);
}

int Run(const std::filesystem::path& folder) {
  Check(OleInitialize(nullptr));
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
  InitCommonControlsEx(&classes);
  const std::filesystem::path path = folder / "VexaControls.dll";
  const HMODULE module = LoadLibraryW(path.c_str());
  std::printf("%-46s %12s %12s %7s\n", "", "limit", "VexaControls", "ratio");
  MeasureTree(module);
  MeasureDialogs(module);
  std::printf("%-46s %12s %9.0f KB\n", "size of VexaControls.dll", "",
              static_cast<double>(std::filesystem::file_size(path)) / 1024);
  MeasureLives(path, folder / "EmptyControl.dll");
  OleUninitialize();
  return 0;
}

}  // namespace
}  // namespace vexa::windows

int main(int /*argc*/, char** argv) {
  try {
    return vexa::windows::Run(std::filesystem::absolute(argv[0]).parent_path());
  } catch (const vexa::Error& error) {
    std::fprintf(stderr, "window-bench: %s\n", error.Description.c_str());
    return 1;
  }
}
