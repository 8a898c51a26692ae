#include "ZrxmlParallel.h"

#include "ZrxmlTool.h"

#include <ZrPrint.h>

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

namespace zrxml {

namespace {

struct ChildRun {
  pid_t pid = 0;
  std::FILE* out = nullptr;
  std::FILE* err = nullptr;
  bool done = false;
  bool inProcess = false;  // no child could be started: the task runs here when its turn comes
  int status = ExitOk;
};

std::string contentsOf(std::FILE* file) {
  std::string text;
  if (!file) return text;
  std::rewind(file);
  char block[16384];
  for (std::size_t count; (count = std::fread(block, 1, sizeof block, file)) > 0;) text.append(block, count);
  std::fclose(file);
  return text;
}

void closeFiles(ChildRun& run) {
  if (run.out) std::fclose(run.out);
  if (run.err) std::fclose(run.err);
  run.out = run.err = nullptr;
}

// The child never returns: its exit status is the task's, and nothing of the parent's (open readers,
// buffered output, exit handlers) is run twice.
[[noreturn]] void runChild(const ChildRun& run, std::size_t index, const std::function<int(std::size_t)>& task) {
  int status = ExitFaults;
  if (::dup2(::fileno(run.out), STDOUT_FILENO) >= 0 && ::dup2(::fileno(run.err), STDERR_FILENO) >= 0)
    status = task(index);
  std::fflush(nullptr);
  ::_exit(status);
}

void start(ChildRun& run, std::size_t index, const std::function<int(std::size_t)>& task) {
  std::fflush(nullptr);  // what is buffered now must not be written again by the child
  run.out = std::tmpfile();
  run.err = std::tmpfile();
  run.pid = run.out && run.err ? ::fork() : -1;
  if (run.pid == 0) runChild(run, index, task);
  if (run.pid < 0) {
    closeFiles(run);
    run.inProcess = true;
    run.done = true;
  }
}

int statusOf(int waitStatus) {
  if (WIFEXITED(waitStatus)) return WEXITSTATUS(waitStatus);
  return -(WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : 0) - 1;  // below 0: killed
}

// Passes a finished run's output on: its reports first, then its own output, as a run in this process
// would have interleaved them (the summary line comes after the reports).
void passOn(ChildRun& run, std::size_t index, const std::function<int(std::size_t)>& task) {
  if (run.inProcess) {
    run.status = task(index);
    return;
  }
  const std::string reports = contentsOf(run.err), output = contentsOf(run.out);
  run.err = run.out = nullptr;
  if (!reports.empty()) Zr::Print::instance().write(Zr::PrintError, "%s", reports.c_str());
  if (!output.empty()) zrxml::output("%s", output.c_str());
  if (run.status < 0) {
    Zr::Print::instance().write(Zr::PrintError, "zrxml Error: a checking process was stopped by signal %d.\n",
                                -run.status - 1);
    run.status = ExitFaults;
  }
}

}  // namespace

unsigned processorCount() {
  const long count = ::sysconf(_SC_NPROCESSORS_ONLN);
  return count > 0 ? static_cast<unsigned>(count) : 1u;
}

std::vector<int> runInChildProcesses(std::size_t count, unsigned jobs, const std::function<int(std::size_t)>& task) {
  std::vector<ChildRun> runs(count);
  std::size_t started = 0, shown = 0, running = 0;
  if (jobs == 0) jobs = 1;
  while (shown < count) {
    for (; running < jobs && started < count; ++started) {
      start(runs[started], started, task);
      if (!runs[started].inProcess) ++running;
    }
    for (; shown < started && runs[shown].done; ++shown) passOn(runs[shown], shown, task);
    if (running == 0) continue;
    int waitStatus = 0;
    const pid_t pid = ::waitpid(-1, &waitStatus, 0);
    if (pid < 0) {
      if (errno == EINTR) continue;
      break;  // no child left to wait for: cannot happen while `running` counts some
    }
    for (std::size_t i = shown; i < started; ++i) {
      if (runs[i].pid != pid || runs[i].done) continue;
      runs[i].done = true;
      runs[i].status = statusOf(waitStatus);
      --running;
      break;
    }
  }
  std::vector<int> statuses;
  for (ChildRun& run : runs) {
    closeFiles(run);
    statuses.push_back(run.status);
  }
  return statuses;
}

}  // namespace zrxml
