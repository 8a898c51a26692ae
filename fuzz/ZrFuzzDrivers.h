#ifndef ZR_FUZZ_DRIVERS_H
#define ZR_FUZZ_DRIVERS_H

// The bodies of the fuzz targets, shared with the test that replays the kept crash inputs, so that a
// kept input is replayed exactly the way it was found.
#include <ZrDllLoader.h>
#include <ZrFormulaDocument.h>
#include <ZrPrint.h>
#include <ZrRobotCellDocument.h>
#include <ZrXmlFileReader.h>
#include <ZrXmlReader.h>

#include <sys/stat.h>

#include <cstddef>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace ZrFuzz {

// No plug-in library is ever loaded (the search path is empty) and includes never reach the network;
// relative includes resolve in the working directory.
inline void confineReading() {
  ZrDllLoader::setSearchPath({});
  unsetenv(ZrDllLoader::m_thePluginPathVariable);
  ZrXmlReader::setDefaultHttpIncludesAllowed(false);
}

inline void silencePrint() { Zr::Print::instance().setSink([](int, const std::string&) {}); }

// ---- The tokenizer ----------------------------------------------------------------------------------
// Layout of an input:
//   byte 0         bits 0-4: length n of the operation script; bit 5: move the document to a block edge;
//                  bit 6: read in strict mode (well-formedness checked, references expanded)
//   bytes 1..n     the operation script, repeated while reading goes on
//   (bit 5 set)    one byte k: the document starts k + 1 bytes before the end of the first block
//   the rest       the document
// A document that starts near the block edge has its first tags cut by the block read, which short
// inputs otherwise never reach.

// The first block read holds this many bytes (the tokenizer's block size less its terminating NUL).
const std::size_t theFirstBlockBytes = 16383;

enum TokenizerOperation {
  ReadXml,
  AttributeValueFast,
  LastAttributeValueFast,
  ComplexStartTagFast,
  SimpleStartTagFast,
  ContentByWordFast,
  EndTagFast,
  ContentAsWords,
  TakeAttributes,
  SkipToEndTag,
  ChildrenAsString,
  ReadThroughCopy,
  TokenizerOperationCount
};

// Applies one operation; false when reading has come to its end. A copy takes the whole read buffer,
// so only the first few copy operations of a run are carried out, to keep runs fast.
inline bool applyOperation(ZrXmlFileReader& reader, TokenizerOperation operation, int& copiesLeft) {
  static const ZrToken theProbe("x");
  switch (operation) {
    case ReadXml: {
      const int mode = reader.readXml();
      return !(reader.atEndOfInput() && (mode == 0 || mode == 5));
    }
    case AttributeValueFast: reader.getAttributeValueFast(); break;
    case LastAttributeValueFast: reader.getLastAttributeValueFast(); break;
    case ComplexStartTagFast: reader.getComplexStartTagFast(); break;
    case SimpleStartTagFast: reader.getSimpleStartTagFast(); break;
    case ContentByWordFast: reader.getContentByWordFast(); break;
    case EndTagFast: reader.getEndTagFast(); break;
    case ContentAsWords:
      reader.setContentVectorFlag(true);
      for (ZrU32 words = reader.contentCount(); words > 0 && reader.isContentAvailable(); --words) reader.content();
      reader.contentByWord();
      break;
    case TakeAttributes:
      reader.attributeValue(reader.attributeName(theProbe));
      while (reader.remainingNumOfAttributes() > 0) reader.attributeValue();
      break;
    case SkipToEndTag: reader.nextMatchingEndTag(); break;
    case ChildrenAsString: reader.getChildrenAsString(); break;
    case ReadThroughCopy: {
      if (copiesLeft == 0) break;
      --copiesLeft;
      ZrXmlFileReader copy(reader);  // shares the stream: reading the copy moves the original's stream too
      copy.readXml();
      copy.getAttributeValueFast();
      break;
    }
    case TokenizerOperationCount: break;
  }
  return !reader.atEndOfInput();
}

