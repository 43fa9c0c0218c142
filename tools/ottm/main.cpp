// ottm: the type manager on the command line. One process answers one command, or a batch of them.
#include <unistd.h>

#include <iostream>

#include "colour.h"
#include "commandline.h"
#include "ot95/typemgr.h"
#include "program.h"

namespace ottm {
namespace {

int RunBatch() {
  ot95::tools::InputFile input("-");
  input.KeepForItself();
  ot95::tools::LineReader lines(input);
  for (std::string line; lines.Next(line);) {
    WriteOut(JsonLine(AnswerLine(line)));
    FlushOut();
  }
  return 0;
}

/// Help and versions are answers, too.
int PrintHelp(const CLI::App& app, const CLI::Success& help) {
  app.exit(help);
  FlushOut();
  return 0;
}

int Run(int argc, char** argv) {
  Program program;
  try {
    program.Parse(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const CLI::Success& help) {
    return PrintHelp(program.App(), help);
  }
  return program.IsBatch() ? RunBatch() : program.Print();
}

int Main(int argc, char** argv) {
  ot95::tools::TellFileLimits();
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << ot95::tools::Painted("ottm:", ot95::tools::Colour::kError, STDERR_FILENO) << " "
              << ot95::tools::Message(error.what()) << "\n";
    return 2;
  }
}

}  // namespace
}  // namespace ottm

int main(int argc, char** argv) {
  ___OtTypemgrContext(1);
  const int status = ottm::Main(argc, argv);
  ___OtTypemgrContext(0);
  return status;
}
