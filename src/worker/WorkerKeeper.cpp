#include "worker/WorkerKeeper.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "worker/ExtensionPreload.hpp"
#include "worker/WarmWorker.hpp"

namespace quillan::worker {
namespace {

constexpr int kControlFd = 3;

// Keeps only the standard streams and the control socket: a listening socket
// or journal connection of the host must not live on in its workers.
int keepOnlyControl(int control) {
  if (control != kControlFd) {
    dup2(control, kControlFd);
    close(control);
  }
  close_range(kControlFd + 1, ~0U, 0);
  // The extension's prints never reach the host's standard output.
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (null >= 0) {
    dup2(null, STDOUT_FILENO);
    close(null);
  }
  return kControlFd;
}

// One socket and the warm worker's pid, the message the keeper hands over.
// It points into itself, so it is never copied.
struct HandleMessage {
  HandleMessage() {
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = space;
    message.msg_controllen = sizeof space;
  }
  HandleMessage(const HandleMessage&) = delete;
  HandleMessage& operator=(const HandleMessage&) = delete;

  char payload[sizeof(pid_t)] = {};
  iovec data{payload, sizeof payload};
  alignas(cmsghdr) char space[CMSG_SPACE(sizeof(int))] = {};
  msghdr message{};
};

bool sendHandle(int control, int socket, pid_t pid) {
  HandleMessage handle;
  std::memcpy(handle.payload, &pid, sizeof pid);
  cmsghdr* header = CMSG_FIRSTHDR(&handle.message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof(int));
  std::memcpy(CMSG_DATA(header), &socket, sizeof socket);
  return sendmsg(control, &handle.message, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof handle.payload);
}

void startWarmWorker(int control, const WorkerOptions& options) {
  int pair[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) _exit(1);
  const pid_t worker = fork();
  if (worker == 0) {
    close(control);
    close(pair[0]);
    runWarmWorker(pair[1], options);
  }
  close(pair[1]);
  // A failed fork hands over a socket nobody answers: the host sees it
  // closed and asks again.
  const bool sent = sendHandle(control, pair[0], worker < 0 ? 0 : worker);
  close(pair[0]);
  if (!sent) _exit(0);
}

}  // namespace

void runWorkerKeeper(int control, const WorkerOptions& options) {
  control = keepOnlyControl(control);
  // Warm workers are reaped as they end, without a wait, and so are the
  // children of a warm worker killed mid-evaluation, which come here.
  signal(SIGCHLD, SIG_IGN);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  signal(SIGPIPE, SIG_IGN);
  preloadExtension();
  while (true) {
    char ask = 0;
    const ssize_t got = read(control, &ask, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) _exit(0);
    startWarmWorker(control, options);
  }
}

std::optional<WarmWorkerHandle> requestWarmWorker(int control, std::chrono::milliseconds timeout) {
  const char ask = 1;
  if (send(control, &ask, 1, MSG_NOSIGNAL) != 1) return std::nullopt;
  pollfd waiting{control, POLLIN, 0};
  if (poll(&waiting, 1, static_cast<int>(timeout.count())) <= 0) return std::nullopt;
  HandleMessage received;
  if (recvmsg(control, &received.message, MSG_CMSG_CLOEXEC) != static_cast<ssize_t>(sizeof received.payload)) {
    return std::nullopt;
  }
  const cmsghdr* header = CMSG_FIRSTHDR(&received.message);
  if (!header || header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) return std::nullopt;
  WarmWorkerHandle handle;
  std::memcpy(&handle.socket, CMSG_DATA(header), sizeof handle.socket);
  std::memcpy(&handle.pid, received.payload, sizeof handle.pid);
  return handle;
}

}  // namespace quillan::worker
