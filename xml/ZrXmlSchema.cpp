#include "ZrXmlSchema.h"

#include "ZrXmlSchemaElementType.h"
#include "ZrXmlSchemaFile.h"
#include "ZrXmlWriter.h"

#include <ZrFileReplace.h>
#include <ZrPrint.h>

#include <cxxabi.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

namespace {

const int theElementValue = -2;
const int theNoValue = -1;
const char* const theXsdNamespace = "http://www.w3.org/2001/XMLSchema";

bool isNameStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool isNameChar(char c) { return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

bool isNcName(const std::string& text) {
  if (text.empty() || !isNameStart(text[0])) return false;
  for (char c : text)
    if (!isNameChar(c)) return false;
  return true;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

std::string demangled(const std::string& runTimeTypeName) {
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(runTimeTypeName.c_str(), nullptr, nullptr, &status),
                                              std::free);
  return status == 0 && text ? std::string(text.get()) : runTimeTypeName;
}

// The library's own names and the containers' children in the parent's namespace are recognised by
// their local names.
bool hasLocalName(const ZrToken& token, const ZrToken& name) { return token.tokenText() == name.tokenText(); }

}  // namespace

ZrXmlSchema::ZrXmlSchema()
    : m_theIgnoredDepth(0), m_theDepthReported(false), m_theRegistrations(0),
      m_thePortableSchemaFileNames(ZrXmlWriter::defaultPortableSchemaFileNames()) {}

ZrXmlSchema::ZrXmlSchema(const ZrXmlSchema&) = default;

ZrXmlSchema& ZrXmlSchema::operator=(const ZrXmlSchema&) = default;

ZrXmlSchema::~ZrXmlSchema() = default;

// ---------------------------------------------------------------------------------------------
// Building the description

void ZrXmlSchema::writeStartTag(const ZrToken& token, int option) { startElement(token, option, false); }

// The element takes the namespace of the innermost open element, as the writer gives it.
void ZrXmlSchema::writeStartTagUsingParentNamespace(const ZrToken& token, int option) {
  if (m_theFrames.empty() || m_theIgnoredDepth != 0) {
    startElement(token, option, true);
    return;
  }
  startElement(ZrToken(m_theFrames.back().element.token().namespaceText(), token.tokenText()), option, true);
}

bool ZrXmlSchema::ignoring() { return m_theIgnoredDepth != 0; }

void ZrXmlSchema::startElement(const ZrToken& token, int option, bool structural) {
  if (ignoring() || m_theFrames.size() >= m_theMaxDepth) {
    ++m_theIgnoredDepth;
    if (!m_theDepthReported)
      Zr::Print::instance().write(Zr::PrintError,
                                  "ZrXmlSchema Error: elements nested deeper than %u levels are not described: %s\n",
                                  m_theMaxDepth, token.namespaceAndToken().c_str());
    m_theDepthReported = true;
    return;
  }
  Frame frame;
  frame.element = ZrXmlSchemaElement(token, 0, 1);
  frame.option = option;
  frame.structural = structural;
  if (structural) {
    if (hasLocalName(token, ZrXml::ZrElementToken))
      frame.element.setOccurs(0, ZrXmlSchemaElement::m_theUnbounded);
    else if (hasLocalName(token, ZrXml::ZrKeyToken) || hasLocalName(token, ZrXml::ZrValueToken) ||
             hasLocalName(token, ZrXml::ZrFirstToken) || hasLocalName(token, ZrXml::ZrSecondToken))
      frame.element.setOccurs(1, 1);
  } else if (option == ZrXmlSchemaElementType::XML_CHOICE_OPTION) {
    frame.element.setOccurs(1, 1);  // the group reference repeats the choice
    // Made now, so that the alternatives described below can refer to it.
    if (!m_theFrames.empty()) ensureChoiceGroup(m_theFrames.back());
  }
  frame.typesAtStart = m_theComplexTypes.size();
  frame.groupsAtStart = m_theGroups.size();
  frame.registrationsAtStart = m_theRegistrations;
  m_theFrames.push_back(frame);
}

void ZrXmlSchema::setAttributeName(const ZrToken& token) {
  if (ignoring() || m_theFrames.empty()) return;
  m_theFrames.back().pendingAttribute = token;
  m_theFrames.back().attributePending = true;
}

void ZrXmlSchema::setType(const std::type_info& info) {
  if (ignoring()) return;
  if (m_theFrames.empty()) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlSchema Error: value type %s outside any element.\n",
                                info.name());
    return;
  }
  Frame& frame = m_theFrames.back();
  if (!frame.attributePending) {
    frame.element.type().setValueType(info);
    frame.valueTarget = theElementValue;
    return;
  }
  frame.attributePending = false;
  ZrXmlSchemaComplexType& type = m_theComplexTypes[static_cast<size_t>(ensureComplexType(frame))];
  ZrXmlSchemaAttributeType* attribute = type.addAttribute(frame.pendingAttribute.tokenText());
  frame.valueTarget = theNoValue;
  if (!attribute) return;  // declared already: the first description stays
  attribute->type().setValueType(info);
  frame.valueTarget = static_cast<int>(type.attributes().size() - 1);
}

