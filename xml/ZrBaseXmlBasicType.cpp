#include "ZrBaseXmlBasicType.h"

#include "ZrXmlObjectVisitor.h"
#include "ZrXmlReader.h"

namespace {
// The reader's modes that matter when a value fetches its text.
const int startTagMode = 1;
const int endTagMode = 2;
const int emptyElementMode = 3;
const int contentMode = 4;
}  // namespace

void ZrBaseXmlBasicType::accept(ZrXmlObjectVisitor* visitor) const {
  if (visitor) visitor->visit(this);
}

bool ZrBaseXmlBasicType::elementText(ZrXmlReader& reader, std::string& text) {
  text.clear();
  switch (reader.mode()) {
    case emptyElementMode:
      return true;
    case contentMode:
      text = reader.content();
      return true;
    case startTagMode:
      break;
    default:
      return false;
  }
  // After a start tag the next step holds the content with the end tag, or the bare end tag.
  switch (reader.readXml()) {
    case contentMode:
      text = reader.content();
      return true;
    case endTagMode:
      return true;
    default:
      return false;
  }
}