// Every step is bounded and their number too, so a replay always ends.
inline void tokenize(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return;
  const std::uint8_t control = data[0];
  std::size_t scriptLength = control & 0x1f;
  if (scriptLength > size - 1) scriptLength = size - 1;
  const std::uint8_t* script = data + 1;
  std::size_t at = 1 + scriptLength;

  std::string document;
  if ((control & 0x20) && at < size) {
    document.assign(theFirstBlockBytes - 1 - data[at], ' ');
    ++at;
  }
  document.append(reinterpret_cast<const char*>(data + at), size - at);

  std::istringstream in(document);
  ZrXmlFileReader reader("fuzz.xml", in);
  reader.setStrict((control & 0x40) != 0);
  const std::size_t maxSteps = 64 + 4 * document.size();
  int copiesLeft = 4;
  for (std::size_t step = 0; step < maxSteps; ++step) {
    const TokenizerOperation operation =
        scriptLength == 0 ? ReadXml
                          : static_cast<TokenizerOperation>(script[step % scriptLength] % TokenizerOperationCount);
    if (!applyOperation(reader, operation, copiesLeft)) break;
  }
}

// ---- The models -------------------------------------------------------------------------------------
// The input read as a robot cell and as a formula; each model is written back and what was written is
// read again: neither the faulty input nor the library's rendering of what it made of it may fail hard.

const char* const theInputName = "fuzz.xml";

inline void readRobotCell(const std::string& document) {
  ZrRobotCell cell;
  std::istringstream in(document);
  if (!ZrRobotCellDocument::read(in, theInputName, cell)) return;
  std::ostringstream listing;
  ZrRobotCellDocument::listValues(cell, listing);
  std::ostringstream written;
  ZrRobotCellDocument::write(cell, written, theInputName);

  ZrRobotCell again;
  std::istringstream writtenIn(written.str());
  ZrRobotCellDocument::read(writtenIn, theInputName, again);
}

inline void readFormula(const std::string& document) {
  ZrFormula formula;
  std::istringstream in(document);
  if (!ZrFormulaDocument::read(in, theInputName, formula)) return;
  formula.text();
  formula.evaluate(ZrTerm::Bindings{{"x", 1.0}});
  std::ostringstream written;
  ZrFormulaDocument::write(formula, written, theInputName);

  ZrFormula again;
  std::istringstream writtenIn(written.str());
  ZrFormulaDocument::read(writtenIn, theInputName, again);
}

inline void readModels(const std::string& document) {
  readRobotCell(document);
  readFormula(document);
}

// ---- Documents that include each other --------------------------------------------------------------
// The input is split at each line "@@" into up to eight documents, written as d0.xml ... d7.xml into a
// directory of the working directory; d0.xml is read to its end through a reader, which follows the
// include elements among them (a generated <ZrInclude type="simple" href="d3.xml"/> names a file).
// The include budget is kept small, so that inputs that include each other many times over stay fast.

const char* const theIncludeDirectory = "zr-fuzz-include";

inline void readWithIncludes(const std::string& input) {
  ::mkdir(theIncludeDirectory, 0700);
  std::size_t start = 0;
  int documents = 0;
  for (; documents < 8 && start <= input.size(); ++documents) {
    std::size_t end = input.find("\n@@\n", start);
    if (end == std::string::npos) end = input.size();
    std::ofstream(std::string(theIncludeDirectory) + "/d" + std::to_string(documents) + ".xml", std::ios::binary)
        << input.substr(start, end - start);
    start = end + 4;
  }
  for (int missing = documents; missing < 8; ++missing)
    std::remove((std::string(theIncludeDirectory) + "/d" + std::to_string(missing) + ".xml").c_str());

  const std::string first = std::string(theIncludeDirectory) + "/d0.xml";
  std::ifstream in(first, std::ios::binary);
  ZrXmlReader reader(first, in);
  reader.setMaxIncludedDocuments(64);
  reader.setMaxIncludedBytes(std::uint64_t(4) << 20);
  for (int mode = reader.readXml(), events = 0; mode != 5 && events < 100000; mode = reader.readXml(), ++events) {
    while (reader.remainingNumOfAttributes() > 0) reader.attributeValue();
    if (mode == 0 && reader.depth() == 1 && reader.currentFileReader()->atEndOfInput()) break;
  }
}

}  // namespace ZrFuzz

#endif
