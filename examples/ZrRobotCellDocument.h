#ifndef ZR_ROBOT_CELL_DOCUMENT_H
#define ZR_ROBOT_CELL_DOCUMENT_H

#include "ZrRobotCell.h"

#include <istream>
#include <ostream>
#include <string>

// Whole cell documents for the zrxml tool, its tests and the fuzz targets: ZrXml::load and ZrXml::save
// under the names the formula document has too, the value list, and the demo command.
class ZrRobotCellDocument {
 public:
  // Reads a cell document from a stream into cell. The file name is used in messages only.
  // False when the document holds no "robotCell" root; faults inside it are reported and skipped, and
  // their number is stored in *faultCount when it is given.
  static ZrBoolean read(std::istream& in, const std::string& filename, ZrRobotCell& cell, ZrU32* faultCount = nullptr);
  static ZrBoolean readFile(const std::string& filename, ZrRobotCell& cell, ZrU32* faultCount = nullptr);

  // Writes cell as a whole document. The file name names the schema file paired with the namespace.
  static ZrBoolean write(const ZrRobotCell& cell, std::ostream& out, const std::string& filename);

  // Lists the cell's values as "path = value" lines.
  static void listValues(const ZrRobotCell& cell, std::ostream& out);

  // The sample document shipped with the example.
  static std::string samplePath();

  // Reads a cell document (the sample when filename is empty) and writes it back to out, or lists its
  // values when listValues is set. Returns a process exit status: 0 on success, 1 also when reading
  // reported a fault.
  static int demo(const std::string& filename, std::ostream& out, bool listValues = false);
};

#endif