void ZrXmlSchema::addEnumeration(const std::string& name) {
  if (ignoring() || m_theFrames.empty()) return;
  Frame& frame = m_theFrames.back();
  if (frame.valueTarget == theElementValue)
    frame.element.type().addEnumeration(name);
  else if (frame.valueTarget >= 0 && frame.complexType >= 0)
    m_theComplexTypes[static_cast<size_t>(frame.complexType)]
        .attribute(static_cast<size_t>(frame.valueTarget))
        .type()
        .addEnumeration(name);
}

void ZrXmlSchema::openGroup() {
  if (!ignoring() && !m_theFrames.empty()) ++m_theFrames.back().openGroups;
}

void ZrXmlSchema::closeGroup() {
  if (ignoring() || m_theFrames.empty()) return;
  Frame& frame = m_theFrames.back();
  if (frame.openGroups == 0) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlSchema Error: group closed but none open in %s\n",
                                frame.element.token().namespaceAndToken().c_str());
    return;
  }
  --frame.openGroups;
}

void ZrXmlSchema::repeatEnclosingChoice() {
  if (ignoring() || m_theFrames.size() < 2) return;
  for (size_t i = m_theFrames.size() - 1; i-- > 0;) {
    if (m_theFrames[i].choiceGroup < 0) continue;
    Frame& frame = m_theFrames.back();
    m_theComplexTypes[static_cast<size_t>(ensureComplexType(frame))].setChoiceGroup(m_theFrames[i].choiceGroup);
    return;
  }
}

// Answering true closes the element: its type is known, and the caller writes no end tag.
ZrBoolean ZrXmlSchema::isRegistered(const ZrToken&, const std::string& typeName) {
  if (ignoring()) {
    --m_theIgnoredDepth;
    return true;
  }
  if (m_theFrames.empty()) return false;
  Frame& frame = m_theFrames.back();
  const std::string& xmlNamespace = frame.element.token().namespaceText();
  const std::string key = xmlNamespace + "#" + typeName;
  const auto known = m_theRegistry.find(key);
  if (known != m_theRegistry.end()) {
    Frame closed = frame;
    m_theFrames.pop_back();
    closed.element.type().setComplexType(known->second);
    attach(closed.element, closed.option, closed.structural);
    return true;
  }
  // Registered before it is described, so that a class whose members lead back to it ends there.
  const std::string name = uniqueName(m_theTypeNames[xmlNamespace], typeNameOf(typeName));
  m_theComplexTypes.emplace_back(name, xmlNamespace);
  frame.complexType = static_cast<int>(m_theComplexTypes.size() - 1);
  frame.registryKey = key;
  m_theRegistry[key] = frame.complexType;
  ++m_theRegistrations;
  return false;
}

