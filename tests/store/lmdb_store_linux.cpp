#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <thread>

#include "emulator/store/data_sets.h"
#include "emulator/store/data_store.h"
#include "emulator/store/store_error.h"
#include "emulator/store/storing_sink.h"
#include "emulator/tag_text.h"
#include "emulator/transfer_syntax.h"
#include "tests/store/node_list.h"
#include "tests/store/scratch_folder.h"

namespace emulator {
namespace {

constexpr int kElements = 2000;

void Write(StreamObject& stream, const std::string& bytes) {
  stream.Call("Write", std::array<Value, 1>{bytes});
}

std::string ReadAll(StreamObject& stream) {
  return AsBytes(stream.Call("Read", std::array<Value, 1>{stream.ByteCount()}));
}

std::string PixelsNamed(const std::string& id, Globals& nodes) {
  return AsBytes(nodes.Get("KevDICOM.Meta", {id, std::string("pixels")}).value());
}

/// Puts a data set of some pixel data and many elements into the store. `behind` is told of every element and of the
/// end, before the commit.
void Import(DataStore& store, const std::string& id, const std::function<void(int elements)>& behind = {}) {
  const auto transaction = store.Begin(Access::kWrite);
  StoringSink sink(*transaction, id);
  sink.StartContent(kExplicitLittleEndian);
  sink.StartElement(kPixelData, "OW", 10000);
  for (std::uint32_t chunk = 1; chunk <= 100; ++chunk) sink.Data(kPixelData, chunk, std::string(100, 'p'));
  sink.EndElement(kPixelData);
  for (std::uint32_t tag = 0x00100010; tag < 0x00100010 + kElements; ++tag) {
    sink.StartElement(tag, "LO", 100);
    sink.Data(tag, 1, std::string(100, 'x'));
    sink.EndElement(tag);
    if (behind) behind(static_cast<int>(tag - 0x00100010 + 1));
  }
  sink.EndContent();
  if (behind) behind(kElements + 1);
  transaction->Commit();
}

/// 0 for no node of the data set, kElements for all.
int CountElements(Globals& nodes, const std::string& id) {
  int count = 0;
  const auto level = [&id](const std::string& tag) {
    return std::vector<Value>{id, std::int64_t{0}, std::string("c"), std::int64_t{0}, tag};
  };
  for (auto next = nodes.Order("KevDICOM.Data", level("")); !next.subscript.empty();
       next = nodes.Order("KevDICOM.Data", level(next.subscript)))
    ++count;
  return count;
}

TEST(LmdbStore, KeepsADataSetWithItsPixelData) {
  const ScratchFolder folder;
  Import(*OpenDataStore(folder.Path()), "1.2.3");
  const auto store = OpenDataStore(folder.Path());
  const auto transaction = store->Begin(Access::kRead);
  EXPECT_EQ(CountElements(*transaction->Nodes(), "1.2.3"), kElements + 1);
  const auto pixels = transaction->OpenPixels(PixelsNamed("1.2.3", *transaction->Nodes()));
  EXPECT_EQ(ReadAll(*pixels), std::string(10000, 'p'));
  EXPECT_EQ(folder.CountFiles("incoming"), 0U);
  EXPECT_EQ(folder.CountFiles("pixels"), 1U);
}

TEST(LmdbStore, DropsWhatIsNotCommitted) {
  const ScratchFolder folder;
  const auto store = OpenDataStore(folder.Path());
  {
    const auto transaction = store->Begin(Access::kWrite);
    Write(*transaction->CreatePixels().stream, "pixels");
    transaction->Nodes()->Set("KevDICOM.Data", {std::string("A")}, std::string("1"));
    EXPECT_EQ(folder.CountFiles("incoming"), 1U);
  }
  EXPECT_EQ(folder.CountFiles("incoming"), 0U);
  EXPECT_EQ(folder.CountFiles("pixels"), 0U);
  EXPECT_EQ(store->Begin(Access::kRead)->Nodes()->Defined("KevDICOM.Data", {}), 0);
}

TEST(LmdbStore, ReadsPixelDataOfItsOwnTransaction) {
  const ScratchFolder folder;
  const auto store = OpenDataStore(folder.Path());
  const auto transaction = store->Begin(Access::kWrite);
  const auto pixels = transaction->CreatePixels();
  Write(*pixels.stream, "pixels");
  EXPECT_EQ(ReadAll(*transaction->OpenPixels(pixels.name)), "pixels");
}

TEST(LmdbStore, RemovesPixelDataThatAreDroppedAfterTheCommitOnly) {
  const ScratchFolder folder;
  const auto store = OpenDataStore(folder.Path());
  Import(*store, "A");
  const std::string name = PixelsNamed("A", *store->Begin(Access::kRead)->Nodes());
  store->Begin(Access::kWrite)->DropPixels(name);  // and no commit
  EXPECT_EQ(folder.CountFiles("pixels"), 1U);
  const auto transaction = store->Begin(Access::kWrite);
  transaction->DropPixels(name);
  transaction->Commit();
  EXPECT_EQ(folder.CountFiles("pixels"), 0U);
  EXPECT_THROW(store->Begin(Access::kRead)->OpenPixels(name), StoreError);
}

TEST(LmdbStore, KeepsPixelDataThatAreDroppedAsLongAsAnOlderTransactionReads) {
  const ScratchFolder folder;
  const auto store = OpenDataStore(folder.Path());
  Import(*store, "A");
  auto reader = store->Begin(Access::kRead);
  const std::string name = PixelsNamed("A", *reader->Nodes());
  const auto removal = store->Begin(Access::kWrite);
  RemoveDataSet(*removal, "A");
  removal->Commit();
  store->Begin(Access::kWrite)->Commit();
  const auto newer_reader = store->Begin(Access::kRead);
  EXPECT_EQ(ReadAll(*reader->OpenPixels(name)), std::string(10000, 'p'));
  reader.reset();
  store->Begin(Access::kWrite)->Commit();
  EXPECT_EQ(folder.CountFiles("pixels"), 0U);
}

TEST(LmdbStore, FinishesWhatAKilledProcessHadCommitted) {
  const ScratchFolder folder;
  Import(*OpenDataStore(folder.Path()), "A");
  const auto store = OpenDataStore(folder.Path());
  const std::string name = PixelsNamed("A", *store->Begin(Access::kRead)->Nodes());
  // As if it had been killed between its commit and the move of the file.
  std::filesystem::rename(folder.Path("pixels/" + name), folder.Path("incoming/" + name));
  EXPECT_EQ(ReadAll(*store->Begin(Access::kRead)->OpenPixels(name)), std::string(10000, 'p'));
  store->Begin(Access::kWrite)->Commit();
  EXPECT_EQ(folder.CountFiles("incoming"), 0U);
  EXPECT_EQ(ReadAll(*store->Begin(Access::kRead)->OpenPixels(name)), std::string(10000, 'p'));
}

TEST(LmdbStore, RemovesFilesThatAKilledProcessHasLeft) {
  const ScratchFolder folder;
  const auto store = OpenDataStore(folder.Path());
  folder.Write("incoming/0123456789abcdef0123456789abcdef", "half of the pixel data");
  store->Begin(Access::kWrite)->Commit();
  EXPECT_EQ(folder.CountFiles("incoming"), 0U);
}

TEST(LmdbStore, NamesTheFolderThatItCannotUse) {
  const ScratchFolder folder;
  folder.Write("file", "no folder");
  try {
    OpenDataStore(folder.Path("file"));
    ADD_FAILURE() << "a file is no folder";
  } catch (const StoreError& error) {
    EXPECT_NE(std::string(error.what()).find(folder.Path("file")), std::string::npos) << error.what();
  }
}

/// Runs `body` in a process of its own.
template <class Body>
pid_t Fork(const Body& body) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    body();
    _exit(0);
  } catch (const std::exception& error) {
    fprintf(stderr, "%s\n", error.what());
  }
  _exit(1);
}

