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

}  // namespace

std::string Resources::LoadString(int32_t id, std::span<const Variant> args) const {
  std::string text;
  if (!source_.FetchString(id, text)) throw MakeError(ErrorNumber::ResourceNotFound);
  if (text.find('|') == std::string::npos) return text;
  // Strictly one argument after the other: a text inserted by one may hold a mark of a later one, and the
  // first of ten also fills the front of "|10". Both are part of how texts are written.
  for (size_t k = 0; k < args.size(); ++k) {
    ReplaceAll(text, "|" + std::to_string(k + 1), args[k].ToText());
  }
  ReplaceAll(text, "|n", "\r\n");
  ReplaceAll(text, "|s", " ");
  return text;
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
