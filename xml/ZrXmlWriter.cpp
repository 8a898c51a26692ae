#include "ZrXmlWriter.h"

#include <ZrNumberText.h>
#include <ZrPrint.h>
#include <ZrXmlSchemaElementType.h>

#include <charconv>
#include <cstdio>
#include <cstring>

namespace {

const char* const theSchemaInstanceUri = "http://www.w3.org/2001/XMLSchema-instance";
const char* const theSchemaInstancePrefix = "xsi";

// Content longer than this goes on a line of its own between the tags.
const size_t theLongestInlineContent = 50;
const ZrU32 theDefaultContentColumns = 10;

// The text after the last '/', or all of it when there is none.
std::string afterLastSlash(const std::string& text) {
  size_t slash = text.rfind('/');
  return slash == std::string::npos ? text : text.substr(slash + 1);
}

// The namespace's last segment (after "/" or ":") with every character that is not safe in a file name
// and a relative reference replaced by "_".
std::string portableNamespacePart(const std::string& xmlNamespace) {
  const size_t separator = xmlNamespace.find_last_of("/:");
  std::string part = separator == std::string::npos ? xmlNamespace : xmlNamespace.substr(separator + 1);
  for (char& c : part) {
    const bool safe = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' ||
                      c == '-' || c == '_';
    if (!safe) c = '_';
  }
  return part;
}

bool isNameStartByte(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80;
}

bool isNameByte(unsigned char c) {
  return isNameStartByte(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

// Whether text may stand as a namespace prefix: a name without ':' that does not begin with the
// reserved letters "xml" in any case. Bytes above 127 are taken as name characters.
bool isUsablePrefix(const std::string& text) {
  if (text.empty() || !isNameStartByte(static_cast<unsigned char>(text[0]))) return false;
  for (char c : text)
    if (!isNameByte(static_cast<unsigned char>(c))) return false;
  if (text.size() >= 3 && (text[0] | 0x20) == 'x' && (text[1] | 0x20) == 'm' && (text[2] | 0x20) == 'l') return false;
  return true;
}

// XML Schema names of the value types; every type not listed (int and unsigned int included) is "string".
struct TypeName {
  const std::type_info* info;
  const char* name;
};

const TypeName theTypeNames[] = {
    {&typeid(bool), "boolean"},      {&typeid(float), "float"},
    {&typeid(double), "double"},     {&typeid(unsigned long), "unsignedLong"},
    {&typeid(long), "long"},         {&typeid(unsigned short), "unsignedShort"},
    {&typeid(short), "short"},       {&typeid(unsigned char), "unsignedByte"},
    {&typeid(char), "byte"},
};

// Type information is compared by identity first; the name comparison covers type information
// objects duplicated across shared-library boundaries.
const char* schemaTypeName(const std::type_info& info) {
  for (const TypeName& entry : theTypeNames)
    if (&info == entry.info) return entry.name;
  for (const TypeName& entry : theTypeNames)
    if (info == *entry.info || std::strcmp(info.name(), entry.info->name()) == 0) return entry.name;
  return "string";
}

// The predefined entity reference that stands for a markup character in escaped text, or null.
const char* markupReference(char c) {
  switch (c) {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    default: return nullptr;
  }
}

// Whether escaped text writes c as a character reference: control characters anywhere (a reader trims or
// normalises them), and blanks at either end of the text (a reader trims those).
bool needsCharacterReference(const char* at, const char* text, const char* end) {
  const unsigned char c = static_cast<unsigned char>(*at);
  if (c < 0x20 || c == 0x7F) return true;
  return c == ' ' && (at == text || at + 1 == end);
}

// Hands text to out(first, size) in pieces: runs without markup characters as they stand, each markup
// character as its entity reference, and each character that a reader would not give back as it stands
// (control characters, blanks at the ends) as a character reference.
template <class Out>
void forEachEscapedPiece(const char* text, std::size_t size, Out&& out) {
  const char* run = text;
  const char* end = text + size;
  char numeric[8];
  for (const char* at = text; at != end; ++at) {
    const char* reference = markupReference(*at);
    std::size_t length = 0;
    if (reference) {
      length = std::strlen(reference);
    } else if (needsCharacterReference(at, text, end)) {
      length = static_cast<std::size_t>(std::snprintf(numeric, sizeof numeric, "&#%u;", static_cast<unsigned char>(*at)));
      reference = numeric;
    } else {
      continue;
    }
    out(run, static_cast<std::size_t>(at - run));
    out(reference, length);
    run = at + 1;
  }
  out(run, static_cast<std::size_t>(end - run));
}

}  // namespace

ZrXmlWriter::ElementStruct::ElementStruct() = default;
ZrXmlWriter::ElementStruct::ElementStruct(const ElementStruct& other) = default;
ZrXmlWriter::ElementStruct& ZrXmlWriter::ElementStruct::operator=(const ElementStruct& other) = default;
ZrXmlWriter::ElementStruct::~ElementStruct() = default;

ZrXmlWriter::ZrXmlWriter()
    : m_theOutput(nullptr),
      m_theMode(0),
      m_theDepth(0),
      m_theContentCount(0),
      m_theNumOfContentColumns(theDefaultContentColumns) {
  setOptions(defaultOptions());
}

ZrXmlWriter::ZrXmlWriter(const std::string& filename, std::ostream& output) : ZrXmlWriter() {
  m_theOutput = &output;
  m_theFilename = filename;
}

ZrXmlWriter::ZrXmlWriter(const ZrXmlWriter& other)
    : m_theOutput(other.m_theOutput),
      m_theFilename(other.m_theFilename),
      m_theMode(other.m_theMode),
      m_theElementStack(other.m_theElementStack),
      m_theDepth(other.m_theDepth),
      m_theCurrentNamespace(other.m_theCurrentNamespace),
      m_theContentBuffer(other.m_theContentBuffer),
      m_theContentCount(other.m_theContentCount),
      m_theNumOfContentColumns(other.m_theNumOfContentColumns),
      m_theOptions(other.m_theOptions),
      m_theSchema(other.m_theSchema),
      m_theTypeName(other.m_theTypeName),
      m_theLastTypeInfo(other.m_theLastTypeInfo),
      m_theNamedTypeInfo(other.m_theNamedTypeInfo) {
  m_theValueStream.copyfmt(other.m_theValueStream);
  m_theValueStream.str(other.m_theValueStream.str());
}

ZrXmlWriter& ZrXmlWriter::operator=(const ZrXmlWriter& other) {
  if (this == &other) return *this;
  m_theValueStream.copyfmt(other.m_theValueStream);
  m_theValueStream.str(other.m_theValueStream.str());
  m_theValueStream.clear(other.m_theValueStream.rdstate());
  m_theOutput = other.m_theOutput;
  m_theFilename = other.m_theFilename;
  m_theMode = other.m_theMode;
  m_theElementStack = other.m_theElementStack;
  m_theDepth = other.m_theDepth;
  m_theCurrentNamespace = other.m_theCurrentNamespace;
  m_theContentBuffer = other.m_theContentBuffer;
  m_theContentCount = other.m_theContentCount;
  m_theNumOfContentColumns = other.m_theNumOfContentColumns;
  m_theOptions = other.m_theOptions;
  m_theSchema = other.m_theSchema;
  m_theTypeName = other.m_theTypeName;
  m_theLastTypeInfo = other.m_theLastTypeInfo;
  m_theNamedTypeInfo = other.m_theNamedTypeInfo;
  return *this;
}

// The output stream belongs to the caller and stays open.
ZrXmlWriter::~ZrXmlWriter() { flushOutput(); }

// ---- output helpers ----

// The pieces of one call (a start tag, an attribute, an end tag) are gathered and handed to the stream
// at the end of the call, in one piece: the stream sees everything a call wrote when the call returns.
void ZrXmlWriter::put(const std::string& text) { put(text.data(), text.size()); }

void ZrXmlWriter::put(const char* text) { put(text, std::strlen(text)); }

// Most pieces are a few bytes: a copy into room already there, without a call into the string class.
inline void ZrXmlWriter::put(const char* text, std::size_t size) {
  if (m_theOutputBuffer.size() - m_theOutputSize < size) m_theOutputBuffer.resize(2 * (m_theOutputSize + size));
  std::memcpy(m_theOutputBuffer.data() + m_theOutputSize, text, size);
  m_theOutputSize += size;
}

// Straight into the stream's buffer: the stream's own write() builds a sentry for every call. The
// stream's state follows as with write(): nothing is written to a stream that is not good, and a short
// write makes it bad.
void ZrXmlWriter::flushOutput() {
  if (m_theOutputSize == 0) return;
  const std::streamsize size = static_cast<std::streamsize>(m_theOutputSize);
  std::ostream* out = m_theOutput;
  if (out && (!out->good() || !out->rdbuf())) {
    out->setstate(std::ios_base::failbit);
  } else if (out) {
    if (std::ostream* tied = out->tie()) tied->flush();
    if (out->rdbuf()->sputn(m_theOutputBuffer.data(), size) != size) out->setstate(std::ios_base::badbit);
    if (out->flags() & std::ios_base::unitbuf) out->flush();
  }
  m_theOutputSize = 0;
}

void ZrXmlWriter::tab(unsigned count) {
  for (unsigned i = 0; i < count; ++i) put(m_theOptions.indent());
}

// ---- namespaces ----

// The prefix with which an open element declared xmlNamespace, the nearest first, or null when none
// did. In the toolkit's form any such declaration serves; a namespace-complete document also needs it
// to be still in force.
const std::string* ZrXmlWriter::declaredPrefix(const std::string& xmlNamespace) const {
  if (m_theOptions.namespaceComplete()) return prefixInForce(xmlNamespace);
  for (size_t level = m_theDepth; level-- > 0;) {
    const auto& declarations = m_theElementStack[level].namespaces;
    auto found = declarations.find(xmlNamespace);
    if (found != declarations.end()) return &found->second;
  }
  return nullptr;
}

// The prefix bound to xmlNamespace at the innermost open element, or null when the namespace is
// not declared there. A declaration counts only while no nearer element rebinds its prefix.
const std::string* ZrXmlWriter::prefixInForce(const std::string& xmlNamespace) const {
  for (size_t level = m_theDepth; level-- > 0;) {
    const auto& declarations = m_theElementStack[level].namespaces;
    auto found = declarations.find(xmlNamespace);
    if (found != declarations.end() && !prefixReboundBelow(found->second, level)) return &found->second;
  }
  return nullptr;
}

bool ZrXmlWriter::prefixReboundBelow(const std::string& prefix, size_t level) const {
  for (size_t inner = level + 1; inner < m_theDepth; ++inner)
    for (const auto& declaration : m_theElementStack[inner].namespaces)
      if (declaration.second == prefix) return true;
  return false;
}

// The prefix with which the element about to be pushed declares xmlNamespace.
std::string ZrXmlWriter::declarationPrefix(const std::string& xmlNamespace) const {
  std::string prefix = afterLastSlash(xmlNamespace);
  if (prefix.empty() || !m_theOptions.namespaceComplete()) return prefix;  // empty: a default-namespace declaration
  bool usable = isUsablePrefix(prefix) && (prefix != theSchemaInstancePrefix || xmlNamespace == theSchemaInstanceUri);
  return usable ? prefix : "ns" + std::to_string(m_theDepth + 1);
}

// ---- element protocol ----

// The name is assigned part by part, so that a reused slot keeps the storage of its strings.
// Documents repeat their shapes, so a slot often holds the very name it is given again: it is then
// left as it is.
ZrXmlWriter::ElementStruct& ZrXmlWriter::pushElement(const std::string& xmlNamespace, const std::string& localName) {
  if (m_theDepth == m_theElementStack.size()) m_theElementStack.emplace_back();
  ElementStruct& element = m_theElementStack[m_theDepth++];
  if (element.element.namespaceText() != xmlNamespace) element.element.setNamespace(xmlNamespace);
  if (element.element.tokenText() != localName) element.element.assign(localName);
  if (!element.namespaces.empty()) element.namespaces.clear();
  return element;
}

// Ends the parent's start tag before a child. Buffered content (mixed content, outside the call
// protocol) is written out first so that nothing is lost and the document stays well-formed.
void ZrXmlWriter::closeOpenStartTag() {
  if (m_theMode == 1 || m_theMode == 3) {
    put(">\n");
  } else if (m_theMode == 4) {
    put(">");
    put(m_theContentBuffer);
    put("\n");
  }
}

void ZrXmlWriter::startContent() {
  m_theContentBuffer.clear();
  m_theContentCount = 0;
  m_theNumOfContentColumns = theDefaultContentColumns;
  m_theMode = 1;
}

void ZrXmlWriter::writeStartTag(const ZrToken& token) {
  openElement(token.namespaceText(), token.tokenText());
  if (m_theOptions.schemaWriter()) m_theSchema.writeStartTag(token, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  flushOutput();
}

// The child takes its parent's namespace, so it never needs a declaration of its own. The generator is
// told that the child is its parent's own ("group", "element", "key" and the like), which it describes
// by the containers' layout. The parent's namespace is taken from its entry, without a token made per
// child: containers write one such child per element.
void ZrXmlWriter::writeStartTagUsingParentNamespace(const ZrToken& token) {
  openElement(m_theDepth == 0 ? token.namespaceText() : innermost().element.namespaceText(), token.tokenText());
  if (m_theOptions.schemaWriter())
    m_theSchema.writeStartTagUsingParentNamespace(token, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  flushOutput();
}

// The two texts may live in the parent's entry, which pushing the new entry leaves in place.
void ZrXmlWriter::openElement(const std::string& xmlNamespace, const std::string& localName) {
  const std::string* knownPrefix = nullptr;
  std::string newPrefix;
  bool declare = false;
  if (xmlNamespace.empty()) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlWriter Error: All elements must have namespace: %s\n\tFile: %s\n",
                                localName.c_str(), m_theFilename.c_str());
  } else if (m_theDepth == 0) {
    m_theCurrentNamespace = xmlNamespace;
    declare = m_theOptions.namespaceComplete();  // the document's default namespace, declared here
  } else if (!m_theOptions.namespaceComplete() && xmlNamespace == m_theCurrentNamespace) {
    // the current namespace is written unprefixed and undeclared
  } else if ((knownPrefix = declaredPrefix(xmlNamespace)) == nullptr) {
    newPrefix = declarationPrefix(xmlNamespace);
    declare = true;
  }
  const std::string& prefix = knownPrefix ? *knownPrefix : newPrefix;

  closeOpenStartTag();
  tab(static_cast<unsigned>(m_theDepth));
  // A known prefix lives in an open element below the new one, and growing the stack keeps
  // references valid, so the reused slot can take the qualified name without a temporary.
  ElementStruct& element = pushElement(xmlNamespace, localName);
  if (!prefix.empty()) {
    element.qualifiedName.clear();
    element.qualifiedName.append(prefix).append(1, ':').append(localName);
  } else if (element.qualifiedName != localName) {
    element.qualifiedName = localName;
  }
  if (declare) element.namespaces.emplace(xmlNamespace, newPrefix);

  put("<");
  put(element.qualifiedName);
  if (declare) {
    put(prefix.empty() ? " xmlns=\"" : " xmlns:");
    if (!prefix.empty()) {
      put(prefix);
      put("=\"");
    }
    put(xmlNamespace);
    put("\"");
  }

  startContent();
}

void ZrXmlWriter::setAttributeName(const ZrToken& token) {
  const std::string* prefix = nullptr;
  if (!token.namespaceText().empty()) {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrXmlWriter Error: no namespace on attributes preferred: %s\n\tFile: %s\n",
                                token.tokenText().c_str(), m_theFilename.c_str());
    prefix = declaredPrefix(token.namespaceText());
    if (!prefix)
      Zr::Print::instance().write(Zr::PrintError,
                                  "ZrXmlWriter Error: attribute namespace doesn't exist: %s\n\tFile: %s\n",
                                  token.tokenText().c_str(), m_theFilename.c_str());
  }
  put(" ");
  if (prefix && !prefix->empty()) {
    put(*prefix);
    put(":");
  }
  put(token.tokenText());
  put("=");
  m_theMode = 2;
  if (m_theOptions.schemaWriter()) m_theSchema.setAttributeName(token);
  flushOutput();
}

void ZrXmlWriter::attributeValue(const std::string& text) {
  putAttributeValue(text.data(), text.size());
  flushOutput();
}

void ZrXmlWriter::putAttributeValue(const char* text, std::size_t size) {
  put("\"");
  if (m_theOptions.escapeMarkup()) putEscaped(text, size);
  else put(text, size);
  put("\"");
  m_theMode = 3;
}

void ZrXmlWriter::putEscaped(const char* text, std::size_t size) {
  forEachEscapedPiece(text, size, [this](const char* piece, std::size_t length) { put(piece, length); });
}

void ZrXmlWriter::content(const std::string& text) { appendContent(text.data(), text.size()); }

// Items are separated by one blank; every numOfContentColumns items a new row begins, indented by
// two blanks per open element.
void ZrXmlWriter::appendContent(const char* text, std::size_t size) {
  if (m_theContentCount != 0) {
    if (m_theNumOfContentColumns != 0 && m_theContentCount % m_theNumOfContentColumns == 0) {
      m_theContentBuffer.push_back('\n');
      for (size_t level = 0; level < m_theDepth; ++level) m_theContentBuffer.append("  ");
    } else {
      m_theContentBuffer.push_back(' ');
    }
  }
  std::string& buffer = m_theContentBuffer;
  if (m_theOptions.escapeMarkup())
    forEachEscapedPiece(text, size, [&buffer](const char* piece, std::size_t length) { buffer.append(piece, length); });
  else
    buffer.append(text, size);
  ++m_theContentCount;
  m_theMode = 4;
}

void ZrXmlWriter::data(const std::string& text) {
  switch (m_theMode) {
    case 2:
      attributeValue(text);
      return;
    case 1:
    case 3:
    case 4:
      content(text);
      return;
    default:
      reportMisplacedData();
  }
}

void ZrXmlWriter::data(const char* text, std::size_t size) {
  switch (m_theMode) {
    case 2:
      putAttributeValue(text, size);
      flushOutput();
      return;
    case 1:
    case 3:
    case 4:
      appendContent(text, size);
      return;
    default:
      reportMisplacedData();
  }
}

void ZrXmlWriter::reportMisplacedData() const {
  const char* element = m_theDepth ? m_theElementStack[m_theDepth - 1].element.tokenText().c_str() : "";
  Zr::Print::instance().write(Zr::PrintError,
                              "ZrXmlWriter Error: element %s is placing content at incorrect location.\n\tFile: %s\n",
                              element, m_theFilename.c_str());
}

void ZrXmlWriter::writeNilEnding() {
  const std::string* prefix = m_theOptions.namespaceComplete() ? prefixInForce(theSchemaInstanceUri) : nullptr;
  if (m_theOptions.namespaceComplete() && (!prefix || *prefix != theSchemaInstancePrefix)) {
    put(" xmlns:xsi=\"");
    put(theSchemaInstanceUri);
    put("\"");
  }
  put(" xsi:nil=\"true\"/>\n");
}

void ZrXmlWriter::writeContentAndEndTag() {
  put(">");
  if (m_theContentBuffer.size() <= theLongestInlineContent) {
    put(m_theContentBuffer);
  } else {
    put("\n");
    tab(static_cast<unsigned>(m_theDepth));
    put(m_theContentBuffer);
    put("\n");
    tab(static_cast<unsigned>(m_theDepth - 1));
  }
  m_theContentBuffer.clear();
  put("</");
  put(innermost().qualifiedName);
  put(">\n");
}

void ZrXmlWriter::writeEndTag() {
  bool closable = m_theDepth != 0 && (m_theMode == 1 || m_theMode == 3 || m_theMode == 4 || m_theMode == 5);
  if (!closable) {
    Zr::Print::instance().write(Zr::PrintError, "ZrXmlWriter Error: end tag following incorrect mode %d.  File %s\n",
                                m_theMode, m_theFilename.c_str());
  } else if (m_theMode == 1) {
    writeNilEnding();
  } else if (m_theMode == 3) {
    put("/>\n");
  } else if (m_theMode == 4) {
    writeContentAndEndTag();
  } else {
    tab(static_cast<unsigned>(m_theDepth - 1));
    put("</");
    put(innermost().qualifiedName);
    put(">\n");
  }
  // An element is popped even after a fault, and the generator follows the element stack.
  if (m_theDepth != 0) {
    --m_theDepth;
    if (m_theOptions.schemaWriter()) m_theSchema.writeEndTag();
  }
  m_theMode = 5;
  flushOutput();
}

void ZrXmlWriter::setNumOfContentColumns(unsigned columns) { m_theNumOfContentColumns = columns; }

// ---- document header ----

std::string ZrXmlWriter::schemaFileName(const std::string& filename, const std::string& schemaNamespace) {
  return schemaFileName(filename, schemaNamespace, classDefaults().portableSchemaFileNames());
}

std::string ZrXmlWriter::schemaFileName(const std::string& filename, const std::string& schemaNamespace,
                                        bool portable) {
  std::string base = filename.substr(0, filename.rfind('.'));
  size_t separator = base.find_last_of("\\/");
  if (separator != std::string::npos) base.erase(0, separator + 1);
  base = afterLastSlash(base);
  return base + "." + (portable ? portableNamespacePart(schemaNamespace) : afterLastSlash(schemaNamespace)) + ".xsd";
}


const char* ZrXmlWriter::schemaInstanceUri() { return theSchemaInstanceUri; }

void ZrXmlWriter::header(const ZrToken& root, const std::string& schemaNamespace) {
  if (!m_theOptions.header().empty()) {
    put(m_theOptions.header());
    put("\n");
  }
  if (!m_theOptions.styleSheet().empty()) {
    put(m_theOptions.styleSheet());
    put("\n");
  }

  // The xsi declaration is written whatever the schema instance text holds: nil elements need it. The
  // root's namespace is the current namespace; only a namespace-complete document declares it.
  const std::string& xmlNamespace = root.namespaceText();
  m_theCurrentNamespace = xmlNamespace;
  closeOpenStartTag();
  ElementStruct& element = pushElement(root.namespaceText(), root.tokenText());
  element.qualifiedName = root.tokenText();
  element.namespaces.emplace(theSchemaInstanceUri, theSchemaInstancePrefix);
  if (m_theOptions.namespaceComplete() && !xmlNamespace.empty()) element.namespaces.emplace(xmlNamespace, "");

  put("<");
  put(root.tokenText());
  if (m_theOptions.namespaceComplete() && !xmlNamespace.empty()) {
    put(" xmlns=\"");
    put(xmlNamespace);
    put("\"");
  }
  put(" xmlns:xsi=\"");
  put(theSchemaInstanceUri);
  put("\"\n  xsi:schemaLocation=\"");
  put(schemaNamespace);
  put("\n  ");
  put(schemaFileName(m_theFilename, schemaNamespace, portableSchemaFileNames()));
  put("\"");

  // The root's start tag stays open: its attributes and children follow, one writeEndTag closes it.
  startContent();
  if (m_theOptions.schemaWriter()) m_theSchema.writeStartTag(root, ZrXmlSchemaElementType::XML_STARTTAG_OPTION);
  flushOutput();
}

// ---- values ----

// Values of different types alternate in most documents, so the schema name of the type is looked up
// only when someone asks for it.
void ZrXmlWriter::type(const std::type_info& info) {
  m_theLastTypeInfo = &info;
  if (m_theOptions.schemaWriter()) m_theSchema.setType(info);
}

const std::string& ZrXmlWriter::typeName() const {
  if (m_theLastTypeInfo != m_theNamedTypeInfo) {
    m_theTypeName = schemaTypeName(*m_theLastTypeInfo);
    m_theNamedTypeInfo = m_theLastTypeInfo;
  }
  return m_theTypeName;
}

namespace {

template <class T>
void writeValue(ZrXmlWriter& writer, const T& value) {
  std::ostringstream& stream = writer.valueStream();
  stream << value;
  writer.data(stream.str());
  stream.str(std::string());
  stream.clear();
}

void writeValue(ZrXmlWriter& writer, const double& value) { writer.realData(value); }

void writeValue(ZrXmlWriter& writer, const ZrAngle& angle) { writer.realData(angle.value()); }

void writeValue(ZrXmlWriter& writer, const ZrNonNegReal& real) { writer.realData(real.value()); }

// A string is its own text: the formatting stream would only copy it twice.
void writeValue(ZrXmlWriter& writer, const std::string& text) { writer.data(text); }

}  // namespace

bool ZrXmlWriter::plainValueStream() const {
  return m_theValueStream.flags() == (std::ios_base::dec | std::ios_base::skipws) && m_theValueStream.width() == 0 &&
         m_theValueStream.getloc() == std::locale::classic();
}

// Six significant digits (the stream's precision) as the stream writes them: the shortest of fixed and
// exponent form, trailing zeros dropped, as printf's %g does.
void ZrXmlWriter::realData(double value) {
  if (m_theOptions.losslessReals()) {
    char text[ZrDOUBLE_CHARS_SIZE];
    data(text, ZrDOUBLE2CHARS(value, text));
    return;
  }
  if (plainValueStream()) {
    char digits[ZrDOUBLE_G_CHARS_SIZE];
    data(digits, ZrDOUBLE2CHARS_G(value, static_cast<int>(m_theValueStream.precision()), digits));
    return;
  }
  m_theValueStream << value;
  data(m_theValueStream.str());
  m_theValueStream.str(std::string());
  m_theValueStream.clear();
}

void ZrXmlWriter::realData(float value) {
  if (m_theOptions.losslessReals()) {
    char text[ZrDOUBLE_CHARS_SIZE];
    data(text, ZrFLOAT2CHARS(value, text));
    return;
  }
  m_theValueStream << value;
  data(m_theValueStream.str());
  m_theValueStream.str(std::string());
  m_theValueStream.clear();
}

namespace {

// An integer as the value stream writes it: formatted into a buffer while the stream is as a fresh one.
template <class Integer>
void writeInteger(ZrXmlWriter& writer, Integer value) {
  if (!writer.plainValueStream()) {
    writeValue(writer, value);
    return;
  }
  char digits[24];
  const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, value);
  writer.data(digits, static_cast<std::size_t>(end.ptr - digits));
}

}  // namespace

