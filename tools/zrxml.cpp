// zrxml: command-line access to the library's XML tokenizer. New commands are added as a source file
// with their function and one row in the table below.
#include "ZrxmlTool.h"

#include <cstring>

namespace {

const zrxml::Command theCommands[] = {
    {"check", "FILE...",
     "read each document to its end, print every fault and one summary line per file; --strict also "
     "reports whatever is not well-formed XML 1.0 with namespaces",
     zrxml::checkCommand},
    {"events", "FILE", "print one line per event: line, mode, kind, element, attributes, content",
     zrxml::eventsCommand},
    {"demo", "[FILE]",
     "read a robot-cell document (default: the sample) and write it back; --values lists it; --formula "
     "reads, prints and evaluates a formula; --namespace-complete, --lossless-reals and --escape-markup "
     "choose the written form",
     zrxml::demoCommand},
    {"schema", "[DIR]",
     "write the XML Schema files of the example documents (robot cell, formula) into DIR; "
     "--namespace-complete also writes the samples there, in the form a validator needs",
     zrxml::schemaCommand},
};

void printUsage() {
  zrxml::output("usage: zrxml COMMAND ARGUMENTS\n\ncommands:\n");
  for (const auto& command : theCommands)
    zrxml::output("  %-8s %-10s %s\n", command.name, command.arguments, command.summary);
  zrxml::output("\nexit status: 0 no fault, 1 faults reported, 2 a file could not be opened, 64 wrong usage\n");
}

}  // namespace

int main(int argc, char** argv) {
  zrxml::PrintRouter router;
  if (argc < 2) {
    printUsage();
    return zrxml::ExitUsage;
  }
  if (std::strcmp(argv[1], "help") == 0 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
    printUsage();
    return zrxml::ExitOk;
  }
  for (const auto& command : theCommands)
    if (std::strcmp(argv[1], command.name) == 0) return command.run(argc - 2, argv + 2, router);
  zrxml::output("zrxml: unknown command '%s'\n\n", argv[1]);
  printUsage();
  return zrxml::ExitUsage;
}
