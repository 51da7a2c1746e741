#include "tools/tavlynd/database.h"

#include <sqlite3.h>

namespace tavlyn::agent {
namespace {

constexpr int kPrimaryCode = 0xFF;

void Require(bool good, sqlite3* database) {
  if (!good) throw DatabaseError(sqlite3_errcode(database), sqlite3_errmsg(database));
}

}  // namespace

DatabaseError::DatabaseError(int itsCode, const std::string& text)
    : std::runtime_error(text), code(itsCode & kPrimaryCode) {}

DatabaseError DatabaseError::Damaged(const std::string& text) { return {SQLITE_CORRUPT, text}; }

bool DatabaseError::IsDamage() const {
  // An error is what a table of another form leads to.
  return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR;
}

bool DatabaseError::IsInUse() const { return code == SQLITE_BUSY || code == SQLITE_LOCKED; }

void Statement::End::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement::Statement(sqlite3* database, const char* text) {
  sqlite3_stmt* statement = nullptr;
  Require(sqlite3_prepare_v2(database, text, -1, &statement, nullptr) == SQLITE_OK, database);
  statement_.reset(statement);
}

Statement& Statement::operator<<(std::int64_t number) {
  Require(sqlite3_bind_int64(statement_.get(), ++bound_, number) == SQLITE_OK,
          sqlite3_db_handle(statement_.get()));
  return *this;
}

Statement& Statement::operator<<(const std::string& text) {
  Require(sqlite3_bind_text64(statement_.get(), ++bound_, text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8) == SQLITE_OK,
          sqlite3_db_handle(statement_.get()));
  return *this;
}

bool Statement::Step() {
  const int code = sqlite3_step(statement_.get());
  Require(code == SQLITE_ROW || code == SQLITE_DONE, sqlite3_db_handle(statement_.get()));
  return code == SQLITE_ROW;
}

std::int64_t Statement::Number(int column) const { return sqlite3_column_int64(statement_.get(), column); }

std::string Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return text == nullptr ? std::string() : std::string(text, static_cast<std::size_t>(size));
}

void Database::End::operator()(sqlite3* database) const { sqlite3_close_v2(database); }

Database::Database(const std::string& path) {
  sqlite3* database = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) throw DatabaseError(code, sqlite3_errstr(code));
}

void Database::Run(const char* statements) const {
  Require(sqlite3_exec(database_.get(), statements, nullptr, nullptr, nullptr) == SQLITE_OK, database_.get());
}

void Database::CopyFrom(const Database& other) const {
  sqlite3_backup* copying = sqlite3_backup_init(database_.get(), "main", other.database_.get(), "main");
  Require(copying != nullptr, database_.get());
  const int code = sqlite3_backup_step(copying, -1);
  sqlite3_backup_finish(copying);
  if (code != SQLITE_DONE) throw DatabaseError(code, sqlite3_errstr(code));
}

}  // namespace tavlyn::agent
