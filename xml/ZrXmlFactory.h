#ifndef ZR_XML_FACTORY_H
#define ZR_XML_FACTORY_H

#include <ZrBaseXmlFactory.h>

#include <map>

// A factory that maps element tokens to creator functions. The map is ordered by ZrToken's ordering,
// so it is keyed by the token text alone: registering a name again (in any namespace) replaces the
// creator registered before.
class ZrXmlFactory : public ZrBaseXmlFactory {
 public:
  typedef std::map<ZrToken, Creator> CreatorMap;

  ZrXmlFactory() = default;
  ~ZrXmlFactory() override;

  void registerComponentCreator(const ZrToken& token, Creator creator) override;
  // Silent for an unknown token: callers decide whether that is an error.
  ZrXmlObject* newObjectFromToken(const ZrToken& token) const override;
  virtual const CreatorMap& creatorMap() const;

  // Equal when both map the same tokens, in token order, to the same functions.
  bool operator==(const ZrXmlFactory& other) const;
  bool operator!=(const ZrXmlFactory& other) const { return !(*this == other); }

 private:
  CreatorMap m_theCreatorMap;
};

#endif
