#include "ZrXmlValueListVisitor.h"

#include "ZrPrint.h"
#include "ZrXmlBasicType.h"
#include "ZrXmlCompoundType.h"
#include "ZrXmlEnumType.h"

ZrXmlValueListVisitor::ZrXmlValueListVisitor(std::ostream& out, const std::string& rootName)
    : m_theOut(out), m_thePath(rootName), m_theDepth(0) {}

void ZrXmlValueListVisitor::list(const ZrXmlObject& root) { root.accept(this); }

void ZrXmlValueListVisitor::visit(const ZrXmlObject* object) {
  if (object) line("[" + object->token().tokenText() + "]");
}

void ZrXmlValueListVisitor::visit(const ZrXmlCompoundType* compound) {
  if (!compound) return;
  if (m_theDepth >= m_theMaxDepth) {
    Zr::Print::instance().write(Zr::PrintError,
                                "ZrXmlValueListVisitor Error: nesting deeper than %u levels is not listed.\n\tPath: %s\n",
                                static_cast<unsigned>(m_theMaxDepth), m_thePath.c_str());
    return;
  }
  ++m_theDepth;
  compound->forEachComponent([this](const ZrToken& token, const ZrXmlObject* component,
                                    ZrXmlCompoundType::ComponentKind kind, bool readOnly) {
    if (!component || readOnly) return;
    const std::string::size_type parentLength = m_thePath.size();
    m_thePath += kind == ZrXmlCompoundType::ATTRIBUTE_COMPONENT ? "/@" : "/";
    m_thePath += token.tokenText();
    component->accept(this);
    m_thePath.resize(parentLength);
  });
  --m_theDepth;
}

void ZrXmlValueListVisitor::line(const std::string& text) { m_theOut << m_thePath << " = " << text << '\n'; }

#define ZR_LIST_BASIC(T) \
  void ZrXmlValueListVisitor::visit(const ZrXmlBasicType<T>* value) { line(value->text()); }
#define ZR_LIST_ENUM(T) \
  void ZrXmlValueListVisitor::visit(const ZrXmlEnumType<T>* value) { line(value->enumString()); }

ZR_LIST_BASIC(bool)
ZR_LIST_BASIC(char)
ZR_LIST_BASIC(short)
ZR_LIST_BASIC(unsigned short)
ZR_LIST_BASIC(int)
ZR_LIST_BASIC(unsigned int)
ZR_LIST_BASIC(unsigned char)
ZR_LIST_BASIC(double)
ZR_LIST_BASIC(std::string)
ZR_LIST_BASIC(ZrAngle)
ZR_LIST_BASIC(ZrNonNegReal)
ZR_LIST_ENUM(bool)
ZR_LIST_ENUM(short)
ZR_LIST_ENUM(unsigned short)
ZR_LIST_ENUM(int)
ZR_LIST_ENUM(unsigned int)
ZR_LIST_ENUM(unsigned char)
ZR_LIST_ENUM(ZrNonNegReal)

#undef ZR_LIST_BASIC
#undef ZR_LIST_ENUM
