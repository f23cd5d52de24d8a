#include <gtest/gtest.h>

#include <functional>

#include "StoreTestSupport.hpp"

namespace quillan::store {
namespace {

using namespace testing;

TEST(IdentityMap, HandsOutOneLiveObjectPerRowRefreshesItAndForgetsItWhenNobodyHoldsIt) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  fixtures::JournalWriter writer(path);
  const auto key = writer.addNote({.date = referenceDate(100), .info = "before"});
  auto context = contextFor(path);
  auto first = fetchNotes(*context);
  writer.execute("UPDATE ZNOTE SET ZINFO = 'after', ZDATE = 200, Z_OPT = 2 WHERE Z_PK = " + std::to_string(key));
  auto second = fetchNotes(*context);
  ASSERT_EQ(first.size(), 1u);
  ASSERT_EQ(second.size(), 1u);
  EXPECT_EQ(first[0], second[0]);
  EXPECT_EQ(first[0]->info(), "after");
  EXPECT_DOUBLE_EQ(first[0]->date()->timeIntervalSinceReferenceDate(), 200);
  EXPECT_EQ(context->registeredObject(ObjectID{"Note", key}), first[0]);
  first.clear();
  second.clear();
  EXPECT_EQ(context->registeredObject(ObjectID{"Note", key}), nullptr);
}

TEST(Snapshots, LeaveTheMainFileBytesUnchanged) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  fixtures::JournalLayout layout;
  layout.walAutocheckpoint = 0;
  fixtures::JournalWriter writer(path, layout);
  for (int i = 0; i < 50; ++i) writer.addNote({.info = "note " + std::to_string(i)});
  const auto before = std::hash<std::string>{}(readText(path));
  auto context = contextFor(path);
  for (int i = 0; i < 20; ++i) {
    auto notes = fetchNotes(*context);
    ASSERT_EQ(notes.size(), 50u);
    notes[0]->images();
  }
  EXPECT_EQ(std::hash<std::string>{}(readText(path)), before);
  writer.close();
}

TEST(Snapshots, AMissingStoreFileReadsAsAnEmptyJournal) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  auto context = contextFor(path);
  EXPECT_TRUE(fetchNotes(*context).empty());
  EXPECT_FALSE(std::filesystem::exists(path)) << "the reader never creates the app's file";
}

TEST(Snapshots, AFetchOnAStoreThatBrokeIsAnError) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  { fixtures::JournalWriter(path).addNote({}); }
  auto context = contextFor(path);
  std::filesystem::remove(path);
  std::ofstream(path) << std::string(4096, 'x');
  auto result = context->fetch(Note::fetchRequest());
  ASSERT_FALSE(result.ok());
  EXPECT_EQ(result.error().code, 259);
}

class FetchRequests : public ::testing::Test {
 protected:
  void SetUp() override {
    fixtures::JournalWriter writer(directory_ / "Quillan.sqlite");
    writer.addNote({.date = referenceDate(300), .info = "c"});
    writer.addNote({.date = referenceDate(100), .info = "a"});
    writer.addNote({.info = "undated"});
    writer.addNote({.date = referenceDate(200), .info = "b"});
    context_ = contextFor(directory_ / "Quillan.sqlite");
  }

  std::vector<std::string> infos(const FetchRequest<Note>& request) {
    const auto result = context_->fetch(request);
    EXPECT_TRUE(result.ok());
    return result.ok() ? testing::infos(result.value()) : std::vector<std::string>{};
  }

  TemporaryDirectory directory_;
  std::shared_ptr<ManagedObjectContext> context_;
};

TEST_F(FetchRequests, PredicatesSortsAndLimitsAndUnknownAttributes) {
  auto request = Note::fetchRequest();
  EXPECT_EQ(infos(request), (std::vector<std::string>{"c", "a", "undated", "b"})) << "without a sort: insertion order";
  request.predicate = Predicate::dateRange("date", referenceDate(100), referenceDate(300));
  request.sortDescriptors = {{"date", false}};
  EXPECT_EQ(infos(request), (std::vector<std::string>{"b", "a"}));
  request.fetchLimit = 1;
  EXPECT_EQ(infos(request), (std::vector<std::string>{"b"}));
  request = Note::fetchRequest();
  request.predicate = Predicate::compare("date", Predicate::Comparison::equal, std::monostate{});
  EXPECT_EQ(infos(request), (std::vector<std::string>{"undated"}));
  request.predicate = Predicate::allOf({Predicate::primaryKeyIn({1, 2, 4}),
                                        Predicate::compare("info", Predicate::Comparison::notEqual, "a")});
  EXPECT_EQ(infos(request), (std::vector<std::string>{"c", "b"}));
  request.predicate = Predicate::compare("mood", Predicate::Comparison::equal, std::int64_t{1});
  const auto unknown = context_->fetch(request);
  ASSERT_FALSE(unknown.ok());
  EXPECT_EQ(unknown.error().userInfo.at("reason"), "keypath mood not found in entity Note");
}

}  // namespace
}  // namespace quillan::store
