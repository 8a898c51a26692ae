#include "ZrXmlBaseVariableCompoundType.h"

#include "ZrDllLoader.h"
#include "ZrPrint.h"
#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"
#include "ZrXmlSchema.h"
#include "ZrXmlWriter.h"

#include <memory>
#include <typeinfo>

const char* const ZrXmlBaseVariableCompoundType::m_thePluginExtension = ".zrp";
const char* const ZrXmlBaseVariableCompoundType::m_theClassTokenFunctionName = "getClassToken";
const char* const ZrXmlBaseVariableCompoundType::m_theCreatorFunctionName = "getCreator";

namespace {
const int startTagMode = 1;
const int emptyElementMode = 3;

bool isElementStart(int mode) { return mode == startTagMode || mode == emptyElementMode; }

// The start-tag option that leaves the element's type to the registration check.
const int plainStartTagOption = 0;

// A symbol's address as the function it is; dlsym hands out functions as data pointers.
template <class Function>
Function asFunction(void* symbol) {
  return reinterpret_cast<Function>(symbol);
}
}  // namespace

bool ZrXmlBaseVariableCompoundType::m_theDefaultSkipNullCreators = false;

bool ZrXmlBaseVariableCompoundType::defaultSkipNullCreators() { return m_theDefaultSkipNullCreators; }

void ZrXmlBaseVariableCompoundType::setDefaultSkipNullCreators(bool flag) { m_theDefaultSkipNullCreators = flag; }

ZrXmlBaseVariableCompoundType::ZrXmlBaseVariableCompoundType() : m_theSkipNullCreators(m_theDefaultSkipNullCreators) {}

ZrXmlBaseVariableCompoundType::ZrXmlBaseVariableCompoundType(const ZrXmlBaseVariableCompoundType& other)
    : ZrXmlObject(other), m_theAddLibraries(other.m_theAddLibraries), m_theSkipNullCreators(other.m_theSkipNullCreators) {}

ZrXmlBaseVariableCompoundType& ZrXmlBaseVariableCompoundType::operator=(const ZrXmlBaseVariableCompoundType& other) {
  if (this != &other) {
    ZrXmlObject::operator=(other);
    m_theAddLibraries = other.m_theAddLibraries;
    m_theSkipNullCreators = other.m_theSkipNullCreators;
  }
  return *this;
}

ZrXmlBaseVariableCompoundType::~ZrXmlBaseVariableCompoundType() = default;

void ZrXmlBaseVariableCompoundType::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

ZrBoolean ZrXmlBaseVariableCompoundType::xmlInit() {
  if (ZrXmlObject::xmlInit()) registerComponentCreators();
  return true;
}

ZrBoolean ZrXmlBaseVariableCompoundType::read(ZrXmlReader& reader) {
  const ZrBoolean result = ZrXmlObject::read(reader);
  if (!result || reader.mode() == emptyElementMode) return result;
  if (!reader.enterObject()) return result;
  int mode = reader.readXml();
  while (isElementStart(mode)) {
    const ZrToken child = reader.element();
    if (!readVariableComponent(child, reader)) {
      Zr::Print::instance().write(Zr::PrintError, "Bad token: %s on line %d\n", child.namespaceAndToken().c_str(),
                                  reader.lineCountOfFile());
      skipElement(reader);
    }
    mode = reader.readXml();
  }
  reader.leaveObject();
  return result;
}

ZrBoolean ZrXmlBaseVariableCompoundType::write(ZrXmlWriter& writer) const {
  const ZrBoolean result = ZrXmlObject::write(writer);
  if (m_theAddLibraries.size() != 0) {
    writer.writeStartTagUsingParentNamespace(ZrXml::ZrAddLibrariesToken);
    m_theAddLibraries.write(writer);
    writer.writeEndTag();
  }
  return result;
}

// The children form one group of alternatives: the library list, then one element per creator. A
// creator's object is made only to describe its type, and only when the schema does not hold the
// element's type already.
ZrBoolean ZrXmlBaseVariableCompoundType::writeSchema(ZrXmlSchema& schema) const {
  const ZrBoolean result = ZrXmlObject::writeSchema(schema);
  const CreatorMap& creators = m_theFactory.creatorMap();
  if (creators.empty()) return result;
  schema.openGroup();
  schema.writeStartTagUsingParentNamespace(ZrXml::ZrAddLibrariesToken, plainStartTagOption);
  LibraryList().writeSchema(schema);
  schema.writeEndTag();
  for (const auto& entry : creators) {
    std::unique_ptr<ZrXmlObject> sample(entry.second ? entry.second() : nullptr);
    if (!sample) continue;
    schema.writeStartTag(entry.first, plainStartTagOption);
    const ZrXmlObject& object = *sample;  // named first: clang warns about typeid over a call
    const char* typeName = typeid(object).name();
    if (*typeName == '*') ++typeName;
    if (!schema.isRegistered(entry.first, typeName)) {
      sample->writeSchema(schema);
      schema.writeEndTag();
    }
  }
  schema.closeGroup();
  return result;
}

