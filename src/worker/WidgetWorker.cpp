#include "worker/WidgetWorker.hpp"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <stdexcept>

#include "bundle/TimelineWidgetBundle.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "views/EnumNames.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/FailureReason.hpp"
#include "worker/KeeperImage.hpp"
#include "worker/MessageFraming.hpp"
#include "worker/WorkerKeeper.hpp"

namespace quillan::worker {
namespace {

using Json = nlohmann::json;

// Beyond the evaluation's own deadline, what the warm worker may take to fork,
// reap and reply before the host gives up on it.
constexpr std::chrono::milliseconds kReplyGrace{5000};
constexpr std::chrono::milliseconds kKeeperTimeout{5000};

// A live warm worker says nothing unasked: anything to read, or a hang-up,
// means it has gone.
bool peerGone(int socket) {
  pollfd waiting{socket, POLLIN, 0};
  return poll(&waiting, 1, 0) != 0;
}

EvaluationCost costFrom(const Json& json) {
  EvaluationCost cost;
  if (!json.is_object()) return cost;
  if (json.contains("seconds") && json["seconds"].is_number()) cost.seconds = json["seconds"].get<double>();
  if (json.contains("peakKilobytes") && json["peakKilobytes"].is_number_integer()) {
    cost.peakKilobytes = json["peakKilobytes"].get<std::int64_t>();
  }
  return cost;
}

template <typename Value>
Evaluation<Value> failed(std::string reason, std::vector<std::string> log, EvaluationCost cost) {
  return {EvaluationFailure{std::move(reason)}, std::move(log), cost};
}

}  // namespace

WidgetWorker::WidgetWorker(WorkerOptions options) : options_(std::move(options)) {
  if (options_.deadline.count() <= 0) throw std::invalid_argument("worker: the deadline must be positive");
  if (options_.memoryCeilingBytes <= 0) throw std::invalid_argument("worker: the memory ceiling must be positive");
  if (options_.memorySampleInterval.count() <= 0) {
    throw std::invalid_argument("worker: the memory sample interval must be positive");
  }
  if (!options_.keeperImage.empty() && !options_.widgets.empty()) {
    throw std::invalid_argument("worker: a keeper started from an image serves the bundle's widgets only");
  }
  if (options_.widgets.empty()) options_.widgets = bundle::TimelineWidgetBundle::body();
  startKeeper();
  std::vector<std::string> ignored;
  ensureWarmWorker(ignored);
  if (socket_ < 0) throw std::runtime_error("worker: could not start the warm worker");
}

WidgetWorker::~WidgetWorker() {
  // Closing the sockets ends both processes: each leaves at end of file, and
  // the reaper waits for the keeper.
  dropWarmWorker(false);
  if (control_ >= 0) close(control_);
}

pid_t WidgetWorker::warmWorkerPid() const {
  std::lock_guard lock(mutex_);
  return warm_;
}

pid_t WidgetWorker::keeperPid() const {
  std::lock_guard lock(mutex_);
  return keeper_;
}

void WidgetWorker::startKeeper() {
  if (!options_.keeperImage.empty()) {
    const auto keeper = spawnKeeperImage(options_);
    control_ = keeper.control;
    keeper_ = keeper.pid;
    reaper_.adopt(keeper_);
    return;
  }
  int pair[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) {
    throw std::runtime_error(std::string("worker: no socket for the keeper: ") + std::strerror(errno));
  }
  const pid_t keeper = fork();
  if (keeper == 0) {
    close(pair[0]);
    runWorkerKeeper(pair[1], options_);
  }
  close(pair[1]);
  if (keeper < 0) {
    close(pair[0]);
    throw std::runtime_error(std::string("worker: could not fork the keeper: ") + std::strerror(errno));
  }
  control_ = pair[0];
  keeper_ = keeper;
  reaper_.adopt(keeper_);
}

void WidgetWorker::dropWarmWorker(bool kill) {
  if (kill && warm_ > 0) ::kill(warm_, SIGKILL);
  if (kill) lost_ = true;
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
  warm_ = 0;
}

void WidgetWorker::ensureWarmWorker(std::vector<std::string>& log) {
  if (socket_ >= 0 && !peerGone(socket_)) return;
  const bool restarting = socket_ >= 0 || lost_;
  dropWarmWorker(false);
  auto handle = control_ >= 0 ? requestWarmWorker(control_, kKeeperTimeout) : std::nullopt;
  if (!handle) {
    // The keeper is gone too (the reaper has it): a new one is started.
    // Forked, it comes from this process, which may have threads by now; the
    // keeper touches nothing but its socket and ICU before it forks the worker.
    if (control_ >= 0) close(control_);
    control_ = -1;
    keeper_ = 0;
    startKeeper();
    handle = requestWarmWorker(control_, kKeeperTimeout);
    if (restarting) log.emplace_back("worker: the keeper of the warm worker had stopped; started a new one");
  }
  if (!handle) return;
  lost_ = false;
  socket_ = handle->socket;
  warm_ = handle->pid;
  if (restarting) log.emplace_back("worker: the warm worker had stopped; started a new one");
}

WidgetWorker::Exchange WidgetWorker::send(const Json& request) {
  Exchange exchange{std::unique_lock(mutex_), {}, std::nullopt};
  auto& reply = exchange.reply;
  ensureWarmWorker(reply.log);
  if (socket_ < 0) {
    reply.failure = "the worker could not be started";
    return exchange;
  }
  if (!writeMessage(socket_, request)) {
    dropWarmWorker(true);
    reply.failure = "the worker stopped before the evaluation";
    return exchange;
  }
  exchange.sentAt = std::chrono::steady_clock::now();
  return exchange;
}

WidgetWorker::Reply WidgetWorker::receive(Exchange& exchange) {
  auto reply = std::move(exchange.reply);
  exchange.reply = {};
  if (!exchange.sentAt) return reply;
  const auto wait = options_.deadline + kReplyGrace;
  auto message = readMessage(socket_, *exchange.sentAt + wait + exchange.firstReplyExtra);
  exchange.firstReplyExtra = {};
  exchange.sentAt = std::chrono::steady_clock::now();
  if (const auto* problem = std::get_if<ReadFailure>(&message)) {
    dropWarmWorker(true);
    exchange.sentAt.reset();
    reply.failure = *problem == ReadFailure::timedOut
                        ? "the worker did not answer within " +
                              secondsText(std::chrono::duration_cast<std::chrono::milliseconds>(wait)) + " s"
                        : "the worker stopped during the evaluation";
    return reply;
  }
  auto& json = std::get<Json>(message);
  if (json.contains("log") && json["log"].is_array()) {
    for (const auto& line : json["log"]) {
      if (line.is_string()) reply.log.push_back(line.get<std::string>());
    }
  }
  reply.cost = costFrom(json.value("cost", Json()));
  if (json.contains("failure") && json["failure"].is_string()) {
    reply.failure = json["failure"].get<std::string>();
  } else if (json.contains("answer") && json["answer"].is_object()) {
    reply.answer = json["answer"];
  } else {
    reply.failure = "the worker's answer was malformed";
  }
  return reply;
}

void WidgetWorker::hear(const JournalWriteNotice& notice) {
  std::lock_guard lock(mutex_);
  // A warm worker found gone is replaced by the next evaluation, whose log says so.
  if (socket_ < 0 || peerGone(socket_)) return;
  if (!writeMessage(socket_, toJson(notice)) ||
      !std::holds_alternative<Json>(readMessage(socket_, std::chrono::steady_clock::now() + kReplyGrace))) {
    dropWarmWorker(true);
  }
}

const widgets::WidgetConfiguration& WidgetWorker::widget(const std::string& kind) const {
  const auto found = std::find_if(options_.widgets.begin(), options_.widgets.end(),
                                  [&](const auto& widget) { return widget.kind == kind; });
  if (found == options_.widgets.end()) throw std::invalid_argument("worker: unknown widget kind \"" + kind + "\"");
  return *found;
}

void WidgetWorker::validate(const std::string& kind, const ProcessSettings& settings,
                            std::initializer_list<platform::Date> dates) const {
  widget(kind);
  for (const auto date : dates) {
    if (!std::isfinite(date.timeIntervalSinceReferenceDate())) {
      throw std::invalid_argument("worker: a date of the evaluation of " + kind + " is not finite");
    }
  }
  if (settings.timeZone && !platform::TimeZone::named(*settings.timeZone)) {
    throw std::invalid_argument("worker: unknown time zone \"" + *settings.timeZone + "\"");
  }
  if (settings.locale && !platform::Locale::named(*settings.locale)) {
    throw std::invalid_argument("worker: unknown locale \"" + *settings.locale + "\"");
  }
}

Evaluation<widgets::TimelineAnswer> WidgetWorker::timeline(const TimelineEvaluation& evaluation) {
  return finishTimeline(startTimeline(evaluation));
}

WidgetWorker::PendingEvaluation WidgetWorker::startTimeline(const TimelineEvaluation& evaluation) {
  validate(evaluation.kind, evaluation.settings, {evaluation.at});
  return PendingEvaluation(send(toJson(evaluation)));
}

Evaluation<widgets::TimelineAnswer> WidgetWorker::timelineOf(const Reply& reply) {
  if (reply.failure) return failed<widgets::TimelineAnswer>(*reply.failure, reply.log, reply.cost);
  try {
    return {timelineAnswerFromJson(reply.answer.value("timeline", Json())), reply.log, reply.cost};
  } catch (const EvaluationJsonError& error) {
    return failed<widgets::TimelineAnswer>(std::string("the worker's answer was malformed: ") + error.what(), reply.log,
                                           reply.cost);
  }
}

Evaluation<widgets::TimelineAnswer> WidgetWorker::finishTimeline(PendingEvaluation pending) {
  return timelineOf(receive(pending.exchange));
}

Evaluation<std::string> WidgetWorker::view(const ViewEvaluation& evaluation) {
  return finishView(startView(evaluation));
}

void WidgetWorker::validateView(const ViewEvaluation& evaluation) const {
  validate(evaluation.kind, evaluation.settings, {evaluation.entryDate, evaluation.at});
  const auto& families = widget(evaluation.kind).supportedFamilies;
  if (std::find(families.begin(), families.end(), evaluation.environment.family) == families.end()) {
    throw std::invalid_argument("worker: " + evaluation.kind + " is not offered as " +
                                std::string(views::toString(evaluation.environment.family)));
  }
}

WidgetWorker::PendingEvaluation WidgetWorker::startView(const ViewEvaluation& evaluation) {
  validateView(evaluation);
  return PendingEvaluation(send(toJson(evaluation)));
}

Evaluation<std::string> WidgetWorker::viewOf(const Reply& reply) {
  if (reply.failure) return failed<std::string>(*reply.failure, reply.log, reply.cost);
  if (!reply.answer.contains("view") || !reply.answer["view"].is_string()) {
    return failed<std::string>("the worker's answer was malformed: no view", reply.log, reply.cost);
  }
  return {reply.answer["view"].get<std::string>(), reply.log, reply.cost};
}

Evaluation<std::string> WidgetWorker::finishView(PendingEvaluation pending) {
  return viewOf(receive(pending.exchange));
}

WidgetWorker::Exchange WidgetWorker::sendTogether(Json requests) {
  auto exchange = send({{"type", "together"}, {"requests", std::move(requests)}});
  exchange.firstReplyExtra = options_.deadline;
  return exchange;
}

WidgetWorker::PendingEvaluation WidgetWorker::startTimelines(const std::vector<TimelineEvaluation>& evaluations) {
  Json requests = Json::array();
  for (const auto& evaluation : evaluations) {
    validate(evaluation.kind, evaluation.settings, {evaluation.at});
    requests.push_back(toJson(evaluation));
  }
  return PendingEvaluation(sendTogether(std::move(requests)), evaluations.size());
}

WidgetWorker::PendingEvaluation WidgetWorker::startViews(const std::vector<ViewEvaluation>& evaluations) {
  Json requests = Json::array();
  for (const auto& evaluation : evaluations) {
    validateView(evaluation);
    requests.push_back(toJson(evaluation));
  }
  return PendingEvaluation(sendTogether(std::move(requests)), evaluations.size());
}

template <typename Answer>
std::vector<Evaluation<Answer>> WidgetWorker::finishTogether(PendingEvaluation& pending,
                                                             Evaluation<Answer> (*answerOf)(const Reply&)) {
  std::vector<Evaluation<Answer>> answers;
  auto& exchange = pending.exchange;
  while (answers.size() < pending.replies) {
    answers.push_back(answerOf(receive(exchange)));
    if (!exchange.sentAt) break;
  }
  return answers;
}

std::vector<Evaluation<widgets::TimelineAnswer>> WidgetWorker::finishTimelines(PendingEvaluation pending) {
  return finishTogether(pending, &WidgetWorker::timelineOf);
}

std::vector<Evaluation<std::string>> WidgetWorker::finishViews(PendingEvaluation pending) {
  return finishTogether(pending, &WidgetWorker::viewOf);
}

void WidgetWorker::discard(PendingEvaluation pending) {
  auto& exchange = pending.exchange;
  // An empty group is still one request, answered once.
  for (std::size_t index = 0; index < std::max<std::size_t>(pending.replies, 1); ++index) {
    receive(exchange);
    if (!exchange.sentAt) return;
  }
}

}  // namespace quillan::worker
