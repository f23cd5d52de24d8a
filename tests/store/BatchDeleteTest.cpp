#include <gtest/gtest.h>

#include <algorithm>

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
      writer.addImage({.owner = note, .imgData = fixtures::Bytes{0x89}});
    }
    context_ = contextFor(path());
    notes_ = fetchNotes(*context_);
  }
  std::filesystem::path path() const { return directory_ / "Quillan.sqlite"; }
  // Each note as deleted (and forgotten by the context) or live (and still its registered object).
  std::vector<std::string> states() const {
    std::vector<std::string> states;
    for (const auto& note : notes_) {
      const bool registered = context_->registeredObject(note->objectID()) == note;
      states.push_back(std::string(note->isDeleted() ? "deleted" : "live") + (registered ? ", registered" : ""));
    }
    return states;
  }

  TemporaryDirectory directory_;
  std::shared_ptr<ManagedObjectContext> context_;
  std::vector<std::shared_ptr<Note>> notes_;
};

TEST_F(BatchDelete, DeletesMatchingRowsOrObjectsAndForgetsTheirObjects) {
  auto range = Note::fetchRequest();
  range.predicate = Predicate::dateRange("date", referenceDate(86400), referenceDate(3 * 86400));
  auto nothing = Note::fetchRequest();
  nothing.predicate = Predicate::compare("info", Predicate::Comparison::equal, "none");
  const std::string live = "live, registered";
  const struct {
    const char* name;
    BatchDeleteRequest request;
    std::vector<std::string> states;
  } deletions[] = {
      {"by a date range", BatchDeleteRequest(range), {"deleted", "deleted", live}},
      {"matching nothing", BatchDeleteRequest(nothing), {live, live, live}},
      {"by object id", BatchDeleteRequest({ObjectID{"Note", 2}}), {live, "deleted", live}},
  };
  for (const auto& deletion : deletions) {
    SCOPED_TRACE(deletion.name);
    SetUp();
    EXPECT_FALSE(context_->executeAndMergeChanges(deletion.request));
    EXPECT_EQ(states(), deletion.states);
    EXPECT_EQ(fetchNotes(*context_).size(), static_cast<std::size_t>(std::ranges::count(deletion.states, live)));
    // Each note has one image; a deleted note's loses its owner (the inverse key is nullified).
    const auto images = context_->fetch(NoteImage::fetchRequest()).value();
    for (std::size_t i = 0; i < images.size(); ++i) {
      EXPECT_EQ(images[i]->owner(), notes_[i]->isDeleted() ? nullptr : notes_[i]);
    }
  }
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

// A failure reaches the caller unchanged; a result of any other shape than
// the deleted objects' IDs merges an empty list. Either way nothing is deleted.
TEST_F(BatchDelete, AnExecuteFailureOrAnUnexpectedResultShapeDeletesNothing) {
  const platform::Error failure{"NSSQLiteErrorDomain", 5, "database is locked", {{"reason", "busy"}}};
  using Shape = PersistentStoreResult;
  const Result<Shape> answers[] = {failure, Shape{UnrecognizedStoreResult{}}, Shape{BatchDeleteResult{}},
                                   Shape{BatchDeleteResult{std::int64_t{1}}}, Shape{BatchDeleteResult{true}}};
  for (const auto& answer : answers) {
    auto executor = std::make_shared<CannedExecutor>(answer);
    context_->setRequestExecutor(executor);
    const auto error = context_->executeAndMergeChanges(BatchDeleteRequest({notes_[0]->objectID()}));
    EXPECT_EQ(error ? error->description() : "merged", answer.ok() ? "merged" : failure.description());
    EXPECT_EQ(executor->lastResultType, BatchDeleteRequestResultType::resultTypeObjectIDs);
    EXPECT_EQ(states()[0], "live, registered");
  }
}

TEST_F(BatchDelete, MergeIgnoresUnregisteredIDs) {
  ManagedObjectContext::mergeChanges({{"deleted", {ObjectID{"Note", 99}, notes_[2]->objectID()}}}, {context_});
  EXPECT_TRUE(notes_[2]->isDeleted());
  EXPECT_FALSE(notes_[0]->isDeleted());
}

}  // namespace
}  // namespace quillan::store
