// An SQLite database. What fails throws DatabaseError.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace tavlyn::agent {

struct DatabaseError : std::runtime_error {
  DatabaseError(int code, const std::string& text);
  static DatabaseError Damaged(const std::string& text);

  // What is in the file cannot be used, and never will be.
  [[nodiscard]] bool IsDamage() const;
  // Another process has it.
  [[nodiscard]] bool IsInUse() const;

  int code;
};

class Statement {
 public:
  Statement(sqlite3* database, const char* text);

  Statement& operator<<(std::int64_t number);
  Statement& operator<<(const std::string& text);
  // Whether there is a row, from which Number and Text take columns.
  bool Step();
  [[nodiscard]] std::int64_t Number(int column) const;
  [[nodiscard]] std::string Text(int column) const;

 private:
  struct End {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, End> statement_;
  int bound_ = 0;
};

class Database {
 public:
  static constexpr const char* kInMemory = ":memory:";

  explicit Database(const std::string& path);

  void Run(const char* statements) const;
  [[nodiscard]] Statement Prepare(const char* text) const { return {database_.get(), text}; }
  // Everything in this one is replaced by what is in the other.
  void CopyFrom(const Database& other) const;

 private:
  struct End {
    void operator()(sqlite3* database) const;
  };
  std::unique_ptr<sqlite3, End> database_;
};

}  // namespace tavlyn::agent
