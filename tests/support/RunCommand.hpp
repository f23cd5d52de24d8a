#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace quillan::testing {

struct CommandResult {
  int exitStatus = -1;  // the exit code, or 128 + signal for a process killed by one
  std::string out;
  std::string err;
};

// In a forked child: replaces it with `program` and `arguments` in a clean
// environment (no TZ or LANG from the machine, HOME=/nonexistent-home unless
// `environment` names another, plus its NAME=value entries).
[[noreturn]] inline void execInCleanEnvironment(const std::string& program, const std::vector<std::string>& arguments,
                                                const std::vector<std::string>& environment) {
  std::vector<std::string> copies = {program};
  copies.insert(copies.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (auto& argument : copies) argv.push_back(argument.data());
  argv.push_back(nullptr);
  std::vector<std::string> entries = {"HOME=/nonexistent-home", "TZ=UTC"};
  entries.insert(entries.end(), environment.begin(), environment.end());
  std::vector<char*> envp;
  for (auto& entry : entries) envp.push_back(entry.data());
  envp.push_back(nullptr);
  execve(argv[0], argv.data(), envp.data());
  _exit(127);
}

// Runs `program` with `arguments` and a clean environment (no TZ or LANG from
// the machine, HOME=/nonexistent-home unless `environment` names another, plus
// the NAME=value entries of `environment`), collecting both output streams.
inline CommandResult runProgram(const std::string& program, const std::vector<std::string>& arguments,
                                const std::vector<std::string>& environment = {}) {
  int outPipe[2], errPipe[2];
  if (pipe(outPipe) != 0 || pipe(errPipe) != 0) return {};
  const pid_t child = fork();
  if (child == 0) {
    dup2(outPipe[1], STDOUT_FILENO);
    dup2(errPipe[1], STDERR_FILENO);
    close(outPipe[0]);
    close(errPipe[0]);
    execInCleanEnvironment(program, arguments, environment);
  }
  close(outPipe[1]);
  close(errPipe[1]);
  CommandResult result;
  auto drain = [](int fd, std::string& into) {
    char buffer[4096];
    ssize_t n;
    while ((n = read(fd, buffer, sizeof buffer)) > 0) into.append(buffer, static_cast<std::size_t>(n));
    close(fd);
  };
  // The outputs are small; stderr is read after stdout closes.
  drain(outPipe[0], result.out);
  drain(errPipe[0], result.err);
  int status = 0;
  waitpid(child, &status, 0);
  result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

// runProgram() of the built quillan-widgets.
inline CommandResult runCommand(const std::vector<std::string>& arguments,
                                const std::vector<std::string>& environment = {}) {
  return runProgram(QUILLAN_CLI_PATH, arguments, environment);
}

}  // namespace quillan::testing
