#include "replay/PrivateJournal.hpp"

#include "hosting/QuotedValue.hpp"
#include "hosting/SampleJournalFiles.hpp"
#include "platform/FileManager.hpp"
#include "store/CoreDataStack.hpp"
#include "store/StoreFileCopy.hpp"
#include "store/StoreSnapshot.hpp"

namespace quillan::replay {
namespace {

bool hasCompanion(const std::filesystem::path& journal, const char* suffix) {
  std::error_code error;
  return std::filesystem::exists(journal.string() + suffix, error);
}

// An open journal whose -wal is empty while a read of it is held is all in
// its main file, and stays so until the read ends: a read that uses no page of
// the log keeps every checkpoint from writing into the main file, and a read
// that does use some keeps the log from being emptied. Its bytes are copied
// under that read, which spares a large journal the page-by-page backup and
// its check. False, with nothing copied, when the -wal holds pages.
bool copiedUnderRead(const std::filesystem::path& journal, const std::filesystem::path& copy) {
  const auto reading = store::StoreSnapshot::open(journal);
  std::error_code error;
  if (std::filesystem::file_size(journal.string() + "-wal", error) != 0 || error) return false;
  std::filesystem::copy_file(journal, copy);
  return true;
}

// A journal the app has closed is all in its main file. Opening it through
// SQLite, even read-only, would leave -wal and -shm files beside it, so it is
// copied as plain bytes instead; SQLite's online backup is for a journal the
// app has open, whose latest pages may still be in its -wal.
void copyJournal(const std::filesystem::path& journal, const std::filesystem::path& copy) {
  if (hasCompanion(journal, "-journal")) {
    store::copyStoreFile(journal, copy);
  } else if (!hasCompanion(journal, "-wal")) {
    std::filesystem::copy_file(journal, copy);
  } else if (!copiedUnderRead(journal, copy)) {
    store::copyStoreFile(journal, copy);
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