void ZrXmlSchema::writeEndTag() {
  if (ignoring()) {
    --m_theIgnoredDepth;
    return;
  }
  if (m_theFrames.empty()) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlSchema Error: end tag without an open element.\n");
    return;
  }
  Frame frame = m_theFrames.back();
  m_theFrames.pop_back();
  finishElement(frame);
}

int ZrXmlSchema::ensureComplexType(Frame& frame) {
  if (frame.complexType < 0) {
    m_theComplexTypes.emplace_back(std::string(), frame.element.token().namespaceText());
    frame.complexType = static_cast<int>(m_theComplexTypes.size() - 1);
  }
  return frame.complexType;
}

int ZrXmlSchema::ensureChoiceGroup(Frame& frame) {
  if (frame.choiceGroup >= 0) return frame.choiceGroup;
  const int type = ensureComplexType(frame);
  ZrXmlSchemaComplexType& complexType = m_theComplexTypes[static_cast<size_t>(type)];
  const std::string& xmlNamespace = frame.element.token().namespaceText();
  const std::string base = (complexType.name().empty() ? frame.element.token().tokenText() : complexType.name());
  m_theGroups.emplace_back(uniqueName(m_theGroupNames[xmlNamespace], base + ".choice"), xmlNamespace);
  frame.choiceGroup = static_cast<int>(m_theGroups.size() - 1);
  complexType.setChoiceGroup(frame.choiceGroup);
  return frame.choiceGroup;
}

// An element whose type holds nothing but a value is a simple element; a type named for it is then
// dropped again (no other element can have referred to it: only types with children lead back).
void ZrXmlSchema::finishElement(Frame& frame) {
  ZrXmlSchemaElement& element = frame.element;
  const bool hasValue = element.type().isSimple();
  if (frame.complexType >= 0) {
    ZrXmlSchemaComplexType& type = m_theComplexTypes[static_cast<size_t>(frame.complexType)];
    if (type.isEmpty() && hasValue) {
      type.drop();
      if (!frame.registryKey.empty()) m_theRegistry.erase(frame.registryKey);
    } else {
      if (hasValue) type.setValue(element.type());
      element.type().setComplexType(frame.complexType);
    }
  }
  if (frame.structural && hasLocalName(element.token(), ZrXml::ZrGroupToken)) element.type().makeList();
  if (attach(element, frame.option, frame.structural)) releaseRecordsOf(frame);
}

// The types made while the element was open describe it alone, unless the description that took it
// in adopted one of them, or a named type or a group was made meanwhile (others may refer to those).
void ZrXmlSchema::releaseRecordsOf(const Frame& frame) {
  if (m_theGroups.size() != frame.groupsAtStart || m_theRegistrations != frame.registrationsAtStart) return;
  if (!m_theFrames.empty() && static_cast<size_t>(m_theFrames.back().complexType + 1) > frame.typesAtStart) return;
  if (m_theComplexTypes.size() > frame.typesAtStart)
    m_theComplexTypes.erase(m_theComplexTypes.begin() + static_cast<std::ptrdiff_t>(frame.typesAtStart),
                            m_theComplexTypes.end());
}

