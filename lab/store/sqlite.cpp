#include "store/sqlite.h"

#include <stdexcept>

namespace lab {

namespace {

constexpr int WaitForOthersMs = 5000;

}  // namespace

Database::Database(const std::string& path, int flags) : m_path(path) {
    if (sqlite3_open_v2(path.c_str(), &m_base, flags, nullptr) != SQLITE_OK) {
        const std::string words = m_base != nullptr ? sqlite3_errmsg(m_base) : "no memory";
        sqlite3_close(m_base);
        throw std::runtime_error(path + ": " + words);
    }
    sqlite3_busy_timeout(m_base, WaitForOthersMs);
}

void Database::fail() const { throw std::runtime_error(m_path + ": " + sqlite3_errmsg(m_base)); }

void Database::run(const char* statements) {
    if (sqlite3_exec(m_base, statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail();
    }
}

std::int64_t Database::number(const char* query) {
    Statement statement(*this, query);
    return statement.row() ? statement.number(0) : 0;
}

Statement::Statement(Database& base, const char* text) : m_base(base) {
    check(sqlite3_prepare_v2(base.get(), text, -1, &m_statement, nullptr));
}

void Statement::check(int result) const {
    if (result != SQLITE_OK) {
        m_base.fail();
    }
}

void Statement::bind(int at, std::string_view value) {
    // a null pointer would be NULL, not an empty text
    const char* data = value.data() != nullptr ? value.data() : "";
    check(sqlite3_bind_text64(m_statement, at, data, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool Statement::row() {
    const int result = sqlite3_step(m_statement);
    if (result == SQLITE_ROW) {
        return true;
    }
    check(sqlite3_reset(m_statement));
    return false;
}

std::string Statement::text(int column) const {
    const auto* data = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
    const int size = sqlite3_column_bytes(m_statement, column);
    return data == nullptr ? std::string() : std::string(data, static_cast<std::size_t>(size));
}

Transaction::~Transaction() {
    if (m_open) {
        sqlite3_exec(m_base.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void Transaction::commit() {
    m_base.run("COMMIT");
    m_open = false;
}

}  // namespace lab
