#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "support/RawClient.hpp"
#include "support/RunCommand.hpp"
#include "support/SpawnedCommand.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::cli {
namespace {

using testing::runCommand;
namespace fs = std::filesystem;

constexpr const char* kNow = "2026-11-22T09:00:00Z";
constexpr const char* kMemory = "A walk by the river";

// How the app left its journal when the command reads it.
enum class JournalState { walClosed, rollback, walOpen };

std::set<std::string> listing(const fs::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
  return names;
}

// A group container whose journal holds a memory for kNow, as the app left it.
// With walOpen the app keeps the journal open, the memory only in its -wal.
class AppJournal {
 public:
  explicit AppJournal(JournalState state) : folder_("quillan-footprint") {
    fixtures::JournalLayout layout;
    if (state == JournalState::walOpen) layout.walAutocheckpoint = 0;
    writer_ = std::make_unique<fixtures::JournalWriter>(journal(), layout);
    writer_->addNote({.date = platform::ISO8601::parse("2025-11-22T08:00:00Z"), .info = std::string(kMemory)});
    if (state == JournalState::rollback) writer_->execute("PRAGMA journal_mode = DELETE");
    if (state != JournalState::walOpen) writer_.reset();
  }
  const fs::path& folder() const { return folder_.path(); }
  fs::path journal() const { return folder_.path() / "Quillan.sqlite"; }

 private:
  testing::TemporaryFolder folder_;
  std::unique_ptr<fixtures::JournalWriter> writer_;
};

// The body of GET `target` from the server on `port`.
std::string httpGet(int port, const std::string& target) {
  testing::RawClient client(port);
  client.send("GET " + target + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
              "\r\nConnection: close\r\n\r\n");
  const auto response = client.receive();
  const auto body = response.find("\r\n\r\n");
  return body == std::string::npos ? "" : response.substr(body + 4);
}

// The memory widget's view as `serve` draws it, once its worker has read the journal.
std::string servedView(const fs::path& container) {
  // The ceiling leaves room for the address sanitizer's shadow memory in builds that test the host.
  testing::SpawnedCommand server({"serve", "--port", "0", "--memory-ceiling", "1024", "--group-container",
                                  container.string(), "--now", kNow});
  const auto line = server.readLine();
  const auto colon = line.rfind(':');
  if (line.rfind("serving http://", 0) != 0 || colon == std::string::npos) return "no server: " + line;
  const int port = std::stoi(line.substr(colon + 1));
  std::string view;
  // The host asks the extension for the timelines as it starts.
  testing::eventually([&] {
    view = httpGet(port, "/api/render?kind=OnThisDayWidget&format=json");
    return view.find("no timeline yet") == std::string::npos;
  });
  server.signal(SIGTERM);
  server.wait();
  return view;
}

// What each reading command shows of the memory, or "failed: " and why.
std::string viewBy(const std::string& command, const fs::path& container, const fs::path& scratch) {
  if (command == "serve") return servedView(container);
  const std::map<std::string, std::vector<std::string>> arguments = {
      {"timeline", {"timeline", "--kind", "OnThisDayWidget"}},
      {"render", {"render", "--kind", "OnThisDayWidget"}},
      {"render png", {"render", "--kind", "OnThisDayWidget", "--format", "png", "--output", scratch / "a.png"}},
      {"tap", {"tap", "--kind", "OnThisDayWidget", "--x", "80", "--y", "80"}},
      {"simulate",
       {"simulate", "--kind", "OnThisDayWidget", "--from", "2026-11-22T08:00:00Z", "--to", "2026-11-22T10:00:00Z",
        "--output", scratch / "simulation"}}};
  auto run = arguments.at(command);
  run.insert(run.end(), {"--group-container", container.string(), "--now", kNow});
  const auto result = runCommand(run);
  return result.exitStatus == 0 ? result.out : "failed: " + result.err;
}

TEST(JournalFootprint, ReadingCommandsAddNoFileBesideTheJournalAndSeeItsWal) {
  const std::vector<std::string> commands = {"timeline", "render", "render png", "tap", "simulate", "serve"};
  for (const auto state : {JournalState::walClosed, JournalState::rollback, JournalState::walOpen}) {
    const AppJournal app(state);
    const auto before = listing(app.folder());
    for (const auto& command : commands) {
      const testing::TemporaryFolder scratch("quillan-footprint-out");
      const auto shown = viewBy(command, app.folder(), scratch.path());
      const auto label = command + " of journal state " + std::to_string(static_cast<int>(state));
      EXPECT_EQ(shown.rfind("failed", 0), std::string::npos) << label << ": " << shown;
      if (command == "render" || command == "serve") {
        EXPECT_NE(shown.find(kMemory), std::string::npos) << label << ": " << shown.substr(0, 300);
      }
      EXPECT_EQ(listing(app.folder()), before) << label;
    }
  }
}

}  // namespace
}  // namespace quillan::cli
