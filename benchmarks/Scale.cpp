// The picker against the size of what it works on: what opening, expanding, finding, clearing and saving cost
// from small to as large as folder hierarchies get, printed with the slope of each line on log-log paper and
// drawn as one picture.
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>

#include "benchmarks/Contest.h"
#include "benchmarks/NobodyThere.h"
#include "dialogs/frmFolders.h"
#include "display/UserActions.h"

namespace vexa::bench {
namespace {

using namespace vexa::workbench;

constexpr const char* StoreID = "57F0";

class NobodysParent final : public DialogParent {
 public:
  void SetDirty() override {}
};

/// A stage on one generated store, for one picker after the other.
struct PickerStage {
  PickerStage(uint32_t folders, uint32_t breadth, int32_t storedEntries = 0)
      : stage(MakeProfile(folders, breadth, storedEntries), "", std::nullopt, windows, answers) {
    stage.calls.SetRecording(false);
    settings = stage.services.objects.CreateRegSettings();
    bool blocked = false;
    bool available = false;
    settings->Load(0, blocked, available);
  }

  static Profile MakeProfile(uint32_t folders, uint32_t breadth, int32_t storedEntries) {
    Profile profile;
    GeneratedFolders rule;
    rule.name = "Archive";
    rule.count = folders;
    rule.breadth = breadth;
    profile.world.AddGeneratedStore(StoreID, StoreKind::PersonalFolders, rule);
    profile.settings.MonitoredFolderCount = storedEntries;
    for (int32_t i = 1; i <= storedEntries; ++i) {
      profile.settings.MonitoredFolderEntryIDs.push_back(rule.EntryIdOf(static_cast<uint32_t>(i)));
      profile.settings.MonitoredFolderStoreIDs.emplace_back(StoreID);
      profile.settings.MonitoredFolderItemTypes.push_back(1);
    }
    return profile;
  }

  std::unique_ptr<frmFolders> Open() {
    auto picker = std::make_unique<frmFolders>(stage.services);
    picker->Initialize(stage.workbench.Addin(), settings, parent);
    return picker;
  }
  /// The same with every folder of the store in the tree.
  std::unique_ptr<frmFolders> OpenWithAll() {
    std::unique_ptr<frmFolders> picker = Open();
    picker->tvFolders.Remove(picker->tvFolders.LastChild(Tree::NoNode));
    picker->AddFolder(stage.workbench.Addin()->Session()->Folders()->Item(1), Tree::NoNode, true);
    return picker;
  }

  NoWindows windows;
  NoAnswers answers;
  NobodysParent parent;
  Stage stage;
  RegSettingsRef settings;
};

struct Line {
  std::string name;
  bool flat;  // must not depend on the size, else it must be in proportion to it
  std::vector<double> sizes;
  std::vector<double> microseconds;

