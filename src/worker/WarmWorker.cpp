#include "worker/WarmWorker.hpp"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

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

// Each evaluation's log lines and answer, in turn; nullopt when one threw, or
// a line is not an object, or is cut short, or follows the last answer.
std::optional<std::vector<Json>> answersInTurn(std::string_view text) {
  std::vector<Json> replies;
  Json reply = {{"log", Json::array()}};
  while (!text.empty()) {
    const auto newline = text.find('\n');
    if (newline == std::string_view::npos) return std::nullopt;
    auto line = Json::parse(text.substr(0, newline), nullptr, /*allow_exceptions=*/false);
    text.remove_prefix(newline + 1);
    if (!line.is_object() || line.contains("exception")) return std::nullopt;
    if (line.contains("log") && line["log"].is_string()) {
      reply["log"].push_back(line["log"]);
      continue;
    }
    reply["answer"] = std::move(line);
    replies.push_back(std::move(reply));
    reply = {{"log", Json::array()}};
  }
  if (!reply["log"].empty()) return std::nullopt;
  return replies;
}

Json cost(Clock::time_point started, const ChildEnd& end) {
  return {{"seconds", std::chrono::duration<double>(Clock::now() - started).count()},
          {"peakKilobytes", end.peakKilobytes}};
}

struct ChildRun {
  Clock::time_point started;
  std::string answerText;
  ChildEnd end;
};

// The requests evaluated in turn in one forked child, watched under the
// options' limits; the reason when no child could be started.
std::variant<ChildRun, std::string> runInChild(const std::vector<Json>& requests, const WorkerOptions& options,
                                               int closeInChild) {
  int answer[2];
  int errors[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, answer) != 0) {
    return std::string("could not start an evaluation: ") + std::strerror(errno);
  }
  if (pipe2(errors, O_CLOEXEC) != 0) {
    close(answer[0]);
    close(answer[1]);
    return std::string("could not start an evaluation: ") + std::strerror(errno);
  }
  ChildRun run{Clock::now(), {}, {}};
  const pid_t child = fork();
  if (child == 0) {
    close(closeInChild);
    close(answer[0]);
    close(errors[0]);
    runEvaluationChild(requests, options.widgets, answer[1], errors[1]);
  }
  close(answer[1]);
  close(errors[1]);
  if (child < 0) {
    close(answer[0]);
    close(errors[0]);
    return std::string("could not start an evaluation: ") + std::strerror(errno);
  }
  const FailureLimits limits{options.deadline, options.memoryCeilingBytes};
  run.end = watchChild(child, answer[0], errors[0], limits, options.memorySampleInterval, run.started, run.answerText);
  return run;
}

// The requests of a request for several, evaluated in one child that reads
// the journal and loads what they share once. Its replies are taken only when
// it answered every request (with a timeline or a tree) and ended cleanly
// within the limits of a single evaluation; nullopt otherwise.
std::optional<std::vector<Json>> evaluateTogetherInChild(const std::vector<Json>& requests,
                                                         const WorkerOptions& options, int closeInChild) {
  auto started = runInChild(requests, options, closeInChild);
  auto* run = std::get_if<ChildRun>(&started);
  if (!run) return std::nullopt;
  auto replies = answersInTurn(run->answerText);
  if (!replies || replies->size() != requests.size()) return std::nullopt;
  run->end.answered = true;
  if (failureReason(run->end, {options.deadline, options.memoryCeilingBytes})) return std::nullopt;
  for (auto& reply : *replies) reply["cost"] = cost(run->started, run->end);
  return replies;
}

// The requests of {"type": "together", "requests": [timeline or view
// requests]}, else nullopt.
std::optional<std::vector<Json>> requestsTogether(const Json& request) {
  if (!request.is_object() || !request.contains("type") || request["type"] != "together" ||
      !request.contains("requests") || !request["requests"].is_array() || request["requests"].empty()) {
    return std::nullopt;
  }
  return request["requests"].get<std::vector<Json>>();
}

// Requests asked for together answer as if each had been asked for alone, in
// turn: one reply each. A child that did not answer them all cleanly leaves
// them to separate children, so its own failure is never seen.
bool answerTogether(int hostSocket, const std::vector<Json>& requests, const WorkerOptions& options,
                    NoteDatesKeeper& noteDates) {
  for (const auto& request : requests) noteDates.refreshFor(request, hostSocket);
  const auto replies = evaluateTogetherInChild(requests, options, hostSocket);
  for (std::size_t index = 0; index < requests.size(); ++index) {
    if (!replies) noteDates.refreshFor(requests[index], hostSocket);
    if (!writeMessage(hostSocket,
                      replies ? (*replies)[index] : evaluateInChild(requests[index], options, hostSocket))) {
      return false;
    }
  }
  return true;
}

}  // namespace

Json evaluateInChild(const Json& request, const WorkerOptions& options, int closeInChild) {
  auto started = runInChild({request}, options, closeInChild);
  if (const auto* problem = std::get_if<std::string>(&started)) return failure(*problem);
  auto& run = std::get<ChildRun>(started);
  const FailureLimits limits{options.deadline, options.memoryCeilingBytes};
  Json reply = {{"log", Json::array()}};
  readAnswerLines(run.answerText, reply, run.end);
  if (auto reason = failureReason(run.end, limits)) {
    reply.erase("answer");
    reply["failure"] = *reason;
  }
  reply["cost"] = cost(run.started, run.end);
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
    if (const auto requests = requestsTogether(std::get<Json>(request))) {
      if (!answerTogether(hostSocket, *requests, options, noteDates)) _exit(0);
      continue;
    }
    noteDates.refreshFor(std::get<Json>(request), hostSocket);
    if (!writeMessage(hostSocket, evaluateInChild(std::get<Json>(request), options, hostSocket))) _exit(0);
  }
}

}  // namespace quillan::worker
