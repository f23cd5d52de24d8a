// One run of a program as a child process, quiet: its wall time and its
// rusage from wait4 (ru_maxrss is its peak RSS, as long as the launching
// process is smaller than the child: a child's high-water mark starts at the
// RSS it was forked with).
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

namespace quillan::bench {

struct ChildRun {
  double wallSeconds = 0;
  rusage usage{};
  int status = 0;

  bool succeeded() const { return WIFEXITED(status) && WEXITSTATUS(status) == 0; }
  double peakRSSMegabytes() const { return static_cast<double>(usage.ru_maxrss) / 1024.0; }
  // User plus system time: what the run itself cost, however busy the machine.
  double cpuSeconds() const {
    const auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + 1e-6 * t.tv_usec; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
  }
};

// argv[0] is a path, or a name looked up on PATH.
inline ChildRun runQuietly(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ChildRun run;
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child == 0) {
    const int quiet = ::open("/dev/null", O_WRONLY);
    ::dup2(quiet, STDOUT_FILENO);
    ::dup2(quiet, STDERR_FILENO);
    ::execvp(argv[0], argv.data());
    std::_Exit(127);
  }
  ::wait4(child, &run.status, 0, &run.usage);
  run.wallSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return run;
}

}  // namespace quillan::bench