void ZrXmlWriter::integerData(long long value) { writeInteger(*this, value); }

void ZrXmlWriter::unsignedData(unsigned long long value) { writeInteger(*this, value); }

template <class T>
ZrXmlWriter& operator<<(ZrXmlWriter& writer, const T& value) {
  writer.type(typeid(T));
  writeValue(writer, value);
  return writer;
}

template ZrXmlWriter& operator<<(ZrXmlWriter&, const bool&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const char&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const double&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const int&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const short&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const unsigned int&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const unsigned short&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const std::string&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const ZrAngle&);
template ZrXmlWriter& operator<<(ZrXmlWriter&, const ZrNonNegReal&);

// ---- settings ----

// Each setting lives in the options value; the accessors below forward to it.
void ZrXmlWriter::setOptions(const ZrXmlWriteOptions& options) {
  m_theOptions = options;
  m_theSchema.setPortableSchemaFileNames(options.portableSchemaFileNames());
}

const std::string& ZrXmlWriter::indent() const { return m_theOptions.indent(); }
void ZrXmlWriter::setIndent(const std::string& indent) { m_theOptions.setIndent(indent); }
const std::string& ZrXmlWriter::header() const { return m_theOptions.header(); }
void ZrXmlWriter::setHeader(const std::string& header) { m_theOptions.setHeader(header); }
const std::string& ZrXmlWriter::styleSheet() const { return m_theOptions.styleSheet(); }
void ZrXmlWriter::setStyleSheet(const std::string& styleSheet) { m_theOptions.setStyleSheet(styleSheet); }
const std::string& ZrXmlWriter::schemaInstance() const { return m_theOptions.schemaInstance(); }
void ZrXmlWriter::setSchemaInstance(const std::string& schemaInstance) { m_theOptions.setSchemaInstance(schemaInstance); }
const std::string& ZrXmlWriter::schemaLocation() const { return m_theOptions.schemaLocation(); }
void ZrXmlWriter::setSchemaLocation(const std::string& schemaLocation) { m_theOptions.setSchemaLocation(schemaLocation); }
ZrBoolean ZrXmlWriter::writeDefaultDataFlag() const { return m_theOptions.writeDefaultData(); }
void ZrXmlWriter::setWriteDefaultDataFlag(ZrBoolean flag) { m_theOptions.setWriteDefaultData(flag); }
void ZrXmlWriter::setSchemaWriter(bool flag) { m_theOptions.setSchemaWriter(flag); }
void ZrXmlWriter::setLanguageSelection(LANGUAGE language) { m_theOptions.setLanguageSelection(language); }
void ZrXmlWriter::setPortableSchemaFileNames(bool portable) {
  m_theOptions.setPortableSchemaFileNames(portable);
  m_theSchema.setPortableSchemaFileNames(portable);
}

