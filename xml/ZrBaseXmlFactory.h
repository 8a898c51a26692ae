#ifndef ZR_BASE_XML_FACTORY_H
#define ZR_BASE_XML_FACTORY_H

#include <ZrToken.h>
#include <ZrTypes.h>

class ZrXmlObject;

// The root of factories: something that makes a new object from an element's token. Readers hold one,
// so that objects whose class is chosen by element name can be created while reading.
class ZrBaseXmlFactory {
 public:
  // A function without arguments that returns a new object; the caller owns it.
  typedef ZrXmlObject* (*Creator)();

  virtual ~ZrBaseXmlFactory();

  virtual void registerComponentCreator(const ZrToken& token, Creator creator) = 0;
  // A new object for the token (owned by the caller), or null when the factory does not know it.
  virtual ZrXmlObject* newObjectFromToken(const ZrToken& token) const = 0;

  // Factories without state of their own are all alike.
  bool operator==(const ZrBaseXmlFactory&) const { return true; }
};

#endif
