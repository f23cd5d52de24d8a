#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/Eventually.hpp"
#include "support/RunCommand.hpp"

namespace quillan::testing {

// The built quillan-widgets running in the background, for a test that acts
// on it while it runs (signals it, talks to it). Its standard output is read
// line by line; standard error is discarded. Killed if still running when the
// object goes.
class SpawnedCommand {
 public:
  SpawnedCommand(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {}) {
    int outPipe[2];
    if (::pipe2(outPipe, O_CLOEXEC) != 0) return;
    pid_ = ::fork();
    if (pid_ == 0) {
      ::dup2(outPipe[1], STDOUT_FILENO);
      const int null = ::open("/dev/null", O_WRONLY);
      ::dup2(null, STDERR_FILENO);
      // A test may end it by SIGABRT: no core file of it anywhere.
      const rlimit noCore{0, 0};
      ::setrlimit(RLIMIT_CORE, &noCore);
      execInCleanEnvironment(QUILLAN_CLI_PATH, arguments, environment);
    }
    ::close(outPipe[1]);
    out_ = outPipe[0];
  }
  ~SpawnedCommand() {
    if (running()) {
      ::kill(pid_, SIGKILL);
      wait();
    }
    if (out_ >= 0) ::close(out_);
  }
  SpawnedCommand(const SpawnedCommand&) = delete;
  SpawnedCommand& operator=(const SpawnedCommand&) = delete;

  // The next line of standard output without its newline; empty at its end.
  std::string readLine() {
    std::string line;
    char c = 0;
    while (::read(out_, &c, 1) == 1 && c != '\n') line += c;
    return line;
  }

  void signal(int number) const { ::kill(pid_, number); }

  // The exit code, or 128 + signal for a process ended by one.
  int wait() {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    finished_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  bool running() const { return pid_ > 0 && !finished_; }

 private:
  pid_t pid_ = -1;
  int out_ = -1;
  bool finished_ = false;
};

}  // namespace quillan::testing