bool ZrXmlSchema::attach(const ZrXmlSchemaElement& element, int option, bool structural) {
  if (m_theFrames.empty()) {
    for (const ZrXmlSchemaGlobalElementType& root : m_theRootElements)
      if (root.element().token() == element.token()) return false;  // described before: the first stays
    ZrXmlSchemaElement root(element);
    root.setOccurs(1, 1);
    m_theRootElements.emplace_back(root);
    return false;
  }
  Frame& parent = m_theFrames.back();
  if (option == ZrXmlSchemaElementType::XML_CHOICE_OPTION && !structural) {
    m_theGroups[static_cast<size_t>(ensureChoiceGroup(parent))].addAlternative(element);
    return false;
  }
  ZrXmlSchemaComplexType& type = m_theComplexTypes[static_cast<size_t>(ensureComplexType(parent))];
  const size_t index = type.findElement(element.token().tokenText());
  if (index == type.elements().size()) {
    type.addElement(element);
    return false;
  }
  // Repeated within one parent: written again after a sibling, the element leaves the sequence's order,
  // and the parent's children are described as a choice repeated any number of times.
  if (index + 1 != type.elements().size()) type.makeUnordered();
  type.addElement(element);
  return !merge(type.element(index).type(), element.type());
}

// Merging never makes records, so references into the generator's vectors stay valid. It recurses once
// per level of the incoming description, which is no deeper than the elements open while it was made.
bool ZrXmlSchema::merge(ZrXmlSchemaElementType& known, const ZrXmlSchemaElementType& incoming) {
  const bool knownComplex = known.kind() == ZrXmlSchemaElementType::COMPLEX;
  const bool incomingComplex = incoming.kind() == ZrXmlSchemaElementType::COMPLEX;
  if (incoming.kind() == ZrXmlSchemaElementType::NOTHING) return false;
  if (known.kind() == ZrXmlSchemaElementType::NOTHING) {
    known = incoming;
    return incomingComplex;
  }
  if (!knownComplex && !incomingComplex) {
    known.widen(incoming);
    return false;
  }
  if (knownComplex && incomingComplex) return mergeComplexTypes(known.complexType(), incoming.complexType());
  if (knownComplex) {
    widenValue(m_theComplexTypes[static_cast<size_t>(known.complexType())], incoming);
    return false;
  }
  const ZrXmlSchemaElementType value = known;  // a plain value meets attributes or children
  known = incoming;
  widenValue(m_theComplexTypes[static_cast<size_t>(incoming.complexType())], value);
  return true;
}

void ZrXmlSchema::widenValue(ZrXmlSchemaComplexType& type, const ZrXmlSchemaElementType& value) {
  ZrXmlSchemaElementType widened = type.value();
  widened.widen(value);
  type.setValue(widened);
}

// Returns whether known now refers to records of incoming.
bool ZrXmlSchema::mergeComplexTypes(int knownIndex, int incomingIndex) {
  const ZrXmlSchemaComplexType* knownType = complexType(knownIndex);
  const ZrXmlSchemaComplexType* incomingType = complexType(incomingIndex);
  if (knownIndex == incomingIndex || !knownType || !incomingType) return false;
  if (!knownType->name().empty() || !incomingType->name().empty()) return false;  // a class's own description
  ZrXmlSchemaComplexType& known = m_theComplexTypes[static_cast<size_t>(knownIndex)];
  const ZrXmlSchemaComplexType& incoming = m_theComplexTypes[static_cast<size_t>(incomingIndex)];
  for (const ZrXmlSchemaAttributeType& attribute : incoming.attributes()) {
    ZrXmlSchemaAttributeType* same = known.findAttribute(attribute.name());
    if (same)
      same->type().widen(attribute.type());
    else
      known.addAttribute(attribute.name())->type() = attribute.type();
  }
  if (incoming.value().isSimple()) widenValue(known, incoming.value());
  if (incoming.unordered()) known.makeUnordered();
  bool adopted = false;
  if (known.choiceGroup() < 0 && incoming.choiceGroup() >= 0) {
    known.setChoiceGroup(incoming.choiceGroup());
    adopted = true;
  }
  mergeElements(known, incoming, adopted);
  return adopted;
}