int StatusOf(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

/// Looks at the store from a new process, as the next import would: all of the data set or nothing is there, and the next
/// import works. True when all of it is there.
bool HoldsAllOrNothing(const ScratchFolder& folder, const std::string& id) {
  const pid_t looker = Fork([&] {
    const auto store = OpenDataStore(folder.Path());
    const int elements = CountElements(*store->Begin(Access::kRead)->Nodes(), id);
    if (elements != 0 && elements != kElements + 1) throw StoreError(id + ": half a data set");
    Import(*store, "behind " + id);
    const auto transaction = store->Begin(Access::kRead);
    if (CountElements(*transaction->Nodes(), "behind " + id) != kElements + 1)
      throw StoreError("the next import is not there");
  });
  EXPECT_EQ(StatusOf(looker), 0) << id;
  EXPECT_EQ(folder.CountFiles("incoming"), 0U);
  const auto store = OpenDataStore(folder.Path());
  return CountElements(*store->Begin(Access::kRead)->Nodes(), id) != 0;
}

/// As many files as data sets: nothing was left behind.
void ExpectAFileForEachDataSet(const ScratchFolder& folder) {
  const auto store = OpenDataStore(folder.Path());
  const auto transaction = store->Begin(Access::kRead);
  std::size_t data_sets = 0;
  VisitDataSets(*transaction->Nodes(), [&](const std::string&) { ++data_sets; });
  EXPECT_EQ(folder.CountFiles("pixels"), data_sets);
}

/// The import waits where it is to be killed, so that each kill meets it there.
TEST(LmdbStore, HoldsNothingOfAnImportThatIsKilledInItsMiddle) {
  const ScratchFolder folder;
  constexpr int kKills = 20;
  for (int round = 0; round < kKills; ++round) {
    const int last =
        1 + round * kElements / (kKills - 1);  // from the first element to the end, before the commit
    std::array<int, 2> there{};
    ASSERT_EQ(pipe(there.data()), 0);
    const std::string id = "killed behind " + std::to_string(last);
    const pid_t child = Fork([&] {
      Import(*OpenDataStore(folder.Path()), id, [&](int elements) {
        if (elements != last) return;
        if (write(there[1], "x", 1) != 1) throw StoreError("pipe");
        pause();
      });
    });
    char token = 0;
    ASSERT_EQ(read(there[0], &token, 1), 1);
    kill(child, SIGKILL);
    ASSERT_TRUE(WIFSIGNALED(StatusOf(child)));
    for (const int end : there) close(end);
    EXPECT_FALSE(HoldsAllOrNothing(folder, id));
  }
  ExpectAFileForEachDataSet(folder);
}

/// At any moment, the commit and the settling of the files included.
TEST(LmdbStore, HoldsAllOrNothingOfAnImportThatIsKilledAtAnyMoment) {
  const ScratchFolder folder;
  const auto start = std::chrono::steady_clock::now();
  ASSERT_EQ(StatusOf(Fork([&] { Import(*OpenDataStore(folder.Path()), "whole"); })), 0);
  const auto took = std::chrono::steady_clock::now() - start;
  int killed = 0;
  int committed = 0;
  for (int round = 0; round < 20; ++round) {
    const std::string id = "killed " + std::to_string(round);
    const pid_t child = Fork([&] { Import(*OpenDataStore(folder.Path()), id); });
    std::this_thread::sleep_for(took * (round + 1) / 20);
    kill(child, SIGKILL);
    if (WIFSIGNALED(StatusOf(child))) ++killed;
    if (HoldsAllOrNothing(folder, id)) ++committed;
  }
  std::printf("%d of 20 killed before their end, %d committed\n", killed, committed);
  EXPECT_GT(killed, 0);
  ExpectAFileForEachDataSet(folder);
}

TEST(LmdbStore, LetsTwoProcessesReadWhileOneWrites) {
  const ScratchFolder folder;
  const pid_t first = Fork([&] { Import(*OpenDataStore(folder.Path()), "A"); });
  ASSERT_EQ(StatusOf(first), 0);

  std::array<int, 2> writing{};
  std::array<int, 2> done{};
  ASSERT_EQ(pipe(writing.data()), 0);
  ASSERT_EQ(pipe(done.data()), 0);
  const pid_t writer = Fork([&] {
    const auto store = OpenDataStore(folder.Path());
    const auto transaction = store->Begin(Access::kWrite);
    transaction->Nodes()->Kill("KevDICOM.Data", {std::string("A")});
    char token = 'w';
    if (write(writing[1], "ww", 2) != 2) throw StoreError("pipe");
    for (int reader = 0; reader < 2; ++reader) {
      if (read(done[0], &token, 1) != 1) throw StoreError("pipe");
    }
    transaction->Commit();
  });
  const auto read_all = [&] {
    char token = 0;
    if (read(writing[0], &token, 1) != 1) throw StoreError("pipe");
    {
      const auto store = OpenDataStore(folder.Path());
      const auto transaction = store->Begin(Access::kRead);
      if (CountElements(*transaction->Nodes(), "A") != kElements + 1)
        throw StoreError("not the old data set");
    }
    if (write(done[1], "d", 1) != 1) throw StoreError("pipe");
  };
  const pid_t reader = Fork(read_all);
  const pid_t other_reader = Fork(read_all);
  EXPECT_EQ(StatusOf(reader), 0);
  EXPECT_EQ(StatusOf(other_reader), 0);
  EXPECT_EQ(StatusOf(writer), 0);
  const auto store = OpenDataStore(folder.Path());
  EXPECT_EQ(CountElements(*store->Begin(Access::kRead)->Nodes(), "A"), 0);
  for (const int end : {writing[0], writing[1], done[0], done[1]}) close(end);
}

}  // namespace
}  // namespace emulator
