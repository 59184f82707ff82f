#include "core/Resources.h"

#include "core/Error.h"

namespace vexa {
namespace {

void ReplaceAll(std::string& text, std::string_view what, std::string_view with) {
  size_t found = text.find(what);
  if (found == std::string::npos) return;
  std::string replaced;
  size_t start = 0;
  for (; found != std::string::npos; found = text.find(what, start)) {
    replaced.append(text, start, found - start).append(with);
    start = found + what.size();
  }
  replaced.append(text, start);
  text = std::move(replaced);
}

constexpr char Mark = '|';
constexpr std::string_view LineBreak = "\r\n";
constexpr std::string_view Blank = " ";

/// Strictly one argument after the other: a text inserted by one may hold a mark of a later one, and the
/// first of ten also fills the front of "|10". Both are part of how texts are written.
std::string FilledInTurn(std::string_view text, std::span<const Variant> args) {
  std::string filled(text);
  for (size_t k = 0; k < args.size(); ++k) {
    ReplaceAll(filled, Mark + std::to_string(k + 1), args[k].ToText());
  }
  ReplaceAll(filled, "|n", LineBreak);
  ReplaceAll(filled, "|s", Blank);
  return filled;
}

/// The same in one go. False when filling a mark could make another one, because an inserted text has a '|'
/// or one stands before a mark.
bool FillAtOnce(std::string_view text, std::span<const Variant> args, std::string& filled) {
  std::string made;
  size_t room = text.size();
  for (const Variant& arg : args) room += arg.TextView(made).size();
  filled.reserve(room);
  size_t from = 0;
  for (size_t at = text.find(Mark); at != std::string_view::npos; at = text.find(Mark, at + 1)) {
    const char kind = at + 1 < text.size() ? text[at + 1] : '\0';
    std::string_view with;
    if (const auto k = static_cast<size_t>(kind - '1'); k < 9 && k < args.size()) {
      with = args[k].TextView(made);
      if (with.find(Mark) != std::string_view::npos) return false;
    } else if (kind == 'n') {
      with = LineBreak;
    } else if (kind == 's') {
      with = Blank;
    } else if (kind == Mark) {
      return false;
    } else {
      continue;
    }
    filled.append(text.substr(from, at - from)).append(with);
    from = at + 2;
  }
  filled.append(text.substr(from));
  return true;
}

}  // namespace

std::string Resources::LoadString(int32_t id, std::span<const Variant> args) const {
  MadeText made;
  const TableText* const found = source_.FindString(id, made);
  if (found == nullptr) throw MakeError(ErrorNumber::ResourceNotFound);
  const std::string_view text = found->text;
  if (!found->hasMarks) return std::string(text);
  std::string filled;
  if (!FillAtOnce(text, args, filled)) filled = FilledInTurn(text, args);
  return filled;
}

Picture Resources::LoadIcon(int32_t id) const {
  if (!source_.HasIcon(id)) throw MakeError(ErrorNumber::ResourceNotFound);
  return {Picture::Kind::Icon, id};
}

Picture Resources::LoadCursor(int32_t id) const {
  if (!source_.HasCursor(id)) throw MakeError(ErrorNumber::ResourceNotFound);
  return {Picture::Kind::Cursor, id};
}

}  // namespace vexa
