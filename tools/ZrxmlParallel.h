#ifndef ZRXML_PARALLEL_H
#define ZRXML_PARALLEL_H

#include <cstddef>
#include <functional>
#include <vector>

namespace zrxml {

// Runs task(0) ... task(count - 1) in child processes, at most `jobs` at once, and passes each one's
// standard output and standard error on in the order of the tasks, as if they had run one after the
// other: a child writes into files of its own, which are copied out once it and every task before it
// have ended. Processes rather than threads, because the print facility and the class defaults the
// commands set are process-wide. Returns each task's exit status; a task whose child could not be
// started runs in this process in its turn, and a child that was killed is reported and given ExitFaults.
std::vector<int> runInChildProcesses(std::size_t count, unsigned jobs, const std::function<int(std::size_t)>& task);

// The number of processors online, at least 1.
unsigned processorCount();

}  // namespace zrxml

#endif
