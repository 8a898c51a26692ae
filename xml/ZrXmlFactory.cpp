#include "ZrXmlFactory.h"

#include <algorithm>

ZrXmlFactory::~ZrXmlFactory() = default;

void ZrXmlFactory::registerComponentCreator(const ZrToken& token, Creator creator) {
  m_theCreatorMap[token] = creator;
}

ZrXmlObject* ZrXmlFactory::newObjectFromToken(const ZrToken& token) const {
  CreatorMap::const_iterator found = m_theCreatorMap.find(token);
  if (found == m_theCreatorMap.end() || !found->second) return nullptr;
  return found->second();
}

const ZrXmlFactory::CreatorMap& ZrXmlFactory::creatorMap() const { return m_theCreatorMap; }

bool ZrXmlFactory::operator==(const ZrXmlFactory& other) const {
  // Token equality here is the full one (namespace and name), though the map is keyed by name.
  return m_theCreatorMap.size() == other.m_theCreatorMap.size() &&
         std::equal(m_theCreatorMap.begin(), m_theCreatorMap.end(), other.m_theCreatorMap.begin(),
                    [](const CreatorMap::value_type& a, const CreatorMap::value_type& b) {
                      return a.first == b.first && a.second == b.second;
                    });
}
