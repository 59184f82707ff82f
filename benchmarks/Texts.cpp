// All texts of the table, each filled with as many arguments as it has places for. The peers' catalogues are
// made from the same table by `catalogues`, with line breaks and blanks already in place: less is left for
// them to do. Their results stay in their own encoding.
#include <absl/strings/substitute.h>
#include <fmt/format.h>
#include <libintl.h>
#include <unicode/simpleformatter.h>
#include <unicode/unistr.h>

#include <QCoreApplication>
#include <QTranslator>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/Contest.h"
#include "core/Resources.h"
#include "resources/CompiledResources.h"

namespace vexa::bench {
namespace {

constexpr std::array<const char*, 3> Arguments{"Inbox", "C:\\Users\\Ann\\vexa.log", "12"};

/// What stands in the table, and what comes of it with its arguments.
struct Sample {
  int32_t id;
  std::string name;  // the id as the peers' catalogues have it
  size_t arguments;  // how many it takes
  std::string finished;
};

const CompiledResources& Source() {
  static const CompiledResources source(1033);
  return source;
}

const std::vector<Sample>& Samples() {
  static const std::vector<Sample> samples = [] {
    std::vector<Sample> made;
    const Resources resources(Source());
    for (const StringEntry& entry : LanguageTables().front().entries) {
      size_t arguments = 0;
      for (size_t k = 1; k <= Arguments.size(); ++k) {
        if (entry.text.find("|" + std::to_string(k)) != std::string_view::npos) arguments = k;
      }
      const std::array<Variant, 3> given{Arguments[0], Arguments[1], Arguments[2]};
      made.push_back({entry.id, std::to_string(entry.id), arguments,
                      resources.LoadString(entry.id, std::span(given).first(arguments))});
    }
    return made;
  }();
  return samples;
}

/// The text of the table in the notation of a peer: `place` is what stands for argument k.
std::string Notation(std::string_view text, size_t arguments, const std::function<std::string(size_t)>& place,
                     const std::function<std::string(char)>& escape) {
  std::string made;
  for (size_t at = 0; at < text.size(); ++at) {
    const char next = at + 1 < text.size() && text[at] == '|' ? text[at + 1] : '\0';
    if (next == 'n') {
      made += "\r\n";
    } else if (next == 's') {
      made += ' ';
    } else if (next >= '1' && next < static_cast<char>('1' + arguments)) {
      made += place(static_cast<size_t>(next - '0'));
    } else {
      made += escape(text[at]);
      continue;
    }
    ++at;
  }
  return made;
}

[[noreturn]] void Differs(const char* peer, const Sample& sample, const std::string& text) {
  std::fprintf(stderr, "%s makes another text of %s: \"%s\" instead of \"%s\"\n", peer, sample.name.c_str(),
               text.c_str(), sample.finished.c_str());
  std::exit(1);
}

double CopyFinished() {
  return PerUnit(Samples().size(), [] {
    for (const Sample& sample : Samples()) Keep(std::string(sample.finished));
  });
}

double Ours() {
  const Resources resources(Source());
  const std::array<Variant, 3> arguments{Arguments[0], Arguments[1], Arguments[2]};
  return PerUnit(Samples().size(), [&] {
    for (const Sample& sample : Samples()) {
      Keep(resources.LoadString(sample.id, std::span(arguments).first(sample.arguments)));
    }
  });
}

// --- absl::Substitute; the formats lie in an array: it has no table of its own to look them up in

const std::vector<std::string>& SubstituteFormats() {
  static const std::vector<std::string> formats = [] {
    std::vector<std::string> made;
    for (size_t i = 0; i < Samples().size(); ++i) {
      made.push_back(Notation(
          LanguageTables().front().entries[i].text, Samples()[i].arguments,
          [](size_t k) { return "$" + std::to_string(k - 1); },
          [](char c) { return c == '$' ? std::string("$$") : std::string(1, c); }));
    }
    return made;
  }();
  return formats;
}

std::string Substituted(size_t i) {
  const std::string& format = SubstituteFormats()[i];
  switch (Samples()[i].arguments) {
    case 0:
      return absl::Substitute(format);
    case 1:
      return absl::Substitute(format, Arguments[0]);
    case 2:
      return absl::Substitute(format, Arguments[0], Arguments[1]);
    default:
      return absl::Substitute(format, Arguments[0], Arguments[1], Arguments[2]);
  }
}

double Substitute() {
  static const bool checked = [] {
    for (size_t i = 0; i < Samples().size(); ++i) {
      if (Substituted(i) != Samples()[i].finished) Differs("absl::Substitute", Samples()[i], Substituted(i));
    }
    return true;
  }();
  Keep(checked);
  return PerUnit(Samples().size(), [] {
    for (size_t i = 0; i < Samples().size(); ++i) Keep(Substituted(i));
  });
}

// --- ICU, every format compiled beforehand

const std::vector<icu::SimpleFormatter>& Formatters() {
  static const std::vector<icu::SimpleFormatter> formatters = [] {
    std::vector<icu::SimpleFormatter> made;
    for (size_t i = 0; i < Samples().size(); ++i) {
      const std::string pattern = Notation(
          LanguageTables().front().entries[i].text, Samples()[i].arguments,
          [](size_t k) { return "{" + std::to_string(k - 1) + "}"; },
          [](char c) {
            if (c == '\'') return std::string("''");
            return c == '{' || c == '}' ? std::string("'") + c + "'" : std::string(1, c);
          });
      UErrorCode error = U_ZERO_ERROR;
      made.emplace_back(icu::UnicodeString::fromUTF8(pattern), error);
      if (U_FAILURE(error)) Differs("ICU", Samples()[i], pattern);
    }
    return made;
  }();
  return formatters;
}

icu::UnicodeString Formatted(size_t i, const std::array<icu::UnicodeString, 3>& arguments) {
  icu::UnicodeString text;
  UErrorCode error = U_ZERO_ERROR;
  const icu::SimpleFormatter& formatter = Formatters()[i];
  switch (Samples()[i].arguments) {
    case 0:
      formatter.formatAndAppend(nullptr, 0, text, nullptr, 0, error);
      break;
    case 1:
      formatter.format(arguments[0], text, error);
      break;
    case 2:
      formatter.format(arguments[0], arguments[1], text, error);
      break;
    default:
      formatter.format(arguments[0], arguments[1], arguments[2], text, error);
  }
  return text;
}

double Icu() {
  static const std::array<icu::UnicodeString, 3> arguments{Arguments[0], Arguments[1], Arguments[2]};
  static const bool checked = [] {
    for (size_t i = 0; i < Samples().size(); ++i) {
      std::string text;
      Formatted(i, arguments).toUTF8String(text);
      if (text != Samples()[i].finished) Differs("ICU", Samples()[i], text);
    }
    return true;
  }();
  Keep(checked);
  return PerUnit(Samples().size(), [] {
    for (size_t i = 0; i < Samples().size(); ++i) Keep(Formatted(i, arguments));
  });
}

// --- Qt's translator, which has loaded its file

QString Translated(const Sample& sample, const std::array<QString, 3>& arguments) {
  const QString text = QCoreApplication::translate("vexa", sample.name.c_str());
  switch (sample.arguments) {
    case 0:
      return text;
    case 1:
      return text.arg(arguments[0]);
    case 2:
      return text.arg(arguments[0], arguments[1]);
    default:
      return text.arg(arguments[0], arguments[1], arguments[2]);
  }
}

double Qt() {
  static const std::array<QString, 3> arguments{
      QString::fromUtf8(Arguments[0]), QString::fromUtf8(Arguments[1]), QString::fromUtf8(Arguments[2])};
  static const bool checked = [] {
    static QTranslator translator;
    if (!translator.load(QStringLiteral(VEXA_CATALOGUES "/vexa.qm"))) std::abort();
    QCoreApplication::installTranslator(&translator);
    for (const Sample& sample : Samples()) {
      const std::string text = Translated(sample, arguments).toStdString();
      if (text != sample.finished) Differs("Qt", sample, text);
    }
    return true;
  }();
  Keep(checked);
  return PerUnit(Samples().size(), [] {
    for (const Sample& sample : Samples()) Keep(Translated(sample, arguments));
  });
}

// --- gettext and fmt

std::string Gotten(const Sample& sample) {
  const auto format = fmt::runtime(dgettext("vexa", sample.name.c_str()));
  switch (sample.arguments) {
    case 0:
      return fmt::format(format);
    case 1:
      return fmt::format(format, Arguments[0]);
    case 2:
      return fmt::format(format, Arguments[0], Arguments[1]);
    default:
      return fmt::format(format, Arguments[0], Arguments[1], Arguments[2]);
  }
}

double Gettext() {
  static const bool checked = [] {
    // Of the C locale nothing is translated.
    setenv("LANGUAGE", "en", 1);
    std::setlocale(LC_MESSAGES, "C.UTF-8");
    bindtextdomain("vexa", VEXA_CATALOGUES "/locale");
    bind_textdomain_codeset("vexa", "UTF-8");
    for (const Sample& sample : Samples()) {
      if (Gotten(sample) != sample.finished) Differs("gettext", sample, Gotten(sample));
    }
    return true;
  }();
  Keep(checked);
  return PerUnit(Samples().size(), [] {
    for (const Sample& sample : Samples()) Keep(Gotten(sample));
  });
}

}  // namespace

std::vector<Contest> TextContests() {
  using enum Goal::Kind;
  return {{"localized text by number, filled (mean of " + std::to_string(Samples().size()) + ")",
           "ns",
           {{Role::Limit, "one allocation and copy", CopyFinished},
            {Role::Ours, "LoadString", Ours},
            {Role::Peer, "absl::Substitute", Substitute},
            {Role::Peer, "ICU SimpleFormatter", Icu},
            {Role::Peer, "Qt translate and arg", Qt},
            {Role::Peer, "gettext and fmt", Gettext}},
           {{TimesLimit, 2.0},
            {FasterThan, 2.0, "ICU SimpleFormatter"},
            {FasterThan, 5.0, "Qt translate and arg"},
            {FasterThan, 5.0, "gettext and fmt"}}}};
}

}  // namespace vexa::bench
