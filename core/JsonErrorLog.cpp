#include "core/JsonErrorLog.h"

#include <array>
#include <cstdint>

#include "core/Handlers.h"

namespace vexa {
namespace {

void AppendEscape(std::string& json, uint32_t codeUnit) {
  constexpr std::string_view digits = "0123456789abcdef";
  json += "\\u";
  for (const unsigned shift : {12U, 8U, 4U, 0U}) json += digits[(codeUnit >> shift) & 0xFU];
}

/// Length of the UTF-8 sequence at the start of `text`, with its code point; 0 when it is malformed. Lone
/// surrogates in their three-byte form count as well formed: texts from Windows may hold them.
size_t DecodeUtf8(std::string_view text, uint32_t& codePoint) {
  const auto byteAt = [&](size_t i) { return static_cast<uint8_t>(text[i]); };
  const uint8_t lead = byteAt(0);
  const size_t length = lead < 0x80   ? 1
                        : lead < 0xC2 ? 0
                        : lead < 0xE0 ? 2
                        : lead < 0xF0 ? 3
                        : lead < 0xF5 ? 4
                                      : 0;
  if (length == 0 || length > text.size()) return 0;
  codePoint = length == 1 ? lead : lead & (0x7FU >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80U) return 0;
    codePoint = (codePoint << 6U) | (byteAt(i) & 0x3FU);
  }
  constexpr std::array<uint32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  return codePoint >= smallest[length] && codePoint <= 0x10FFFF ? length : 0;
}

std::string RecordLine(const CachedError& record, const std::string& time, const std::string& components) {
  std::string line = "{\"time\":" + JsonLiteral(time);
  line += ",\"number\":" + std::to_string(record.Number());
  line += ",\"description\":" + JsonLiteral(record.Description());
  line += ",\"source\":" + JsonLiteral(record.Source());
  line += ",\"helpFile\":" + JsonLiteral(record.HelpFile());
  line += ",\"helpContext\":" + std::to_string(record.HelpContext());
  line += ",\"lastDLLError\":" + std::to_string(record.LastDLLError());
  line += ",\"trail\":[";
  bool first = true;
  for (const std::string& entry : record.PropogationArray()) {
    if (!first) line += ',';
    first = false;
    line += JsonLiteral(entry);
  }
  line += "],\"components\":" + JsonLiteral(components) + "}\n";
  return line;
}

std::string ComponentsLine(const std::vector<Component>& components, const std::string& time) {
  std::string line = "{\"time\":" + JsonLiteral(time) + ",\"components\":[";
  bool first = true;
  for (const Component& component : components) {
    if (!first) line += ',';
    first = false;
    line += "{\"name\":" + JsonLiteral(component.name);
    line += ",\"version\":" + JsonLiteral(component.version);
    line += ",\"path\":" + JsonLiteral(component.path) + '}';
  }
  return line + "]}\n";
}

}  // namespace

void JsonErrorLog::Write(const CachedError& record) noexcept {
  IgnoreErrors([&] {
    const std::string path = environment_.path();
    if (path.empty()) return;
    const std::string time = environment_.now();
    ComponentReport& components = environment_.components;
    // A report that cannot be made must not keep the record out.
    std::string report;
    std::string versions;
    IgnoreErrors([&] {
      versions = components.Text();
      if (!components.IsLogged()) report = ComponentsLine(components.Components(), time);
    });
    environment_.files.Append(path, report + RecordLine(record, time, versions));
    if (!report.empty()) components.SetLogged();
  });
}

std::string JsonLiteral(std::string_view text) {
  std::string json = "\"";
  while (!text.empty()) {
    uint32_t codePoint = 0;
    const size_t length = DecodeUtf8(text, codePoint);
    if (length == 0) {
      json += "\xEF\xBF\xBD";
      text.remove_prefix(1);
      continue;
    }
    if (codePoint == '"' || codePoint == '\\') {
      json += '\\';
      json += static_cast<char>(codePoint);
    } else if (codePoint < 0x20 || codePoint == 0x7F || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
      AppendEscape(json, codePoint);
    } else {
      json += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return json += '"';
}

}  // namespace vexa
