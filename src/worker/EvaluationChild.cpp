#include "worker/EvaluationChild.hpp"

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "platform/Clock.hpp"
#include "platform/ExtensionLog.hpp"
#include "platform/FileManager.hpp"
#include "platform/Locale.hpp"
#include "platform/RandomSource.hpp"
#include "platform/TimeZone.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/WholeWrite.hpp"

namespace quillan::worker {
namespace {

using Json = nlohmann::json;

void applySettings(const ProcessSettings& settings, platform::Date at) {
  if (settings.groupContainer) platform::FileManager::setGroupContainerDirectory(*settings.groupContainer);
  if (settings.appSupport) platform::FileManager::setApplicationSupportDirectory(*settings.appSupport);
  if (settings.timeZone) {
    const auto zone = platform::TimeZone::named(*settings.timeZone);
    if (!zone) throw EvaluationJsonError("unknown time zone: " + *settings.timeZone);
    platform::TimeZone::setCurrent(*zone);
  }
  if (settings.locale) {
    const auto locale = platform::Locale::named(*settings.locale);
    if (!locale) throw EvaluationJsonError("unknown locale: " + *settings.locale);
    platform::Locale::setCurrent(*locale);
  }
  if (settings.seed) {
    platform::RandomSource::seed(*settings.seed);
  } else {
    platform::RandomSource::useSystem();
  }
  platform::Clock::pin(at);
}

const widgets::WidgetConfiguration& widgetOfKind(const std::vector<widgets::WidgetConfiguration>& widgets,
                                                 const std::string& kind) {
  for (const auto& widget : widgets) {
    if (widget.kind == kind) return widget;
  }
  throw EvaluationJsonError("unknown widget kind \"" + kind + "\"");
}

Json evaluateTimeline(const Json& request, const std::vector<widgets::WidgetConfiguration>& widgets) {
  const auto evaluation = timelineEvaluationFromJson(request);
  applySettings(evaluation.settings, evaluation.at);
  const auto& widget = widgetOfKind(widgets, evaluation.kind);
  return {{"timeline", toJson(widget.provider(evaluation.request, {}))}};
}

Json evaluateView(const Json& request, const std::vector<widgets::WidgetConfiguration>& widgets) {
  const auto evaluation = viewEvaluationFromJson(request);
  applySettings(evaluation.settings, evaluation.at);
  const auto& widget = widgetOfKind(widgets, evaluation.kind);
  const auto tree = widget.content(evaluation.entryDate, evaluation.environment);
  // As `render --format json` prints it: a note's bytes that are not UTF-8
  // are shown by the views as they are, and the JSON must stay valid.
  const auto text = views::toJson(tree).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
  return {{"view", text}};
}

}  // namespace

Json evaluateRequest(const Json& request, const std::vector<widgets::WidgetConfiguration>& widgets,
                     const std::function<void(std::string_view)>& log) {
  platform::ExtensionLog::setSink(log);
  Json answer;
  try {
    const auto type = request.is_object() && request.contains("type") ? request["type"] : Json();
    if (type == "timeline") {
      answer = evaluateTimeline(request, widgets);
    } else if (type == "view") {
      answer = evaluateView(request, widgets);
    } else {
      throw EvaluationJsonError("worker message: unknown request type");
    }
  } catch (const std::exception& error) {
    answer = {{"exception", error.what()}};
  }
  platform::ExtensionLog::setSink({});
  return answer;
}

void runEvaluationChild(const std::vector<Json>& requests, const std::vector<widgets::WidgetConfiguration>& widgets,
                        int answerFd, int stderrFd) {
  // A child outliving a killed warm worker would run on unwatched.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  dup2(stderrFd, STDERR_FILENO);
  close(stderrFd);
  const auto writeLine = [answerFd](const Json& object) {
    writeWhole(answerFd, object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
  };
  for (const auto& request : requests) {
    writeLine(evaluateRequest(request, widgets, [&](std::string_view line) {
      writeLine({{"log", std::string(line)}});
    }));
  }
  close(answerFd);
  // Leaves without the exit handlers and destructors of the process this
  // one was forked from, and without the leak checker's report on them.
  _exit(0);
}

}  // namespace quillan::worker
