#pragma once

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace quillan::testing {

// Runs `check` in a child process without root's powers: as nobody when the
// tests run as root (as CI does), else as the current user, since root reads
// and writes past any permission a test sets. The child's exit status is 0
// when `check` answers true, 1 when false, 3 when privileges could not be
// dropped; 128 + N when signal N ended it.
inline int runUnprivileged(const std::function<bool()>& check) {
  constexpr uid_t kNobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) {
      ::_exit(3);
    }
    ::_exit(check() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace quillan::testing
