// The loader of everything that a user sees and the code does not hold: texts, icons and the cursor, by
// number. Which language the texts are in is decided by the source behind it, never here. Nothing is
// cached: a screen asks for its captions once, when it loads.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "core/Variant.h"

namespace vexa {

enum class StringId : int32_t;

/// A text of a table, and where the first and the last '|' in it stand: most have none and are finished as
/// they stand, and few have more than one.
struct TableText {
  constexpr explicit TableText(std::string_view theText)
      : text(theText), firstMark(theText.find('|')), lastMark(theText.rfind('|')) {}
  std::string_view text;
  size_t firstMark;  // std::string_view::npos without one, as lastMark
  size_t lastMark;
};

/// Keeps a text that a source does not have ready. Small, for it stands by at every look-up.
class MadeText {
 public:
  const TableText* Make(std::string text) {
    made_ = std::make_unique<Made>(std::move(text));
    return &made_->text;
  }

 private:
  struct Made {
    explicit Made(std::string theText) : storage(std::move(theText)), text(storage) {}
    std::string storage;
    TableText text;
  };
  std::unique_ptr<Made> made_;
};

/// Where texts and pictures come from: the compiled table, or the resources of the Windows module.
class ResourceSource {
 public:
  ResourceSource() = default;
  ResourceSource(const ResourceSource&) = delete;
  ResourceSource& operator=(const ResourceSource&) = delete;
  virtual ~ResourceSource() = default;

  /// The text with this id in the user's language. It stands in the source itself or, when it has to be made
  /// from what stands there, in `made`. Null when there is none.
  virtual const TableText* FindString(int32_t id, MadeText& made) const = 0;
  virtual bool HasIcon(int32_t id) const = 0;
  virtual bool HasCursor(int32_t id) const = 0;
};

/// A picture resource, named by kind and number; views turn it into what their platform draws.
struct Picture {
  enum class Kind { None, Icon, Cursor };
  Kind kind = Kind::None;
  int32_t id = 0;
  friend bool operator==(const Picture&, const Picture&) = default;
};

class Resources {
 public:
  explicit Resources(const ResourceSource& source) : source_(source) {}

  /// The text `id` with "|1", "|2", … replaced by the arguments, one after the other on the text as it then
  /// stands, then "|n" by CR LF and "|s" by a blank. Placeholders without an argument stay. Error 326 when
  /// there is no such text.
  std::string LoadString(int32_t id, std::span<const Variant> args) const;
  std::string LoadString(int32_t id, std::initializer_list<Variant> args = {}) const {
    return LoadString(id, std::span<const Variant>(args.begin(), args.size()));
  }
  std::string LoadString(StringId id, std::initializer_list<Variant> args = {}) const {
    return LoadString(static_cast<int32_t>(id), args);
  }

  /// The icon or cursor with this id; error 326 when there is none.
  Picture LoadIcon(int32_t id) const;
  Picture LoadCursor(int32_t id) const;

 private:
  const ResourceSource& source_;
};

}  // namespace vexa
