#include "tools/tavlynd/spool.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "tools/printable.h"

namespace tavlyn::agent {
namespace {

// A file of another process is not waited for; after a commit the data are on the disk.
constexpr const char* kForm = R"(
PRAGMA locking_mode = EXCLUSIVE;
PRAGMA journal_mode = WAL;
PRAGMA synchronous = FULL;
PRAGMA temp_store = MEMORY;
CREATE TABLE IF NOT EXISTS events (id INTEGER PRIMARY KEY, time INTEGER NOT NULL, topic TEXT NOT NULL,
                                   payload TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS sequences (device TEXT PRIMARY KEY, last INTEGER NOT NULL);
CREATE TABLE IF NOT EXISTS requests (device TEXT NOT NULL, request TEXT NOT NULL, time INTEGER NOT NULL,
                                     reply TEXT NOT NULL, PRIMARY KEY (device, request));
CREATE INDEX IF NOT EXISTS requests_by_time ON requests (time);
CREATE TABLE IF NOT EXISTS facts (name TEXT PRIMARY KEY, value INTEGER NOT NULL);
INSERT OR IGNORE INTO facts VALUES ('base', 0), ('dropped', 0);
)";

constexpr const char* kSizes =
    "SELECT count(*), ifnull(sum(length(CAST(topic || payload AS BLOB))), 0), ifnull(max(id), 0) FROM events";

// The oldest are at the beginning: most of what waits is not looked at.
constexpr const char* kTooOld =
    "DELETE FROM events WHERE id IN (SELECT id FROM events ORDER BY id LIMIT 1000) AND time < ?";

constexpr std::int64_t kDayOfRequests = 86'400'000;
constexpr std::int64_t kMostRemembered = 10'000;
constexpr std::int64_t kPauseBeforeFile = 60'000;
constexpr std::int64_t kMostBytesInMemory = 16 << 20;
constexpr std::size_t kMostDone = 100;

void MoveAside(const std::string& path) {
  for (const char* end : {"", "-wal"}) {
    std::error_code none;
    std::filesystem::rename(path + end, path + ".damaged" + end, none);
    std::filesystem::remove(path + end, none);
  }
  std::error_code none;
  std::filesystem::remove(path + "-shm", none);
}

}  // namespace

Spool::Spool(std::string path, const Bounds& bounds, Tell tell, std::int64_t now)
    : path_(std::move(path)), bounds_(bounds), tell_(std::move(tell)), now_(now), tried_(now) {
  OpenFile(now);
}

void Spool::Open(const std::string& path) {
  database_.emplace(path);
  database_->Run(kForm);
  auto check = database_->Prepare("PRAGMA quick_check(1)");
  if (!check.Step() || check.Text(0) != "ok") throw DatabaseError::Damaged(check.Text(0));
  auto sequences = database_->Prepare("SELECT device, last FROM sequences");
  while (sequences.Step()) {
    std::int64_t& last = sequences_[sequences.Text(0)];
    last = std::max(last, sequences.Number(1));
  }
  auto facts = database_->Prepare("SELECT name, value FROM facts");
  while (facts.Step()) (facts.Text(0) == "base" ? base_ : dropped_) = facts.Number(1);
  Count();
}

// A new file in place of a damaged one does not know how far the numbers had come; those of milliseconds are
// larger than any of its events.
void Spool::OpenFile(std::int64_t now) try {
  Open(path_);
  inMemory_ = false;
} catch (const DatabaseError& error) {
  database_.reset();
  if (error.IsInUse()) throw;
  if (!error.IsDamage()) {
    tell_("the spool " + Printable(path_) + " cannot be used: " + error.what() +
          "; events are kept in memory");
    return GoIntoMemory();
  }
  tell_("the spool " + Printable(path_) + " is damaged: " + Printable(error.what()) + "; it is now " +
        Printable(path_) + ".damaged, and a new one begins");
  MoveAside(path_);
  try {
    Open(path_);
    (database_->Prepare("UPDATE facts SET value = ? WHERE name = 'base'") << now).Step();
    base_ = now;
  } catch (const DatabaseError&) {
    GoIntoMemory();
  }
}

void Spool::GoIntoMemory() {
  std::optional<Database> file = std::exchange(database_, std::nullopt);
  const bool isNew = !file.has_value();
  Database memory(Database::kInMemory);
  try {
    if (file) memory.CopyFrom(*file);
  } catch (const DatabaseError&) {
    memory = Database(Database::kInMemory);
  }
  file.reset();
  inMemory_ = true;
  database_.emplace(std::move(memory));
  database_->Run(kForm);
  if (isNew && base_ == 0) base_ = now_;
  (database_->Prepare("UPDATE facts SET value = ? WHERE name = 'base'") << base_).Step();
  Count();
}

// The numbers, and what waits, are those of the memory from now on.
void Spool::ReturnToFile() try {
  {
    const Database file(path_);
    file.Run("PRAGMA journal_mode = DELETE");
    file.CopyFrom(*database_);
  }
  Open(path_);
  inMemory_ = false;
  tell_("the spool " + Printable(path_) + " can be used again");
} catch (const DatabaseError&) {
}

void Spool::Begin() {
  if (!begun_) database_->Run("BEGIN");
  begun_ = true;
}

// One that fails may have ended what was begun.
void Spool::Undo() {
  if (!std::exchange(begun_, false) || !database_) return;
  try {
    database_->Run("ROLLBACK");
  } catch (const DatabaseError&) {
  }
}

void Spool::Insert(const Fresh& event) {
  Begin();
  (database_->Prepare("INSERT INTO events VALUES (?, ?, ?, ?)")
   << ++lastId_ << event.time << event.topic << event.payload)
      .Step();
  (database_->Prepare("INSERT OR REPLACE INTO sequences VALUES (?, ?)") << event.device << event.sequence)
      .Step();
  ++waiting_;
  bytes_ += static_cast<std::int64_t>(event.topic.size() + event.payload.size());
}

// One that cannot go on with a file goes on without; what was not committed is put into its successor.
void Spool::Recover(const DatabaseError& error) {
  Undo();
  tried_ = now_;
  if (error.IsDamage() && !inMemory_) {
    database_.reset();
    OpenFile(now_);
  } else {
    tell_("the spool " + Printable(path_) + " cannot be written: " + error.what() +
          "; events are kept in memory");
    GoIntoMemory();
  }
  for (const Fresh& event : fresh_) Insert(event);
}

void Spool::Try(const std::function<void()>& step) try { step(); } catch (const DatabaseError& error) {
  try {
    Recover(error);
  } catch (const DatabaseError& again) {
    tell_(std::string("events are lost: ") + again.what());
    Undo();
    if (!database_) GoIntoMemory();
    dropped_ += static_cast<std::int64_t>(fresh_.size());
    fresh_.clear();
  }
}

void Spool::Meet(const std::string& device) {
  if (!sequences_.try_emplace(device, base_).second) return;
  Try([&] {
    Begin();
    (database_->Prepare("INSERT OR IGNORE INTO sequences VALUES (?, ?)") << device << base_).Step();
  });
}

std::vector<std::string> Spool::Devices() const {
  std::vector<std::string> names;
  for (const auto& [device, last] : sequences_) names.push_back(device);
  return names;
}

void Spool::Add(const std::string& device, const std::string& topic, std::int64_t now, const Write& write) {
  now_ = now;
  const std::int64_t sequence = ++sequences_.try_emplace(device, base_).first->second;
  fresh_.push_back({device, sequence, now, topic, write(sequence)});
  Try([&] {
    Insert(fresh_.back());
    Shrink();
  });
}

void Spool::Commit(bool all) {
  if (!begun_ && done_.size() < (all ? 1 : kMostDone)) return;
  const auto finish = [this] {
    for (const std::int64_t id : done_) Delete("DELETE FROM events WHERE id = ?", id);
    if (begun_) database_->Run("COMMIT");
    begun_ = false;
  };
  Try(finish);
  if (begun_) Try(finish);  // what Recover began
  fresh_.clear();
  done_.clear();
}

// How many it were.
std::int64_t Spool::Delete(const std::string& which, std::int64_t bound) {
  Begin();
  auto deleted = database_->Prepare((which + " RETURNING length(CAST(topic || payload AS BLOB))").c_str());
  deleted << bound;
  std::int64_t count = 0;
  for (; deleted.Step(); ++count) bytes_ -= deleted.Number(0);
  waiting_ -= count;
  return count;
}

void Spool::Count() {
  auto sizes = database_->Prepare(kSizes);
  sizes.Step();
  waiting_ = sizes.Number(0);
  bytes_ = sizes.Number(1);
  lastId_ = std::max(lastId_, sizes.Number(2));
}

void Spool::Drop(const char* which, std::int64_t bound) {
  const std::int64_t count = Delete(which, bound);
  if (count == 0) return;
  dropped_ += count;
  (database_->Prepare("UPDATE facts SET value = ? WHERE name = 'dropped'") << dropped_).Step();
}

void Spool::Shrink() {
  const std::int64_t most = inMemory_ ? std::min(bounds_.bytes, kMostBytesInMemory) : bounds_.bytes;
  while (bytes_ > most && waiting_ > 0) {
    Drop("DELETE FROM events WHERE id IN (SELECT id FROM events ORDER BY id LIMIT ?)", 1);
  }
}

std::vector<Spool::Event> Spool::After(std::int64_t id, std::int64_t most) {
  std::vector<Event> events;
  Try([&] {
    auto rows = database_->Prepare("SELECT id, topic, payload FROM events WHERE id > ? ORDER BY id LIMIT ?");
    rows << id << most;
    while (rows.Step()) events.push_back({rows.Number(0), rows.Text(1), rows.Text(2)});
  });
  return events;
}

void Spool::Tend(std::int64_t now) {
  now_ = now;
  if (inMemory_ && now - tried_ >= kPauseBeforeFile) {
    tried_ = now;
    Commit();
    ReturnToFile();
  }
  Try([&] {
    Drop(kTooOld, now - bounds_.milliseconds);
    (database_->Prepare("DELETE FROM requests WHERE time < ?") << now - kDayOfRequests).Step();
    (database_->Prepare("DELETE FROM requests WHERE rowid IN (SELECT rowid FROM requests ORDER BY time DESC "
                        "LIMIT -1 OFFSET ?)")
     << kMostRemembered)
        .Step();
    Shrink();
  });
  Commit(true);
}

std::optional<std::string> Spool::Remembered(const std::string& device, const std::string& request,
                                             std::int64_t now) {
  std::optional<std::string> reply;
  Try([&] {
    auto row = database_->Prepare("SELECT reply FROM requests WHERE device = ? AND request = ?");
    row << device << request;
    if (row.Step()) {
      reply = row.Text(0);
      return;
    }
    Begin();
    (database_->Prepare("INSERT INTO requests VALUES (?, ?, ?, '')") << device << request << now).Step();
  });
  Commit();
  return reply;
}

void Spool::Answered(const std::string& device, const std::string& request, const std::string& reply) {
  Try([&] {
    Begin();
    (database_->Prepare("UPDATE requests SET reply = ? WHERE device = ? AND request = ?")
     << reply << device << request)
        .Step();
  });
}

void Spool::Forget(const std::string& device, const std::string& request) {
  Try([&] {
    Begin();
    (database_->Prepare("DELETE FROM requests WHERE device = ? AND request = ?") << device << request).Step();
  });
}

}  // namespace tavlyn::agent