  void Add(double size, const std::vector<double>& nanoseconds) {
    sizes.push_back(size);
    microseconds.push_back(SpreadOf(nanoseconds).median / 1e3);
  }
  /// Of the straight line that fits best, both axes logarithmic.
  double Slope() const {
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    for (size_t i = 0; i < sizes.size(); ++i) {
      const double lx = std::log10(sizes[i]);
      const double ly = std::log10(microseconds[i]);
      x += lx;
      y += ly;
      xx += lx * lx;
      xy += lx * ly;
    }
    const auto n = static_cast<double>(sizes.size());
    return (n * xy - x * y) / (n * xx - x * x);
  }
};

constexpr int Repeats = 5;

template <typename Measure>
std::vector<double> Repeated(Measure&& measure) {
  std::vector<double> figures;
  for (int i = 0; i < Repeats; ++i) figures.push_back(measure());
  return figures;
}

Line OpenByFolders() {
  Line line{"open, by folders of the store", true, {}, {}};
  for (const uint32_t folders : {1'000U, 10'000U, 100'000U, 1'000'000U}) {
    PickerStage stage(folders, 10);
    line.Add(folders, Repeated([&] { return PerUnit(1, [&] { Keep(stage.Open()); }); }));
  }
  return line;
}

/// And what is done with the entries: all of them below, so that the records are the same ones.
struct EntryLines {
  Line open{"open, by stored entries", false, {}, {}};
  Line save{"save, by stored entries", false, {}, {}};
  Line clear{"Clear All, by checked folders", false, {}, {}};
};

EntryLines ByEntries() {
  EntryLines lines;
  for (const int32_t entries : {100, 1'000, 10'000}) {
    PickerStage stage(1'000'000, 10, entries);
    lines.open.Add(entries, Repeated([&] {
                     std::unique_ptr<frmFolders> picker;
                     return Timed([&] { picker = stage.Open(); });
                   }));
    lines.save.Add(entries, Repeated([&] {
                     const std::unique_ptr<frmFolders> picker = stage.Open();
                     return Timed([&] { UserActions(*picker).Click(picker->cmdOk); });
                   }));
  }
  for (const int32_t entries : {100, 1'000, 10'000}) {
    PickerStage stage(100'000, 10, entries);
    lines.clear.Add(entries, Repeated([&] {
                      const std::unique_ptr<frmFolders> picker = stage.OpenWithAll();
                      return Timed([&] { UserActions(*picker).Click(picker->cmdClear); });
                    }));
  }
  return lines;
}

Line ExpandByChildren() {
  Line line{"expand, by children", false, {}, {}};
  for (const uint32_t children : {100U, 1'000U, 10'000U, 100'000U}) {
    PickerStage stage(children + 1, children);
    line.Add(children, Repeated([&] {
               const std::unique_ptr<frmFolders> picker = stage.Open();
               Tree& tree = picker->tvFolders;
               return Timed([&] { UserActions(*picker).Expand(tree, tree.LastChild(Tree::NoNode), true); });
             }));
  }
  return line;
}

/// A chain of folders, opened from the top to the bottom.
Line ExpandByDepth() {
  Line line{"expand a chain, by depth", false, {}, {}};
  for (const uint32_t depth : {10U, 30U, 100U, 300U}) {
    PickerStage stage(depth, 1);
    line.Add(depth, Repeated([&] {
               const std::unique_ptr<frmFolders> picker = stage.Open();
               Tree& tree = picker->tvFolders;
               return Timed([&] {
                 for (Tree::Node node = tree.LastChild(Tree::NoNode); node != Tree::NoNode;
                      node = tree.FirstChild(node)) {
                   UserActions(*picker).Expand(tree, node, true);
                 }
               });
             }));
  }
  return line;
}

/// Finding a folder of each of a thousand keys, in trees with every folder of the store.
Line FindByFolders() {
  Line line{"find 1,000 keys, by folders in the tree", true, {}, {}};
  for (const uint32_t folders : {1'000U, 10'000U, 100'000U, 1'000'000U}) {
    PickerStage stage(folders, 10);
    const std::unique_ptr<frmFolders> picker = stage.OpenWithAll();
    GeneratedFolders rule;
    rule.count = folders;
    std::vector<std::string> keys;
    for (uint32_t i = 0; i < 1'000; ++i) {
      keys.push_back(
          FolderKey(rule.EntryIdOf(static_cast<uint32_t>(uint64_t{i} * folders / 1'000)), StoreID));
    }
    const Tree& tree = picker->tvFolders;
    line.Add(folders, Repeated([&] {
               return PerUnit(1, [&] {
                 for (const std::string& key : keys) {
                   if (tree.Find(key) == Tree::NoNode) std::abort();
                 }
               });
             }));
  }
  return line;
}

// --- the picture

void Draw(const std::vector<Line>& lines, const std::string& path) {
  constexpr double left = 70;
  constexpr double top = 20;
  constexpr double decade = 90;
  constexpr int xDecades = 5;  // 10 .. 1,000,000
  constexpr int yDecades = 6;  // 1 us .. 1 s
  constexpr double width = left + xDecades * decade + 340;
  constexpr double height = top + yDecades * decade + 50;
  const auto x = [&](double size) { return left + (std::log10(size) - 1) * decade; };
  const auto y = [&](double microseconds) { return top + (yDecades - std::log10(microseconds)) * decade; };
  constexpr std::array<const char*, 8> colours{"#1b6ca8", "#c0392b", "#1e8449", "#8e44ad",
                                               "#b9770e", "#117a65", "#5d6d7e", "#000000"};
  std::ofstream svg(path);
  svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\"" << height
      << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  const auto grid = [&](double x1, double y1, double x2, double y2) {
    svg << "<line x1=\"" << x1 << "\" y1=\"" << y1 << "\" x2=\"" << x2 << "\" y2=\"" << y2
        << "\" stroke=\"#ddd\"/>\n";
  };
  const auto text = [&](double atX, double atY, const char* anchor, const std::string& words,
                        const char* colour = "#333") {
    svg << "<text x=\"" << atX << "\" y=\"" << atY << "\" text-anchor=\"" << anchor << "\" fill=\"" << colour
        << "\">" << words << "</text>\n";
  };
  constexpr std::array<const char*, 6> sizes{"10", "100", "1,000", "10,000", "100,000", "1,000,000"};
  constexpr std::array<const char*, 7> times{"1 us", "10 us", "100 us", "1 ms", "10 ms", "100 ms", "1 s"};
  const double right = left + xDecades * decade;
  const double bottom = top + yDecades * decade;
  for (int i = 0; i <= xDecades; ++i) {
    grid(left + i * decade, top, left + i * decade, bottom);
    text(left + i * decade, bottom + 18, "middle", sizes[static_cast<size_t>(i)]);
  }
  for (int i = 0; i <= yDecades; ++i) {
    grid(left, bottom - i * decade, right, bottom - i * decade);
    text(left - 8, bottom - i * decade + 4, "end", times[static_cast<size_t>(i)]);
  }
  text((left + right) / 2, bottom + 40, "middle", "folders, entries, children or levels");
  for (size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    svg << "<polyline fill=\"none\" stroke=\"" << colours[i] << "\" stroke-width=\"2\" points=\"";
    for (size_t k = 0; k < line.sizes.size(); ++k) {
      svg << x(line.sizes[k]) << "," << y(line.microseconds[k]) << " ";
    }
    svg << "\"/>\n";
    for (size_t k = 0; k < line.sizes.size(); ++k) {
      svg << "<circle cx=\"" << x(line.sizes[k]) << "\" cy=\"" << y(line.microseconds[k])
          << "\" r=\"3\" fill=\"" << colours[i] << "\"/>\n";
    }
    char slope[32];
    std::snprintf(slope, sizeof slope, ", slope %.2f", line.Slope());
    text(right + 14, top + 16 + 20 * static_cast<double>(i), "start", line.name + slope, colours[i]);
  }
  svg << "</svg>\n";
}

}  // namespace

std::vector<Verdict> MeasureScale(const std::string& picture) {
  EntryLines entries = ByEntries();
  const std::vector<Line> lines{OpenByFolders(),        std::move(entries.open), ExpandByChildren(),
                                ExpandByDepth(),        FindByFolders(),         std::move(entries.clear),
                                std::move(entries.save)};
  std::printf("\nthe picker against size, microseconds (medians of %d)\n", Repeats);
  std::vector<Verdict> verdicts;
  for (const Line& line : lines) {
    std::printf("  %-42s", line.name.c_str());
    for (size_t i = 0; i < line.sizes.size(); ++i) {
      std::printf(" %9.0f: %-9.1f", line.sizes[i], line.microseconds[i]);
    }
    std::printf(" slope %.2f\n", line.Slope());
    char text[32];
    std::snprintf(text, sizeof text, ": slope %.2f", line.Slope());
    // A line that is linear may be flatter where a fixed part shows, and caches make larger sizes dearer.
    verdicts.push_back({line.name + (line.flat ? " (not dependent)" : " (linear at most)") + text,
                        line.Slope() <= (line.flat ? 0.35 : 1.25)});
  }
  for (const Verdict& verdict : verdicts) {
    std::printf("  goal  %-70s %s\n", verdict.text.c_str(), verdict.met ? "met" : "NOT MET");
  }
  if (!picture.empty()) Draw(lines, picture);
  return verdicts;
}

}  // namespace vexa::bench
