#include "ZrXmlReadOptions.h"

bool ZrXmlReadOptions::operator==(const ZrXmlReadOptions& other) const {
  return m_theStrict == other.m_theStrict && m_theExpandReferences == other.m_theExpandReferences &&
         m_theCheckValues == other.m_theCheckValues && m_theHttpIncludesAllowed == other.m_theHttpIncludesAllowed &&
         m_thePortableIncludeReferences == other.m_thePortableIncludeReferences &&
         m_theMaxElementDepth == other.m_theMaxElementDepth && m_theMaxTokenSize == other.m_theMaxTokenSize &&
         m_theMaxEntityExpansion == other.m_theMaxEntityExpansion &&
         m_theMaxObjectDepth == other.m_theMaxObjectDepth && m_theMaxIncludeDepth == other.m_theMaxIncludeDepth &&
         m_theMaxIncludedDocuments == other.m_theMaxIncludedDocuments &&
         m_theMaxIncludedBytes == other.m_theMaxIncludedBytes && m_theMaxPrintedFaults == other.m_theMaxPrintedFaults &&
         m_theMaxReadMemory == other.m_theMaxReadMemory && m_theMaxReadMilliseconds == other.m_theMaxReadMilliseconds &&
         m_theMaxHttpReadMilliseconds == other.m_theMaxHttpReadMilliseconds &&
         m_theHttpLimits == other.m_theHttpLimits;
}
