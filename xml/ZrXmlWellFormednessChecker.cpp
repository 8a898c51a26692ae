#include "ZrXmlWellFormednessChecker.h"

#include "ZrXmlFileReader.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

const std::string_view theXmlNamespace = "http://www.w3.org/XML/1998/namespace";
const std::string_view theXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

bool isWhite(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Name characters of ASCII as XML defines them; every byte above 127 is taken as a name character (the
// checker does not decode the document's encoding).
bool isNameStartByte(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c >= 0x80;
}

bool isNameByte(unsigned char c) { return isNameStartByte(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

std::string_view skipWhite(std::string_view text) {
  std::size_t first = 0;
  while (first < text.size() && isWhite(text[first])) ++first;
  return text.substr(first);
}

// Takes the characters up to white space or `stop` off the front of text.
std::string_view takeUntil(std::string_view& text, char stop) {
  std::size_t end = 0;
  while (end < text.size() && !isWhite(text[end]) && text[end] != stop) ++end;
  std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

std::string_view prefixOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

std::string_view localPartOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

bool isXmlnsAttribute(std::string_view name) {
  return name == "xmlns" || (name.size() > 5 && name.compare(0, 6, "xmlns:") == 0);
}

// One pseudo-attribute of the XML declaration, ` name="value"`, taken off the front of text; false when
// text does not begin with white space and that name.
bool takePseudoAttribute(std::string_view& text, std::string_view name, std::string_view& value) {
  std::string_view rest = skipWhite(text);
  if (rest.size() == text.size() || rest.compare(0, name.size(), name) != 0) return false;
  rest = skipWhite(rest.substr(name.size()));
  if (rest.empty() || rest[0] != '=') return false;
  rest = skipWhite(rest.substr(1));
  if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) return false;
  const std::size_t close = rest.find(rest[0], 1);
  if (close == std::string_view::npos) return false;
  value = rest.substr(1, close - 1);
  text = rest.substr(close + 1);
  return true;
}

bool isVersionNumber(std::string_view value) {
  if (value.size() < 3 || value.compare(0, 2, "1.") != 0) return false;
  return std::all_of(value.begin() + 2, value.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isEncodingName(std::string_view value) {
  if (value.empty() || !((value[0] >= 'a' && value[0] <= 'z') || (value[0] >= 'A' && value[0] <= 'Z'))) return false;
  return std::all_of(value.begin(), value.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
           c == '-';
  });
}

}  // namespace

ZrXmlWellFormednessChecker::ZrXmlWellFormednessChecker(const ZrXmlWellFormednessChecker& other,
                                                       const ZrXmlFileReader& reader)
    : m_theReader(&reader),
      m_theDeclarations(other.m_theDeclarations),
      m_theRootSeen(other.m_theRootSeen),
      m_theDoctypeSeen(other.m_theDoctypeSeen),
      m_theEndChecked(other.m_theEndChecked) {}

void ZrXmlWellFormednessChecker::report(const std::string& fault) const {
  m_theReader->warnMessage(("file not well formed.\n\t" + fault).c_str());
}

bool ZrXmlWellFormednessChecker::isName(std::string_view text) {
  if (text.empty() || !isNameStartByte(static_cast<unsigned char>(text[0]))) return false;
  return std::all_of(text.begin(), text.end(), [](char c) { return isNameByte(static_cast<unsigned char>(c)); });
}

// A name with at most one ':', which has a name on both sides.
bool ZrXmlWellFormednessChecker::isQualifiedName(std::string_view text) {
  if (!isName(text)) return false;
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return true;
  return colon != 0 && colon + 1 < text.size() && text.find(':', colon + 1) == std::string_view::npos &&
         isName(text.substr(colon + 1));
}

// ---- characters and text ----

void ZrXmlWellFormednessChecker::checkCharacters(std::string_view text) const {
  for (char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') {
      char fault[48];
      std::snprintf(fault, sizeof fault, "Character not allowed in XML: #x%02X", byte);
      report(fault);
      return;  // one report per piece of text
    }
  }
}

void ZrXmlWellFormednessChecker::checkText(std::string_view text, bool cdata) const {
  checkCharacters(text);
  if (!cdata && text.find("]]>") != std::string_view::npos) report("']]>' not allowed in text.");
}

void ZrXmlWellFormednessChecker::checkComment(std::string_view text) const {
  if (text.find("--") != std::string_view::npos || (!text.empty() && text.back() == '-'))
    report("Comment contains extra -- in it.");
  checkCharacters(text);
}

// ---- names and namespaces ----

const ZrXmlWellFormednessChecker::Declaration* ZrXmlWellFormednessChecker::declared(std::string_view prefix) const {
  for (auto at = m_theDeclarations.rbegin(); at != m_theDeclarations.rend(); ++at)
    if (at->prefix == prefix) return &*at;
  return nullptr;
}

void ZrXmlWellFormednessChecker::checkQualifiedName(std::string_view name) const {
  if (!isQualifiedName(name)) report("Invalid name: " + std::string(name));
}

void ZrXmlWellFormednessChecker::checkPrefixDeclared(std::string_view name) const {
  const std::string_view prefix = prefixOf(name);
  if (prefix.empty() || prefix == "xml") return;
  const Declaration* declaration = prefix == "xmlns" ? nullptr : declared(prefix);
  if (!declaration || declaration->uri.empty()) report("Prefix not declared: " + std::string(prefix));
}

void ZrXmlWellFormednessChecker::checkNamespaceDeclaration(std::string_view attribute, std::string_view uri) const {
  const std::string_view prefix = attribute.size() > 5 ? attribute.substr(6) : std::string_view();
  bool allowed = true;
  if (attribute.size() > 5 && !isQualifiedName(prefix)) allowed = false;             // "xmlns:" alone, "xmlns:a:b"
  else if (prefix == "xmlns" || uri == theXmlnsNamespace) allowed = false;            // reserved for declarations
  else if ((prefix == "xml") != (uri == theXmlNamespace)) allowed = false;            // "xml" and its URI go together
  else if (!prefix.empty() && uri.empty()) allowed = false;                           // a prefix needs a namespace
  if (!allowed) report("Namespace declaration not allowed: " + std::string(attribute));
}

// ---- tags ----

void ZrXmlWellFormednessChecker::checkStartTag(std::string_view tag, std::size_t depth) {
  std::string_view rest = skipWhite(tag);
  const std::string_view name = takeUntil(rest, '\0');
  if (depth == 1) {
    if (m_theRootSeen) report("More than one root element: " + std::string(name));
    m_theRootSeen = true;
  }
  checkCharacters(tag);

  // The attributes as written; a piece that is no attribute the tokenizer has reported already.
  std::vector<std::pair<std::string_view, std::string_view>> attributes;
  for (;;) {
    const std::size_t white = rest.size() - skipWhite(rest).size();
    rest.remove_prefix(white);
    if (rest.empty()) break;
    if (white == 0) report("White space required between attributes.");
    const std::string_view attribute = takeUntil(rest, '=');
    rest = skipWhite(rest);
    if (rest.empty() || rest[0] != '=') break;
    rest = skipWhite(rest.substr(1));
    if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) break;
    const std::size_t close = rest.find(rest[0], 1);
    if (close == std::string_view::npos) break;
    attributes.emplace_back(attribute, rest.substr(1, close - 1));
    rest.remove_prefix(close + 1);
  }

  for (const auto& attribute : attributes) {
    if (isXmlnsAttribute(attribute.first)) {
      checkNamespaceDeclaration(attribute.first, attribute.second);
      m_theDeclarations.push_back(
          {std::string(attribute.first.size() > 5 ? attribute.first.substr(6) : std::string_view()),
           std::string(attribute.second), depth});
    } else {
      checkQualifiedName(attribute.first);
    }
    if (attribute.second.find('<') != std::string_view::npos) report("'<' not allowed in attribute value.");
  }

  checkQualifiedName(name);
  checkPrefixDeclared(name);
  // Each attribute once, by its name as written and by its namespace and local name. Sorting keeps this
  // linear-logarithmic in the number of attributes, however many a tag holds.
  std::vector<std::pair<std::string, std::string_view>> names;
  names.reserve(attributes.size());
  for (const auto& attribute : attributes) {
    const std::string_view written = attribute.first;
    const std::string_view prefix = prefixOf(written);
    if (prefix.empty() || isXmlnsAttribute(written)) {
      names.emplace_back(std::string(written), written);
      continue;
    }
    checkPrefixDeclared(written);
    const Declaration* declaration = prefix == "xml" ? nullptr : declared(prefix);
    const std::string uri = prefix == "xml" ? std::string(theXmlNamespace) : declaration ? declaration->uri : "";
    names.emplace_back("{" + uri + "}" + std::string(localPartOf(written)), written);
  }
  std::sort(names.begin(), names.end());
  for (std::size_t i = 1; i < names.size(); ++i)
    if (names[i].first == names[i - 1].first) report("Attribute specified twice: " + std::string(names[i].second));
}

void ZrXmlWellFormednessChecker::checkEndTag(std::string_view name) const {
  checkQualifiedName(name);
  checkPrefixDeclared(name);
}

void ZrXmlWellFormednessChecker::closeElement(std::size_t depth) {
  while (!m_theDeclarations.empty() && m_theDeclarations.back().depth >= depth) m_theDeclarations.pop_back();
}

// ---- declarations and processing instructions ----

void ZrXmlWellFormednessChecker::checkXmlDeclaration(std::string_view text, bool atStart) const {
  if (!atStart) report("XML declaration not at the start of the document.");
  std::string_view rest = text.substr(3);
  std::string_view value;
  bool wellFormed = takePseudoAttribute(rest, "version", value) && isVersionNumber(value);
  if (wellFormed && takePseudoAttribute(rest, "encoding", value)) wellFormed = isEncodingName(value);
  if (wellFormed && takePseudoAttribute(rest, "standalone", value)) wellFormed = value == "yes" || value == "no";
  if (!wellFormed || !skipWhite(rest).empty()) report("Malformed XML declaration.");
}

void ZrXmlWellFormednessChecker::checkProcessingInstruction(std::string_view text, bool atStart) const {
  std::string_view rest = text;
  const std::string_view target = takeUntil(rest, '\0');
  checkCharacters(text);
  if (target.empty()) {
    report("Processing instruction without target.");
  } else if (target == "xml") {
    checkXmlDeclaration(text, atStart);
  } else if (target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l') {
    report("Reserved processing instruction target: " + std::string(target));
  } else if (!isName(target) || target.find(':') != std::string_view::npos) {
    report("Invalid name: " + std::string(target));
  }
}

void ZrXmlWellFormednessChecker::checkDoctype(std::string_view text) {
  if (m_theRootSeen) report("Document type declaration after the root element.");
  if (m_theDoctypeSeen) report("More than one document type declaration.");
  m_theDoctypeSeen = true;
  std::string_view rest = text.substr(8);  // "!DOCTYPE"
  const std::size_t white = rest.size() - skipWhite(rest).size();
  rest.remove_prefix(white);
  const std::string_view name = takeUntil(rest, '[');
  if (white == 0 || !isQualifiedName(name)) report("Invalid name: " + std::string(name));
}

void ZrXmlWellFormednessChecker::checkEnd(std::size_t openElements, std::string_view innermost) {
  if (m_theEndChecked) return;
  m_theEndChecked = true;
  if (openElements > 0) report("Element not closed: " + std::string(innermost));
}