void ZrXmlBaseVariableCompoundType::registerComponentCreator(const ZrToken& token, Creator creator) {
  m_theFactory.registerComponentCreator(token, creator);
}

ZrXmlObject* ZrXmlBaseVariableCompoundType::newObjectFromToken(const ZrToken& token) const {
  ensureXmlInit();
  return m_theFactory.newObjectFromToken(token);
}

const ZrXmlBaseVariableCompoundType::LibraryList& ZrXmlBaseVariableCompoundType::addLibraries() const {
  return m_theAddLibraries;
}

void ZrXmlBaseVariableCompoundType::setAddLibraries(const LibraryList& libraries) { m_theAddLibraries = libraries; }

const ZrXmlBaseVariableCompoundType::CreatorMap& ZrXmlBaseVariableCompoundType::creatorMap() const {
  return m_theFactory.creatorMap();
}

void ZrXmlBaseVariableCompoundType::dropAttributes(ZrXmlReader& reader) {
  // Bounded by the count at the start, whatever the reader does with each request.
  for (ZrU32 left = reader.remainingNumOfAttributes(); left != 0 && reader.remainingNumOfAttributes() != 0; --left)
    reader.attributeValue(reader.attributeName());
}

void ZrXmlBaseVariableCompoundType::skipElement(ZrXmlReader& reader) {
  dropAttributes(reader);
  reader.nextMatchingEndTag();
}

ZrBoolean ZrXmlBaseVariableCompoundType::readLibraryList(const ZrToken& token, ZrXmlReader& reader) {
  if (token.tokenText() != ZrXml::ZrAddLibrariesToken.tokenText()) return false;
  m_theAddLibraries.read(reader);
  processLibraries();
  return true;
}

// Only the first library that loads is processed; the names after it are not even tried. The
// library stays loaded after the loader is gone (ZrDllLoader never unloads), so the creators it
// registered stay callable.
void ZrXmlBaseVariableCompoundType::processLibraries() {
  ZrDllLoader loader;
  bool loaded = false;
  for (const ZrXmlBasicType<std::string>& name : m_theAddLibraries.vectorContainer()) {
    if (loader.loadDll(name.value(), m_thePluginExtension)) {
      loaded = true;
      break;
    }
  }
  if (!loaded) return;

  // A missing entry point ends the processing of the library: a function that is not there is
  // never called. The message names the library, on a detail line of its own.
  const char* const path = loader.loadedPath().c_str();
  ClassTokenFunction classToken = asFunction<ClassTokenFunction>(loader.getFunction(m_theClassTokenFunctionName));
  if (!classToken)
    Zr::Print::instance().write(Zr::PrintPluginError,
                                "ZrBaseExpressionTreeContainer Error -- getClassToken not found in DLL\n\tLibrary: %s\n",
                                path);
  CreatorFunction creatorOf = asFunction<CreatorFunction>(loader.getFunction(m_theCreatorFunctionName));
  if (!creatorOf)
    Zr::Print::instance().write(Zr::PrintPluginError,
                                "ZrBaseExpressionTreeContainer Error -- getCreator not found in DLL\n\tLibrary: %s\n", path);
  if (!classToken || !creatorOf) return;

  const ZrToken endOfList;
  for (ZrU32 index = 0;; ++index) {
    if (index == m_theMaxPluginClasses) {
      Zr::Print::instance().write(Zr::PrintPluginError,
                                  "ZrBaseExpressionTreeContainer Error -- more than %u classes in DLL; the rest "
                                  "are ignored.\n\tLibrary: %s\n",
                                  m_theMaxPluginClasses, loader.loadedPath().c_str());
      return;
    }
    const ZrToken& token = classToken(index);
    if (token == endOfList) return;
    Creator creator = creatorOf(index);
    if (!creator) {
      Zr::Print::instance().write(Zr::PrintPluginError,
                                  "ZrBaseExpressionTreeContainer Error -- getCreator gave no creator for %s.\n\tLibrary: "
                                  "%s\n\tIndex: %u\n",
                                  token.tokenText().c_str(), path, index);
      if (!m_theSkipNullCreators) return;  // the class list ends at a null creator
      continue;
    }
    registerComponentCreator(token, creator);
  }
}
