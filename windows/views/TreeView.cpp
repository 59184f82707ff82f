#include "windows/com/Text.h"
#include "windows/views/ControlViews.h"
#include "windows/views/Handles.h"
#include "windows/views/TreeMirror.h"

namespace vexa::windows {
namespace {

constexpr int WidthUnits = 100;
constexpr int RowPadding = 4;  // at 96 dpi
constexpr int DefaultRows = 6;
constexpr UINT ImageMessage = WM_APP + 2;  // an item's image by name, for those who drive the window

/// Neither checks nor opens anything by itself: the form does, and the mirror shows it.
class TreeView final : public ControlView {
 public:
  TreeView(ViewHost& host, Tree& tree) : ControlView(host, tree), tree_(tree) {
    constexpr DWORD style =
        TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_DISABLEDRAGDROP;
    Create(WC_TREEVIEWW, style | WS_TABSTOP, WS_EX_CLIENTEDGE);
    // Set on creation, the style makes check boxes that cannot be set before the window is seen.
    SetWindowLongPtrW(Window(), GWL_STYLE, GetWindowLongPtrW(Window(), GWL_STYLE) | TVS_CHECKBOXES);
    mirror_.emplace(Window(), tree, host.Icons());
    ControlView::Sync();
  }

  void Sync() override {
    ControlView::Sync();
    mirror_->Sync();
  }

  void SyncFont() override {
    ControlView::SyncFont();
    mirror_->UseIcons(host_.Icons());
  }

  int MinWidth() const override { return host_.Face().UnitsX(WidthUnits); }
  int HeightFor(int /*width*/) const override { return HeightForLines(DefaultRows); }
  int HeightForLines(int lines) const override {
    const Typeface& face = host_.Face();
    return (std::max(face.LineHeight(), host_.Icons().Size()) + face.Scale(RowPadding)) * lines +
           2 * GetSystemMetrics(SM_CYEDGE);
  }

  bool TakesLetters() const override { return true; }

  bool KeyDown(int key) override {
    switch (key) {
      case VK_SPACE:
      case VK_LEFT:
      case VK_UP:
      case VK_RIGHT:
      case VK_DOWN:
      case VK_ADD:
      case VK_SUBTRACT:
      case VK_MULTIPLY:
        host_.Actions().Press(key);
        return true;
      default:
        return ControlView::KeyDown(key);
    }
  }

  LRESULT Notified(UINT message, WPARAM /*wParam*/, LPARAM lParam) override {
    if (message != WM_NOTIFY) return 0;
    switch (reinterpret_cast<const NMHDR*>(lParam)->code) {
      case TVN_GETDISPINFOW:
        mirror_->FillIn(reinterpret_cast<NMTVDISPINFOW*>(lParam)->item);
        return 0;
      case TVN_ITEMEXPANDINGW:
        return Expanding(*reinterpret_cast<const NMTREEVIEWW*>(lParam));
      case TVN_SELCHANGEDW:
        SelectionChanged(*reinterpret_cast<const NMTREEVIEWW*>(lParam));
        return 0;
      default:
        return 0;
    }
  }

 protected:
  std::wstring WindowText() const override { return AccessibleName(); }

  bool Intercept(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    switch (message) {
      case ImageMessage:
        result = reinterpret_cast<LRESULT>(
            tree_.Image(mirror_->NodeOf(reinterpret_cast<HTREEITEM>(lParam))).c_str());
        return true;
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK: {
        if (!ReachByMouse()) return true;
        TVHITTESTINFO hit{};
        hit.pt = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        const Tree::Node node = NodeAt(hit);
        const bool onBox = (hit.flags & TVHT_ONITEMSTATEICON) != 0;
        const bool onItem = (hit.flags & (TVHT_ONITEMICON | TVHT_ONITEMLABEL)) != 0;
        // A second click in a row opens or closes the branch, which the window does.
        if (node == Tree::NoNode || !(onBox || (onItem && message == WM_LBUTTONDOWN))) return false;
        SetFocus(Window());
        if (onBox) {
          ToggleCheck(node);
        } else {
          host_.Actions().ClickNode(tree_, node);
        }
        return true;
      }
      case WM_CHAR:
        if (wParam == VK_SPACE) return true;  // else it looks for a text that begins with one, and beeps
        break;
      default:
        break;
    }
    return ControlView::Intercept(message, wParam, lParam, result);
  }

 private:
  Tree::Node NodeAt(TVHITTESTINFO& hit) const {
    const auto item = reinterpret_cast<HTREEITEM>(Send(Window(), TVM_HITTEST, 0, &hit));
    return item == nullptr ? Tree::NoNode : mirror_->NodeOf(item);
  }

  void ToggleCheck(Tree::Node node) { host_.Actions().CheckNode(tree_, node, !tree_.Checked(node)); }

  /// The user wants to open or close a branch: the form does it, and the mirror shows it.
  LRESULT Expanding(const NMTREEVIEWW& change) {
    if (mirror_->IsWorking()) return FALSE;
    const auto node = static_cast<Tree::Node>(change.itemNew.lParam);
    const bool open = change.action == TVE_EXPAND ||
                      (change.action == TVE_TOGGLE && (change.itemNew.state & TVIS_EXPANDED) == 0);
    host_.Actions().Expand(tree_, node, open);
    return TRUE;
  }

  /// The window has selected a node by itself: one that typed letters have found.
  void SelectionChanged(const NMTREEVIEWW& change) {
    if (mirror_->IsWorking() || change.itemNew.hItem == nullptr) return;
    if (change.action != TVC_BYMOUSE && change.action != TVC_BYKEYBOARD) return;
    const auto node = static_cast<Tree::Node>(change.itemNew.lParam);
    const Outcome outcome = host_.Actions().ClickNode(tree_, node);
    if (outcome != Outcome::Done && Window() != nullptr) mirror_->ShowSelection();
  }

  Tree& tree_;
  std::optional<TreeMirror> mirror_;
};

}  // namespace

ControlViewPtr MakeTreeView(ViewHost& host, Tree& tree) { return std::make_unique<TreeView>(host, tree); }

}  // namespace vexa::windows
