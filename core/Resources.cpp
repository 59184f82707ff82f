#include "core/Resources.h"

#include <algorithm>
#include <array>

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

/// Where a text is put together, without asking for memory piece by piece.
class Assembly {
 public:
  /// False when there is no more room.
  bool Append(std::string_view piece) {
    if (piece.size() > room_.size() - size_) return false;
    std::copy_n(piece.data(), piece.size(), room_.data() + size_);
    size_ += piece.size();
    return true;
  }
  std::string Text() const { return {room_.data(), size_}; }

 private:
  std::array<char, 1024> room_;  // many times what most texts need
  size_t size_ = 0;
};

/// The same in one go. False for texts that are long, and when filling a mark could make another one, because
/// an inserted text has a '|' or one stands before a mark.
bool FillAtOnce(const TableText& found, std::span<const Variant> args, Assembly& filled) {
  const std::string_view text = found.text;
  std::string made;
  for (const Variant& arg : args) arg.TextView(made);  // one that is no text is an error, used or not
  size_t at = found.firstMark;
  size_t from = 0;
  while (at != std::string_view::npos) {
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
      at = text.find(Mark, at + 1);
      continue;
    }
    if (!filled.Append(text.substr(from, at - from)) || !filled.Append(with)) return false;
    from = at + 2;
    at = at == found.lastMark ? std::string_view::npos : text.find(Mark, from);
  }
  return filled.Append(text.substr(from));
}

std::string Filled(const TableText& found, std::span<const Variant> args) {
  Assembly filled;
  return FillAtOnce(found, args, filled) ? filled.Text() : FilledInTurn(found.text, args);
}

}  // namespace

std::string Resources::LoadString(int32_t id, std::span<const Variant> args) const {
  MadeText made;
  const TableText* const found = source_.FindString(id, made);
  if (found == nullptr) throw MakeError(ErrorNumber::ResourceNotFound);
  if (found->firstMark == std::string_view::npos) return std::string(found->text);
  return Filled(*found, args);
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
