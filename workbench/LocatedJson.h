// JSON values that know the line they stand on, so that whatever is wrong with a profile can be reported
// with its line. The elements of one large array, the folders of a store, are handed out one at a time
// instead of being collected: a million of them need no more memory than one.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexa::workbench {

struct JsonMember;

struct JsonNode {
  enum class Kind { Null, Boolean, Integer, Real, String, Array, Object };
  Kind kind = Kind::Null;
  int line = 0;
  bool boolean = false;
  int64_t integer = 0;
  std::string text;
  std::vector<JsonNode> items;      // of an array
  std::vector<JsonMember> members;  // of an object, in order
};

struct JsonMember {
  std::string name;
  JsonNode value;
};

class JsonError : public std::runtime_error {
 public:
  JsonError(int line, const std::string& message) : std::runtime_error(message), line_(line) {}
  int Line() const { return line_; }

 private:
  int line_;
};

/// Called with each completed element of the arrays at root / * / element / `streamedKey`; `parentNumber`
/// counts the elements of the array above, from 0.
struct JsonStream {
  std::string key;
  std::function<void(size_t parentNumber, JsonNode&& element)> onElement;
};

/// Error: JsonError with the line, for text that is no JSON, an object with a key given twice, values
/// nested more than 8 deep.
JsonNode ReadJson(std::string_view text, const JsonStream& stream);

}  // namespace vexa::workbench