// Children new to known go after the known children that preceded them in incoming; a child that
// either side lacks becomes optional.
void ZrXmlSchema::mergeElements(ZrXmlSchemaComplexType& known, const ZrXmlSchemaComplexType& incoming,
                                bool& adopted) {
  size_t position = 0;
  for (const ZrXmlSchemaElement& element : incoming.elements()) {
    const size_t index = known.findElement(element.token().tokenText());
    if (index == known.elements().size()) {
      ZrXmlSchemaElement optional(element);
      optional.setOccurs(0, element.maxOccurs());
      known.insertElement(position++, optional);
      adopted = adopted || element.type().kind() == ZrXmlSchemaElementType::COMPLEX;
      continue;
    }
    if (index < position) known.makeUnordered();
    position = std::max(position, index + 1);
    ZrXmlSchemaElement& same = known.element(index);
    const bool unbounded = same.maxOccurs() == ZrXmlSchemaElement::m_theUnbounded ||
                           element.maxOccurs() == ZrXmlSchemaElement::m_theUnbounded;
    same.setOccurs(std::min(same.minOccurs(), element.minOccurs()),
                   unbounded ? ZrXmlSchemaElement::m_theUnbounded : std::max(same.maxOccurs(), element.maxOccurs()));
    adopted = merge(same.type(), element.type()) || adopted;
  }
  for (size_t index = 0; index < known.elements().size(); ++index) {
    ZrXmlSchemaElement& element = known.element(index);
    if (incoming.findElement(element.token().tokenText()) == incoming.elements().size())
      element.setOccurs(0, element.maxOccurs());
  }
}

std::string ZrXmlSchema::uniqueName(std::set<std::string>& taken, const std::string& base) const {
  std::string name = base;
  for (int suffix = 2; taken.count(name) != 0; ++suffix) name = base + std::to_string(suffix);
  taken.insert(name);
  return name;
}

const ZrXmlSchemaComplexType* ZrXmlSchema::complexType(int index) const {
  return index >= 0 && static_cast<size_t>(index) < m_theComplexTypes.size()
             ? &m_theComplexTypes[static_cast<size_t>(index)]
             : nullptr;
}

const ZrXmlSchemaGroupType* ZrXmlSchema::group(int index) const {
  return index >= 0 && static_cast<size_t>(index) < m_theGroups.size() ? &m_theGroups[static_cast<size_t>(index)]
                                                                        : nullptr;
}

// ---------------------------------------------------------------------------------------------
// Names

std::string ZrXmlSchema::escaped(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '&': result += "&amp;"; break;
      case '<': result += "&lt;"; break;
      case '>': result += "&gt;"; break;
      case '"': result += "&quot;"; break;
      default: result += c;
    }
  }
  return result;
}

// Template arguments are joined with dots: ZrXmlVectorType<ZrXmlBasicType<double> > gives
// "ZrXmlVectorType.ZrXmlBasicType.double"; the standard string is called "string".
std::string ZrXmlSchema::typeNameOf(const std::string& runTimeTypeName) {
  std::string text = demangled(runTimeTypeName);
  replaceAll(text, "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >", "string");
  replaceAll(text, "std::basic_string<char, std::char_traits<char>, std::allocator<char> >", "string");
  std::string name;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (isNameStart(c) || (c >= '0' && c <= '9')) {
      name += c;
    } else if (c == ' ') {
      // "unsigned int" stays one word; blanks around punctuation go.
      if (!name.empty() && isNameChar(name.back()) && name.back() != '.' && i + 1 < text.size() &&
          isNameStart(text[i + 1]))
        name += '_';
    } else if ((c == '<' || c == ',' || c == ':') && !name.empty() && name.back() != '.') {
      name += '.';
    }
  }
  while (!name.empty() && name.back() == '.') name.pop_back();
  if (name.empty() || !isNameStart(name[0])) name = "type." + name;
  return name;
}

// ---------------------------------------------------------------------------------------------
// Writing

