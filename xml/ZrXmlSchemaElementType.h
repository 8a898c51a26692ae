#ifndef ZR_XML_SCHEMA_ELEMENT_TYPE_H
#define ZR_XML_SCHEMA_ELEMENT_TYPE_H

// Options of ZrXmlSchema::writeStartTag: how the element takes part in its parent's content model.
class ZrXmlSchemaElementType {
 public:
  enum {
    XML_CHOICE_OPTION = 0,   // one of the alternatives of a choice (children created by a factory)
    XML_STARTTAG_OPTION = 1  // an element of a sequence
  };
};

#endif
