#pragma once

/// The little of SQLite that the store needs, with owners. Failures are std::runtime_error with SQLite's
/// words.

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace lab {

/// A value that is bytes, not text.
struct Bytes {
    std::string_view bytes;
};

class Database {
  public:
    /// `flags` as sqlite3_open_v2 takes them.
    Database(const std::string& path, int flags);
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database() { sqlite3_close(m_base); }

    /// Statements without result.
    void run(const char* statements);
    /// The first column of the first row; 0 without one.
    std::int64_t number(const char* query);

    [[noreturn]] void fail() const;
    sqlite3* get() const { return m_base; }

  private:
    std::string m_path;
    sqlite3* m_base = nullptr;
};

/// One prepared statement; columns and parameters are counted from 0 and 1, as SQLite does.
class Statement {
  public:
    Statement(Database& base, const char* text);
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement() { sqlite3_finalize(m_statement); }

    /// The parameters from the first on.
    template <class... Values>
    Statement& with(const Values&... values) {
        int at = 0;
        (bind(++at, values), ...);
        return *this;
    }

    /// To the next row; false after the last one, ready for other parameters.
    bool row();
    /// For statements without result.
    void run() {
        while (row()) {
        }
    }

    std::int64_t number(int column) const { return sqlite3_column_int64(m_statement, column); }
    double real(int column) const { return sqlite3_column_double(m_statement, column); }
    /// Text or bytes.
    std::string text(int column) const;

  private:
    void bind(int at, std::int64_t value) { check(sqlite3_bind_int64(m_statement, at, value)); }
    void bind(int at, int value) { check(sqlite3_bind_int64(m_statement, at, value)); }
    void bind(int at, bool value) { check(sqlite3_bind_int64(m_statement, at, value ? 1 : 0)); }
    void bind(int at, double value) { check(sqlite3_bind_double(m_statement, at, value)); }
    void bind(int at, std::string_view value);
    void bind(int at, Bytes value) {
        check(sqlite3_bind_blob64(m_statement, at, value.bytes.data(), value.bytes.size(), SQLITE_TRANSIENT));
    }
    void bind(int at, const std::string& value) { bind(at, std::string_view(value)); }
    void bind(int at, const char* value) { bind(at, std::string_view(value)); }
    void check(int result) const;

    Database& m_base;
    sqlite3_stmt* m_statement = nullptr;
};

/// Undone at its end unless it was committed.
class Transaction {
  public:
    explicit Transaction(Database& base) : m_base(base) { m_base.run("BEGIN IMMEDIATE"); }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
    void commit();

  private:
    Database& m_base;
    bool m_open = true;
};

}  // namespace lab