ZrXmlSchema::Globals ZrXmlSchema::allGlobalElements() const {
  Globals globals = m_theRootElements;
  for (const ZrXmlSchemaGlobalElementType& root : m_theRootElements) {
    const ZrXmlSchemaElementType& type = root.element().type();
    const ZrXmlSchemaComplexType* anonymous = complexType(type.complexType());
    if (type.kind() == ZrXmlSchemaElementType::COMPLEX && anonymous && anonymous->name().empty())
      collectReferences(anonymous->elements(), root.xmlNamespace(), globals);
  }
  for (const ZrXmlSchemaComplexType& type : m_theComplexTypes)
    if (type.isUsed() && !type.name().empty()) collectReferences(type.elements(), type.xmlNamespace(), globals);
  for (const ZrXmlSchemaGroupType& group : m_theGroups)
    collectReferences(group.alternatives(), group.xmlNamespace(), globals);
  return globals;
}

// Walks the elements declared in a file of containerNamespace, and the anonymous types written inside
// them, for elements of other namespaces. Anonymous types nest no deeper than the elements described.
void ZrXmlSchema::collectReferences(const std::vector<ZrXmlSchemaElement>& elements,
                                    const std::string& containerNamespace, Globals& globals) const {
  for (const ZrXmlSchemaElement& element : elements) {
    const bool local = element.isLocalIn(containerNamespace);
    if (!local) addReferencedGlobal(element, globals);
    const ZrXmlSchemaComplexType* anonymous = complexType(element.type().complexType());
    if (element.type().kind() != ZrXmlSchemaElementType::COMPLEX || !anonymous || !anonymous->name().empty())
      continue;
    collectReferences(anonymous->elements(), local ? containerNamespace : element.token().namespaceText(), globals);
  }
}

void ZrXmlSchema::addReferencedGlobal(const ZrXmlSchemaElement& element, Globals& globals) const {
  for (const ZrXmlSchemaGlobalElementType& global : globals) {
    if (global.element().token() != element.token()) continue;
    if (!(global.element().type() == element.type()))
      Zr::Print::instance().write(Zr::PrintError,
                                  "ZrXmlSchema Warning: element %s is described with two different types; the "
                                  "first is kept.\n",
                                  element.token().namespaceAndToken().c_str());
    return;
  }
  ZrXmlSchemaElement global(element);
  global.setOccurs(1, 1);
  globals.emplace_back(global);
}

std::set<std::string> ZrXmlSchema::namespacesOf(const Globals& globals) const {
  std::set<std::string> result;
  for (const ZrXmlSchemaGlobalElementType& global : globals) result.insert(global.xmlNamespace());
  for (const ZrXmlSchemaComplexType& type : m_theComplexTypes)
    if (type.isUsed() && !type.name().empty()) result.insert(type.xmlNamespace());
  for (const ZrXmlSchemaGroupType& group : m_theGroups) result.insert(group.xmlNamespace());
  return result;
}

// A namespace's prefix is its text after the last "/", as the writer chooses it, when that is a
// usable name; otherwise "ns" and a number.
std::map<std::string, std::string> ZrXmlSchema::prefixesOf(const std::set<std::string>& namespaces) const {
  std::map<std::string, std::string> prefixes;
  std::set<std::string> taken = {"xs"};
  int counter = 1;
  for (const std::string& xmlNamespace : namespaces) {
    if (xmlNamespace.empty()) {
      prefixes[xmlNamespace] = std::string();
      continue;
    }
    const size_t slash = xmlNamespace.find_last_of('/');
    std::string prefix = slash == std::string::npos ? xmlNamespace : xmlNamespace.substr(slash + 1);
    const bool reserved = prefix.size() >= 3 && (prefix[0] | 0x20) == 'x' && (prefix[1] | 0x20) == 'm' &&
                          (prefix[2] | 0x20) == 'l';
    if (!isNcName(prefix) || prefix.find('.') != std::string::npos || reserved || taken.count(prefix) != 0)
      prefix = "ns" + std::to_string(counter++);
    while (taken.count(prefix) != 0) prefix = "ns" + std::to_string(counter++);
    taken.insert(prefix);
    prefixes[xmlNamespace] = prefix;
  }
  return prefixes;
}

