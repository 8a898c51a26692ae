#ifndef ZR_CELL_NAMESPACE_H
#define ZR_CELL_NAMESPACE_H

#include <ZrToken.h>

// The robot cell's own namespace. Every element of a cell document lives in it; attributes carry no
// namespace.
namespace ZrCell {
inline const char* uri() { return "http://www.zrtoolkit.org/namespace/cell"; }

// An element name in the cell namespace.
inline ZrToken element(const char* localName) { return ZrToken(uri(), localName); }

// An attribute name (no namespace).
inline ZrToken attribute(const char* name) { return ZrToken(std::string(), name); }
}  // namespace ZrCell

#endif
