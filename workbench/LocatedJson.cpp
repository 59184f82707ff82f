#include "workbench/LocatedJson.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

namespace vexa::workbench {
namespace {

/// Reads the text for the parser and notes how far the parser has come, which its callbacks do not say.
class TrackedIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  TrackedIterator(const char* at, const char** reached) : at_(at), reached_(reached) {}
  reference operator*() const { return *at_; }
  TrackedIterator& operator++() {
    *reached_ = ++at_;
    return *this;
  }
  bool operator==(const TrackedIterator& other) const { return at_ == other.at_; }
  bool operator!=(const TrackedIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** reached_;
};

class TreeBuilder : public nlohmann::json_sax<nlohmann::json> {
 public:
  /// `reached` follows how far the parser has read in `text`.
  TreeBuilder(std::string_view text, const char* const& reached, const JsonStream& stream)
      : begin_(text.data()), counted_(text.data()), reached_(reached), stream_(stream) {}

  bool null() override { return Value(Leaf(JsonNode::Kind::Null)); }
  bool boolean(bool value) override {
    JsonNode node = Leaf(JsonNode::Kind::Boolean);
    node.boolean = value;
    return Value(std::move(node));
  }
  bool number_integer(number_integer_t value) override {
    JsonNode node = Leaf(JsonNode::Kind::Integer);
    node.integer = value;
    return Value(std::move(node));
  }
  bool number_unsigned(number_unsigned_t value) override {
    if (value > INT64_MAX) return Value(Leaf(JsonNode::Kind::Real));
    return number_integer(static_cast<number_integer_t>(value));
  }
  bool number_float(number_float_t, const string_t&) override { return Value(Leaf(JsonNode::Kind::Real)); }
  bool string(string_t& value) override {
    JsonNode node = Leaf(JsonNode::Kind::String);
    node.text = std::move(value);
    return Value(std::move(node));
  }
  bool binary(binary_t&) override { return false; }  // JSON text has none
  bool start_object(std::size_t) override { return Open(JsonNode::Kind::Object); }
  bool start_array(std::size_t) override { return Open(JsonNode::Kind::Array); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }
  bool key(string_t& key) override {
    const auto& members = open_.back().node.members;
    if (std::ranges::any_of(members, [&](const auto& member) { return member.name == key; })) {
      throw JsonError(Line(), "\"" + key + "\" is given twice; once is right");
    }
    open_.back().key = std::move(key);
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& failure) override {
    // "[json.exception…] parse error at line 3, column 5: syntax error while …": the part that tells why.
    std::string reason = failure.what();
    if (const size_t colon = reason.find(": "); colon != std::string::npos) reason.erase(0, colon + 2);
    throw JsonError(Line(), "not JSON: " + reason);
  }

  JsonNode TakeRoot() { return std::move(root_); }

 private:
  struct OpenValue {
    JsonNode node;
    std::string key;   // the member being read
    size_t count = 0;  // elements seen so far
  };

  static constexpr size_t MaxDepth = 8;

  /// Line of the last character that the parser has read and that is no blank: for a number it has read one
  /// character too many, which may be the line's end.
  int Line() {
    const char* last = reached_;
    while (last > begin_ && (last == reached_ || IsBlank(*last))) --last;
    if (last > counted_) {
      line_ += static_cast<int>(std::count(counted_, last, '\n'));
      counted_ = last;
    }
    return line_;
  }
  static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  JsonNode Leaf(JsonNode::Kind kind) {
    JsonNode node;
    node.kind = kind;
    node.line = Line();
    return node;
  }

  bool Open(JsonNode::Kind kind) {
    if (open_.size() == MaxDepth) throw JsonError(Line(), "values are nested too deep for a profile");
    open_.push_back({Leaf(kind), {}, 0});
    return true;
  }

  bool Close() {
    JsonNode node = std::move(open_.back().node);
    open_.pop_back();
    return Value(std::move(node));
  }

  bool IsStreamed() const {
    return open_.size() == 4 && open_[2].key == stream_.key && open_[3].node.kind == JsonNode::Kind::Array;
  }

  bool Value(JsonNode node) {
    if (open_.empty()) {
      root_ = std::move(node);
      return true;
    }
    const bool streamed = IsStreamed();
    OpenValue& parent = open_.back();
    if (streamed) {
      stream_.onElement(open_[1].count, std::move(node));
    } else if (parent.node.kind == JsonNode::Kind::Array) {
      parent.node.items.push_back(std::move(node));
    } else {
      parent.node.members.push_back({std::move(parent.key), std::move(node)});
    }
    ++parent.count;
    return true;
  }

  const char* begin_;
  const char* counted_;  // newlines up to here are in line_
  int line_ = 1;
  const char* const& reached_;
  const JsonStream& stream_;
  std::vector<OpenValue> open_;
  JsonNode root_;
};

}  // namespace

JsonNode ReadJson(std::string_view text, const JsonStream& stream) {
  const char* reached = text.data();
  TreeBuilder builder(text, reached, stream);
  nlohmann::json::sax_parse(TrackedIterator(text.data(), &reached),
                            TrackedIterator(text.data() + text.size(), &reached), &builder);
  return builder.TakeRoot();
}

}  // namespace vexa::workbench