std::vector<std::string> ZrXmlSchema::namespaces() const {
  const std::set<std::string> all = namespacesOf(allGlobalElements());
  return std::vector<std::string>(all.begin(), all.end());
}

std::string ZrXmlSchema::fileText(const std::string& xmlNamespace, const std::string& filename) const {
  const Globals globals = allGlobalElements();
  return fileText(xmlNamespace, filename, globals, prefixesOf(namespacesOf(globals)));
}

std::string ZrXmlSchema::fileText(const std::string& xmlNamespace, const std::string& filename,
                                  const Globals& globals, const std::map<std::string, std::string>& prefixes) const {
  ZrXmlSchemaFile file(xmlNamespace, prefixes);
  std::ostringstream body;
  for (const ZrXmlSchemaGlobalElementType& global : globals)
    if (global.xmlNamespace() == xmlNamespace) global.write(body, file, "  ", *this);
  for (const ZrXmlSchemaGroupType& group : m_theGroups)
    if (group.xmlNamespace() == xmlNamespace) group.write(body, file, "  ", *this);
  for (const ZrXmlSchemaComplexType& type : m_theComplexTypes)
    if (type.isUsed() && !type.name().empty() && type.xmlNamespace() == xmlNamespace)
      type.write(body, file, "  ", *this);

  std::ostringstream text;
  text << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xs:schema xmlns:xs=\"" << theXsdNamespace << "\"";
  std::set<std::string> declared = file.imports();
  declared.insert(xmlNamespace);
  for (const std::string& used : declared)
    if (!used.empty()) text << "\n  xmlns:" << file.prefix(used) << "=\"" << escaped(used) << "\"";
  if (!xmlNamespace.empty()) text << "\n  targetNamespace=\"" << escaped(xmlNamespace) << "\"";
  text << "\n  elementFormDefault=\"qualified\" attributeFormDefault=\"unqualified\">\n";
  for (const std::string& imported : file.imports()) {
    text << "  <xs:import";
    if (!imported.empty()) text << " namespace=\"" << escaped(imported) << "\"";
    text << " schemaLocation=\"" << escaped(ZrXmlWriter::schemaFileName(filename, imported, m_thePortableSchemaFileNames)) << "\"/>\n";
  }
  text << body.str() << "</xs:schema>\n";
  return text.str();
}

ZrBoolean ZrXmlSchema::write(std::string filename) {
  if (!m_theFrames.empty() || m_theIgnoredDepth != 0) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlSchema Error: %u elements still open; nothing written.\n\tFile: %s\n",
                                static_cast<unsigned>(m_theFrames.size() + m_theIgnoredDepth), filename.c_str());
    return false;
  }
  if (m_theRootElements.empty()) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlSchema Error: no element described; nothing written.\n\tFile: %s\n",
                                filename.c_str());
    return false;
  }
  const Globals globals = allGlobalElements();
  const std::set<std::string> all = namespacesOf(globals);
  const std::map<std::string, std::string> prefixes = prefixesOf(all);
  const size_t slash = filename.find_last_of('/');
  const std::string directory = slash == std::string::npos ? std::string() : filename.substr(0, slash + 1);
  ZrBoolean result = true;
  for (const std::string& xmlNamespace : all) {
    const std::string path = directory + ZrXmlWriter::schemaFileName(filename, xmlNamespace, m_thePortableSchemaFileNames);
    // Written beside the target and renamed into place: a failed write leaves no truncated schema.
    if (!ZrReplaceFile(path, fileText(xmlNamespace, filename, globals, prefixes))) {
      Zr::Print::instance().write(Zr::PrintError, "ZrXmlSchema Error: cannot write the schema file.\n\tFile: %s\n",
                                  path.c_str());
      result = false;
    }
  }
  return result;
}
