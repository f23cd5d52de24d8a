#include "replay/PrivateJournal.hpp"

#include "hosting/QuotedValue.hpp"
#include "hosting/SampleJournalFiles.hpp"
#include "platform/FileManager.hpp"
#include "store/CoreDataStack.hpp"
#include "store/StoreFileCopy.hpp"

namespace quillan::replay {
namespace {

bool hasCompanion(const std::filesystem::path& journal, const char* suffix) {
  std::error_code error;
  return std::filesystem::exists(journal.string() + suffix, error);
}

// A journal the app has closed is all in its main file. Opening it through
// SQLite, even read-only, would leave -wal and -shm files beside it, so it is
// copied as plain bytes instead; SQLite's online backup is for a journal the
// app has open, whose latest pages may still be in its -wal.
void copyJournal(const std::filesystem::path& journal, const std::filesystem::path& copy) {
  if (hasCompanion(journal, "-wal") || hasCompanion(journal, "-journal")) {
    store::copyStoreFile(journal, copy);
  } else {
    std::filesystem::copy_file(journal, copy);
  }
  store::copyExternalData(journal, copy);
}

}  // namespace

PrivateJournal::PrivateJournal(const std::filesystem::path& journal) : root_("quillan-widgets-journal") {
  groupContainer_ = hosting::makeGroupContainerIn(root_.path());
  appSupport_ = platform::FileManager::applicationSupportBeside(groupContainer_);
  try {
    std::filesystem::create_directories(appSupport_);
    const auto copy = file();
    copyJournal(journal, copy);
    appender_ = std::make_unique<fixtures::JournalAppender>(copy);
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot copy the journal " + hosting::quotedValue(journal.string()) + ": " + error.what());
  }
}

// The journal is closed before its folder goes.
PrivateJournal::~PrivateJournal() { appender_.reset(); }

std::filesystem::path PrivateJournal::file() const { return groupContainer_ / store::kStoreFileName; }

std::int64_t PrivateJournal::addNote(platform::Date date, const std::string& text, platform::Date writtenAt) {
  return appender_->addNote({.date = date, .info = text, .lastUpdate = writtenAt});
}

}  // namespace quillan::replay
