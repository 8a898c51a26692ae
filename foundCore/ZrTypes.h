#ifndef ZR_TYPES_H
#define ZR_TYPES_H

#include <cstdint>

// The toolkit's scalar names, shared by every library built on the foundation.
typedef bool ZrBoolean;       // success or failure of read, write and registration operations
typedef std::uint32_t ZrU32;  // sizes and indices

#endif
