#include <gtest/gtest.h>

#include "StoreTestSupport.hpp"
#include "store/NoteImage.hpp"

namespace quillan::store {
namespace {

using namespace testing;

// Answers every request with a fixed result, to reach the paths the SQLite
// executor never takes.
class CannedExecutor : public PersistentStoreRequestExecutor {
 public:
  explicit CannedExecutor(Result<PersistentStoreResult> answer) : answer_(std::move(answer)) {}
  Result<PersistentStoreResult> execute(const BatchDeleteRequest& request, const PersistentStore&) override {
    lastResultType = request.resultType;
    return answer_;
  }
  std::optional<BatchDeleteRequestResultType> lastResultType;

 private:
  Result<PersistentStoreResult> answer_;
};

class BatchDelete : public ::testing::Test {
 protected:
  void SetUp() override {
    fixtures::JournalWriter writer(path());
    for (int day : {1, 2, 3}) {
      const auto note = writer.addNote({.date = referenceDate(day * 86400.0), .info = std::to_string(day)});
      writer.addImage({.owner = note, .imgData = bytes({0x89})});
    }
    context_ = contextFor(path());
    notes_ = fetchNotes(*context_);
  }
  std::filesystem::path path() const { return directory_ / "Quillan.sqlite"; }

  TemporaryDirectory directory_;
  std::shared_ptr<ManagedObjectContext> context_;
  std::vector<std::shared_ptr<Note>> notes_;
};

TEST_F(BatchDelete, DeletesMatchingRowsAndForgetsTheirObjects) {
  auto request = Note::fetchRequest();
  request.predicate = Predicate::dateRange("date", referenceDate(86400), referenceDate(3 * 86400));
  EXPECT_FALSE(context_->executeAndMergeChanges(BatchDeleteRequest(request)));
  EXPECT_EQ(context_->registeredObject(notes_[0]->objectID()), nullptr);
  EXPECT_EQ(context_->registeredObject(notes_[1]->objectID()), nullptr);
  EXPECT_TRUE(notes_[0]->isDeleted());
  EXPECT_EQ(context_->registeredObject(notes_[2]->objectID()), notes_[2]);
  EXPECT_FALSE(notes_[2]->isDeleted());
  EXPECT_EQ(fetchNotes(*context_).size(), 1u);
  const auto images = context_->fetch(NoteImage::fetchRequest()).value();
  ASSERT_EQ(images.size(), 3u);
  EXPECT_EQ(images[0]->owner(), nullptr) << "the inverse key is nullified";
  EXPECT_EQ(images[2]->owner(), notes_[2]);
}

TEST_F(BatchDelete, ByObjectIDsOrMatchingNothing) {
  auto nothing = Note::fetchRequest();
  nothing.predicate = Predicate::compare("info", Predicate::Comparison::equal, "none");
  const struct {
    const char* name;
    BatchDeleteRequest request;
    std::vector<bool> deleted;
  } deletions[] = {
      {"matching nothing", BatchDeleteRequest(nothing), {false, false, false}},
      {"by object id", BatchDeleteRequest({notes_[1]->objectID()}), {false, true, false}},
  };
  for (const auto& deletion : deletions) {
    EXPECT_FALSE(context_->executeAndMergeChanges(deletion.request)) << deletion.name;
    std::vector<bool> deleted;
    for (const auto& note : notes_) deleted.push_back(note->isDeleted());
    EXPECT_EQ(deleted, deletion.deleted) << deletion.name;
  }
  EXPECT_EQ(fetchNotes(*context_).size(), 2u);
}

TEST_F(BatchDelete, ResultTypesOfThePlainExecute) {
  BatchDeleteRequest request(Note::fetchRequest());
  request.resultType = BatchDeleteRequestResultType::resultTypeCount;
  auto result = context_->execute(request);
  ASSERT_TRUE(result.ok());
  const auto& batch = std::get<BatchDeleteResult>(result.value());
  EXPECT_EQ(std::get<std::int64_t>(*batch.result), 3);
  EXPECT_FALSE(notes_[0]->isDeleted()) << "a plain execute merges nothing";
}

TEST_F(BatchDelete, AnExecuteFailureReachesTheCallerUnchanged) {
  const platform::Error failure{"NSSQLiteErrorDomain", 5, "database is locked", {{"reason", "busy"}}};
  auto executor = std::make_shared<CannedExecutor>(failure);
  context_->setRequestExecutor(executor);
  const auto error = context_->executeAndMergeChanges(BatchDeleteRequest({notes_[0]->objectID()}));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->description(), failure.description());
  EXPECT_EQ(executor->lastResultType, BatchDeleteRequestResultType::resultTypeObjectIDs);
  EXPECT_FALSE(notes_[0]->isDeleted());
}

TEST_F(BatchDelete, UnexpectedResultShapesMergeAnEmptyList) {
  const std::vector<PersistentStoreResult> shapes = {UnrecognizedStoreResult{}, BatchDeleteResult{},
                                                     BatchDeleteResult{std::int64_t{1}}, BatchDeleteResult{true}};
  for (const auto& shape : shapes) {
    context_->setRequestExecutor(std::make_shared<CannedExecutor>(shape));
    EXPECT_FALSE(context_->executeAndMergeChanges(BatchDeleteRequest({notes_[0]->objectID()})));
    EXPECT_FALSE(notes_[0]->isDeleted());
    EXPECT_EQ(context_->registeredObject(notes_[0]->objectID()), notes_[0]);
  }
}

TEST_F(BatchDelete, MergeIgnoresUnregisteredIDs) {
  ManagedObjectContext::mergeChanges({{"deleted", {ObjectID{"Note", 99}, notes_[2]->objectID()}}}, {context_});
  EXPECT_TRUE(notes_[2]->isDeleted());
  EXPECT_FALSE(notes_[0]->isDeleted());
}

}  // namespace
}  // namespace quillan::store
