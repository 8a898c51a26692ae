// zrxml: command-line access to the library's XML tokenizer. New commands are added as a source file
// with their function and one row in the table below.
#include "ZrxmlTool.h"

#include <ZrPrint.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>

namespace {

const zrxml::Command theCommands[] = {
    {"check", "[--strict] [--warnings-as-faults] [-j N] [--schema XSD] FILE...",
     "read each document to its end, print every fault and one summary line per file; --strict also "
     "reports whatever is not well-formed XML 1.0 with namespaces; --schema also validates each against the "
     "XML Schema XSD and reports every violation with file and line; the version warning and a namespace "
     "declared again are warnings, counted apart, unless --warnings-as-faults; -j checks N files at once "
     "(default: one per processor), output in the order given",
     zrxml::checkCommand},
    {"events", "FILE", "print one line per event: line, mode, kind, element, attributes, content (events of "
     "included documents are named by their file)",
     zrxml::eventsCommand},
    {"demo", "[--values] [FORM...] [FILE] | --formula [FILE] [NAME=VALUE...]",
     "read a robot-cell document (default: the sample) and write it back, or with --values list its values; "
     "--formula reads, prints and evaluates a formula; exit 1 when reading reported a fault; the FORM options "
     "--namespace-complete, --lossless-reals and --escape-markup choose the written form",
     zrxml::demoCommand},
    {"schema", "[--namespace-complete] [DIR]",
     "write the XML Schema files of the example documents (robot cell, formula) into DIR (default: the "
     "current directory); --namespace-complete also writes the samples there, in the form a validator needs",
     zrxml::schemaCommand},
};

void printExitStatus() {
  zrxml::output("\nexit status: 0 no fault, 1 faults reported, 2 a file could not be opened, 64 wrong usage\n");
}

bool isHelp(const char* argument) {
  return std::strcmp(argument, "help") == 0 || std::strcmp(argument, "--help") == 0 || std::strcmp(argument, "-h") == 0;
}

void printCommandHelp(const zrxml::Command& command) {
  zrxml::output("usage: zrxml %s %s\n\n%s\n", command.name, command.arguments, command.summary);
  printExitStatus();
}

void printUsage() {
  zrxml::output("usage: zrxml COMMAND ARGUMENTS\n\ncommands:\n");
  for (const auto& command : theCommands)
    zrxml::output("  %-8s %s\n           %s\n", command.name, command.arguments, command.summary);
  zrxml::output("\n'zrxml COMMAND --help' describes one command.\n");
  printExitStatus();
}

// A command's output that did not reach standard output (a full disk, a closed pipe) is a failure of
// the command: what is still buffered is written now, and a failure ends the tool with its report and
// exit status 1, whatever the command found.
int outputWritten(int status) {
  std::cout.flush();
  zrxml::flushStandardOutput();
  return status;
}

// Runs the command the arguments name; its usage and help text are output like any other.
int runCommand(int argc, char** argv, const zrxml::PrintRouter& router) {
  if (argc < 2) {
    printUsage();
    return zrxml::ExitUsage;
  }
  if (isHelp(argv[1])) {
    printUsage();
    return zrxml::ExitOk;
  }
  for (const auto& command : theCommands) {
    if (std::strcmp(argv[1], command.name) != 0) continue;
    if (argc > 2 && std::strcmp(argv[2], "--help") == 0) {
      printCommandHelp(command);
      return zrxml::ExitOk;
    }
    return command.run(argc - 2, argv + 2, router);
  }
  zrxml::output("zrxml: unknown command '%s'\n\n", argv[1]);
  printUsage();
  return zrxml::ExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
  // A closed pipe is a failed write, reported like any other, instead of a silent end by signal.
  std::signal(SIGPIPE, SIG_IGN);
  zrxml::PrintRouter router;
  zrxml::StandardOutput standardOutput;
  return outputWritten(runCommand(argc, argv, router));
}