// Built on first use, so that writers constructed during static initialisation elsewhere see it. Set it
// before writers are made on other threads: it is read, unguarded, by every new writer.
ZrXmlWriteOptions& ZrXmlWriter::classDefaults() {
  static ZrXmlWriteOptions theDefaults;
  return theDefaults;
}

const ZrXmlWriteOptions& ZrXmlWriter::defaultOptions() { return classDefaults(); }
void ZrXmlWriter::setDefaultOptions(const ZrXmlWriteOptions& options) { classDefaults() = options; }

const std::string& ZrXmlWriter::defaultIndent() { return classDefaults().indent(); }
void ZrXmlWriter::setDefaultIndent(const std::string& indent) { classDefaults().setIndent(indent); }
const std::string& ZrXmlWriter::defaultHeader() { return classDefaults().header(); }
void ZrXmlWriter::setDefaultHeader(const std::string& header) { classDefaults().setHeader(header); }
const std::string& ZrXmlWriter::defaultStyleSheet() { return classDefaults().styleSheet(); }
void ZrXmlWriter::setDefaultStyleSheet(const std::string& styleSheet) { classDefaults().setStyleSheet(styleSheet); }
const std::string& ZrXmlWriter::defaultSchemaInstance() { return classDefaults().schemaInstance(); }
void ZrXmlWriter::setDefaultSchemaInstance(const std::string& text) { classDefaults().setSchemaInstance(text); }
const std::string& ZrXmlWriter::defaultSchemaLocation() { return classDefaults().schemaLocation(); }
void ZrXmlWriter::setDefaultSchemaLocation(const std::string& text) { classDefaults().setSchemaLocation(text); }
bool ZrXmlWriter::defaultSchemaWriter() { return classDefaults().schemaWriter(); }
void ZrXmlWriter::setDefaultSchemaWriter(bool flag) { classDefaults().setSchemaWriter(flag); }
bool ZrXmlWriter::defaultForWriteDefaultDataFlag() { return classDefaults().writeDefaultData(); }
void ZrXmlWriter::setDefaultForWriteDefaultDataFlag(bool flag) { classDefaults().setWriteDefaultData(flag); }
void ZrXmlWriter::setDefaultLanguageSelection(LANGUAGE language) { classDefaults().setLanguageSelection(language); }
bool ZrXmlWriter::defaultNamespaceComplete() { return classDefaults().namespaceComplete(); }
void ZrXmlWriter::setDefaultNamespaceComplete(bool flag) { classDefaults().setNamespaceComplete(flag); }
bool ZrXmlWriter::defaultLosslessReals() { return classDefaults().losslessReals(); }
void ZrXmlWriter::setDefaultLosslessReals(bool flag) { classDefaults().setLosslessReals(flag); }
bool ZrXmlWriter::defaultEscapeMarkup() { return classDefaults().escapeMarkup(); }
void ZrXmlWriter::setDefaultEscapeMarkup(bool flag) { classDefaults().setEscapeMarkup(flag); }
bool ZrXmlWriter::defaultPortableSchemaFileNames() { return classDefaults().portableSchemaFileNames(); }
void ZrXmlWriter::setDefaultPortableSchemaFileNames(bool portable) { classDefaults().setPortableSchemaFileNames(portable); }
