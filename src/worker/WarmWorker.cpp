#include "worker/WarmWorker.hpp"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>

#include "worker/ChildWatch.hpp"
#include "worker/EvaluationChild.hpp"
#include "worker/JournalWriteNotice.hpp"
#include "worker/MessageFraming.hpp"
#include "worker/NoteDatesKeeper.hpp"

namespace quillan::worker {
namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

Json failure(std::string reason) { return {{"failure", std::move(reason)}, {"log", Json::array()}}; }

// Splits what the child wrote into its log lines and its answer. A line cut
// short by a kill is ignored.
void readAnswerLines(std::string_view text, Json& reply, ChildEnd& end) {
  while (!text.empty()) {
    const auto newline = text.find('\n');
    if (newline == std::string_view::npos) break;
    const auto line = Json::parse(text.substr(0, newline), nullptr, /*allow_exceptions=*/false);
    text.remove_prefix(newline + 1);
    if (!line.is_object()) continue;
    if (line.contains("log") && line["log"].is_string()) {
      reply["log"].push_back(line["log"]);
    } else if (line.contains("exception") && line["exception"].is_string()) {
      end.exception = line["exception"].get<std::string>();
      end.answered = true;
    } else {
      reply["answer"] = line;
      end.answered = true;
    }
  }
}

Json cost(Clock::time_point started, const ChildEnd& end) {
  return {{"seconds", std::chrono::duration<double>(Clock::now() - started).count()},
          {"peakKilobytes", end.peakKilobytes}};
}

}  // namespace

Json evaluateInChild(const Json& request, const WorkerOptions& options, int closeInChild) {
  int answer[2];
  int errors[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, answer) != 0) {
    return failure(std::string("could not start an evaluation: ") + std::strerror(errno));
  }
  if (pipe2(errors, O_CLOEXEC) != 0) {
    close(answer[0]);
    close(answer[1]);
    return failure(std::string("could not start an evaluation: ") + std::strerror(errno));
  }
  const auto started = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    close(closeInChild);
    close(answer[0]);
    close(errors[0]);
    runEvaluationChild(request, options.widgets, answer[1], errors[1]);
  }
  close(answer[1]);
  close(errors[1]);
  if (child < 0) {
    close(answer[0]);
    close(errors[0]);
    return failure(std::string("could not start an evaluation: ") + std::strerror(errno));
  }
  const FailureLimits limits{options.deadline, options.memoryCeilingBytes};
  std::string answerText;
  auto end = watchChild(child, answer[0], errors[0], limits, options.memorySampleInterval, started, answerText);
  Json reply = {{"log", Json::array()}};
  readAnswerLines(answerText, reply, end);
  if (auto reason = failureReason(end, limits)) {
    reply.erase("answer");
    reply["failure"] = *reason;
  }
  reply["cost"] = cost(started, end);
  return reply;
}

void runWarmWorker(int hostSocket, const WorkerOptions& options) {
  // Each child is reaped by the watch that started it.
  signal(SIGCHLD, SIG_DFL);
  NoteDatesKeeper noteDates(options.deadline);
  while (true) {
    // A message that cannot be read leaves the stream out of step: the host
    // is gone or broken either way, and starts a new worker if it needs one.
    const auto request = readMessage(hostSocket);
    if (!std::holds_alternative<Json>(request)) _exit(0);
    if (const auto notice = journalWriteNoticeFromJson(std::get<Json>(request))) {
      noteDates.hear(*notice);
      if (!writeMessage(hostSocket, {{"answer", Json::object()}, {"log", Json::array()}})) _exit(0);
      continue;
    }
    noteDates.refreshFor(std::get<Json>(request), hostSocket);
    if (!writeMessage(hostSocket, evaluateInChild(std::get<Json>(request), options, hostSocket))) _exit(0);
  }
}

}  // namespace quillan::worker
