// Commands that try parts of the library by themselves: localized texts, error records and their trails,
// the geometry of section headers.
#include <algorithm>
#include <array>
#include <limits>

#include "core/CachedError.h"
#include "workbench/Console.h"
#include "workbench/Names.h"

namespace vexa::workbench {
namespace {

using Words = std::vector<std::string>;

void LoadText(Console& console, const Words& words) {
  const int32_t id = NumberWord(words[0], "the id");
  const std::vector<Variant> arguments(words.begin() + 1, words.end());
  console.AsHost(
      [&] { console.Out() << QuotedText(console.Stage().resources.LoadString(id, arguments)) << "\n"; });
}

void LoadPicture(Console& console, const Words& words) {
  const int32_t id = NumberWord(words[1], "the id");
  const Resources& resources = console.Stage().resources;
  const bool icon = SameName(words[0], "icon");
  if (!icon && !SameName(words[0], "cursor")) {
    throw ScriptError("a picture is an icon or a cursor, not \"" + words[0] + "\"");
  }
  console.AsHost([&] {
    const Picture picture = icon ? resources.LoadIcon(id) : resources.LoadCursor(id);
    console.Out() << (icon ? "icon " : "cursor ") << picture.id << "\n";
  });
}

// --- error records

struct ProcedureName {
  std::string module;
  std::string procedure;
  int32_t line = 0;
};

/// "Module.Procedure" or "Module.Procedure(12)".
ProcedureName ParseProcedure(const std::string& word) {
  ProcedureName name;
  std::string text = word;
  if (const size_t open = text.find('('); open != std::string::npos && text.ends_with(')')) {
    name.line = NumberWord(text.substr(open + 1, text.size() - open - 2), "the line in \"" + word + "\"");
    text.resize(open);
  }
  const size_t point = text.find('.');
  if (point == std::string::npos) {
    throw ScriptError("a procedure is written MODULE.PROCEDURE or MODULE.PROCEDURE(LINE), not \"" + word +
                      "\"");
  }
  name.module = text.substr(0, point);
  name.procedure = text.substr(point + 1);
  return name;
}

void PrintRecord(std::ostream& out, const CachedError& record) {
  out << "  Number " << record.Number() << ", HelpContext " << record.HelpContext() << ", LastDLLError "
      << record.LastDLLError() << "\n";
  out << "  Description " << QuotedText(record.Description()) << "\n";
  out << "  HelpFile " << QuotedText(record.HelpFile()) << "\n";
  out << "  Source " << QuotedText(record.Source()) << "\n";
  out << "  OrgSource " << QuotedText(record.OrgSource()) << "\n";
  out << "  PropogationString " << QuotedText(record.PropogationString()) << "\n";
  out << "  PropogationCount " << record.PropogationCount() << "\n";
  for (int32_t i = 0; i < record.PropogationCount(); ++i) {
    out << "    " << i << ": module " << QuotedText(record.PropogatedModule(i)) << ", method "
        << QuotedText(record.PropogatedMethod(i)) << ", line " << record.PropogatedLine(i) << "\n";
  }
  out << "  Innermost " << record.InnermostModule() << " " << record.InnermostMethod() << " "
      << record.InnermostLine() << "\n";
  out << "  Outermost " << record.OutermostModule() << " " << record.OutermostMethod() << " "
      << record.OutermostLine() << "\n";
}

/// The record goes through the procedures from the innermost out, caught and raised again in each.
CachedError RaiseThrough(const CachedError& record, std::span<const std::string> procedures) {
  CachedError current = record;
  for (const std::string& word : procedures) {
    const ProcedureName name = ParseProcedure(word);
    try {
      current.Raise();
    } catch (Error& error) {
      error.Line = name.line;
      current.SetTo(error, name.module, name.procedure);
    }
  }
  return current;
}

void ErrorRecord(Console& console, const Words& words) {
  CachedError& record = console.bench.record;
  Stage& stage = console.Stage();
  const std::string& verb = words[0];
  if (SameName(verb, "new") && words.size() >= 3 && words.size() <= 4) {
    record = CachedError(
        Error(NumberWord(words[1], "the number"), words[2], words.size() > 3 ? words[3] : std::string()));
  } else if (SameName(verb, "raise") && words.size() >= 2) {
    record = RaiseThrough(record, std::span(words).subspan(1));
  } else if (SameName(verb, "print") && words.size() == 1) {
    PrintRecord(console.Out(), record);
  } else if (SameName(verb, "text") && words.size() == 1) {
    console.Out() << QuotedText(record.toString(stage.resources)) << "\n";
  } else if (SameName(verb, "text") && words.size() == 2 && SameName(words[1], "english")) {
    console.Out() << QuotedText(record.toString(stage.resources, true)) << "\n";
  } else if (SameName(verb, "display") && words.size() == 1) {
    record.Display(stage.resources, stage.services.desktop);
  } else if (SameName(verb, "log") && words.size() == 1) {
    record.Log(stage.errorLog);
  } else if (SameName(verb, "clear") && words.size() == 1) {
    record.Clear();
  } else {
    throw ScriptError(
        "right would be: error new NUMBER TEXT [SOURCE], error raise MODULE.PROCEDURE[(LINE)]..., error "
        "print, "
        "error text [english], error display, error log, error clear");
  }
}

// --- the registry

struct KeyWord {
  RegistryRoot root;
  std::string key;
};

KeyWord ParseKey(const std::string& word) {
  for (const RegistryRoot root : {RegistryRoot::CurrentUser, RegistryRoot::LocalMachine}) {
    const std::string start = std::string(RegistryRootName(root)) + "\\";
    if (word.size() > start.size() && SameName(word.substr(0, start.size()), start)) {
      return {root, word.substr(start.size())};
    }
  }
  throw ScriptError("a key begins with HKEY_CURRENT_USER\\ or HKEY_LOCAL_MACHINE\\, not \"" + word + "\"");
}

void WorkOnRegistry(Console& console, const Words& words) {
  const std::string& verb = words[0];
  const auto [root, key] = ParseKey(words[1]);
  Desktop& desktop = console.Stage().services.desktop;
  std::ostream& out = console.Out();
  if (SameName(verb, "read") && words.size() == 3) {
    console.AsHost([&, root = root, key = key] {
      const std::optional<Variant> value = desktop.ReadRegistry(root, key, words[2]);
      out << (value ? QuotedText(value->ToText()) : "no such value") << "\n";
    });
  } else if (SameName(verb, "write") && words.size() == 4) {
    console.AsHost([&, root = root, key = key] { desktop.WriteRegistry(root, key, words[2], words[3]); });
  } else if (SameName(verb, "access") && words.size() == 2) {
    console.AsHost([&, root = root, key = key] {
      out << (desktop.CanWriteRegistry(root, key) ? "can be written" : "cannot be written") << "\n";
    });
  } else {
    throw ScriptError(
        "right would be: registry read KEY NAME, registry write KEY NAME TEXT, registry access KEY");
  }
}

// --- the notice above all windows

void ShowNotice(Console& console, const Words& words) {
  const std::vector<std::string> buttons(words.begin() + 2, words.end());
  console.Host().ShowNotice(words[0], words[1], buttons, [&console](int32_t answer) {
    console.Out() << "button " << answer << " was pressed\n";
  });
}

// --- the section header

void PrintSection(std::ostream& out, const OptionsSection& section) {
  const auto line = [&](const char* name, const OptionsSection::Line& rule) {
    out << "  " << name << " x " << rule.x1 << " to " << rule.x2 << " at y " << rule.y << "\n";
  };
  out << "  lblCaption " << QuotedText(section.Caption()) << " left " << section.CaptionLeft() << " width "
      << section.CaptionWidth() << " height " << section.CaptionHeight() << "\n";
  line("Line1", section.Shadow());
  line("Line2", section.Highlight());
}

int32_t LengthWord(const std::string& word, std::string_view what) {
  const int32_t length = NumberWord(word, what);
  if (length < 0) throw ScriptError(std::string(what) + " must not be negative");
  return length;
}

void Section(Console& console, const Words& words) {
  OptionsSection& section = console.bench.section;
  const std::string& verb = words[0];
  const bool oneArgument = words.size() == 2;
  if (SameName(verb, "print") && words.size() == 1) {
    PrintSection(console.Out(), section);
  } else if (SameName(verb, "caption") && oneArgument) {
    section.SetCaption(words[1]);
  } else if (SameName(verb, "measure") && oneArgument) {
    const int32_t perCharacter = LengthWord(words[1], "the width of a character");
    section.SetMeasure([perCharacter](const std::string& caption) {
      const int64_t width = int64_t{perCharacter} * static_cast<int64_t>(caption.size());
      return static_cast<int>(std::min<int64_t>(width, std::numeric_limits<int>::max()));
    });
  } else if (SameName(verb, "resize") && oneArgument) {
    section.Resize(LengthWord(words[1], "the inner width"));
  } else if (SameName(verb, "read") && words.size() <= 2) {
    section.ReadProperties({oneArgument ? std::optional(words[1]) : std::nullopt, std::nullopt});
  } else if (SameName(verb, "write") && words.size() == 1) {
    const OptionsSection::SavedProperties saved = section.WriteProperties();
    console.Out() << "  Caption " << (saved.caption ? QuotedText(*saved.caption) : "not written") << "\n";
  } else {
    throw ScriptError(
        "right would be: section caption TEXT, section measure WIDTH-OF-A-CHARACTER, section resize WIDTH, "
        "section read [CAPTION], section write, section print");
  }
}

constexpr auto Commands = std::to_array<Command>({
    {"string", "ID [ARGUMENT...]", "load a text", 1, AnyNumber, LoadText},
    {"picture", "icon|cursor ID", "load a picture", 2, 2, LoadPicture},
    {"error", "new|raise|print|text|display|log|clear ...",
     "build an error record and pass it through procedures", 1, AnyNumber, ErrorRecord},
    {"section", "caption|measure|resize|read|write|print ...", "lay out a section header", 1, 2, Section},
    {"registry", "read|write|access KEY ...", "read and write the registry", 2, 4, WorkOnRegistry},
    {"notice", "TITLE TEXT BUTTON...", "show a notice that stays above all windows", 3, 5, ShowNotice},
});

}  // namespace

std::span<const Command> LibraryCommands() { return Commands; }

}  // namespace vexa::workbench
