#include "discovery/launchpad_reader.h"

#include "platform/texts.h"

#include <QByteArray>
#include <QSet>
#include <QStringList>

#include <sqlite3.h>

#include <array>
#include <memory>
#include <span>
#include <utility>

namespace tessellar {

using namespace Qt::Literals::StringLiterals;

namespace {

using Code = LaunchpadImportError::Code;
using Failure = std::unexpected<LaunchpadImportError>;
using Outcome = std::expected<void, LaunchpadImportError>;

struct RequiredTable {
    const char* name;
    std::span<const char* const> columns;
    const char* query;
};
constexpr std::array appColumns{"item_id", "title", "bundleid", "storeid"};
constexpr std::array groupColumns{"item_id", "title"};
constexpr std::array itemColumns{"rowid", "uuid", "flags", "type", "parent_id", "ordering"};
constexpr RequiredTable apps{"apps", appColumns, "SELECT item_id, title, bundleid, storeid FROM apps"};
constexpr RequiredTable groups{"groups", groupColumns, "SELECT item_id, title FROM groups"};
constexpr RequiredTable items{"items", itemColumns,
                              "SELECT rowid, uuid, flags, type, parent_id, ordering FROM items"};

/// The row at the cursor.
class Row {
public:
    Row(sqlite3_stmt* statement, int maximumTextBytes)
        : _statement(statement), _maximumTextBytes(maximumTextBytes) {}

    std::optional<std::int64_t> integer(int column) const {
        if (sqlite3_column_type(_statement, column) != SQLITE_INTEGER)
            return std::nullopt;
        return sqlite3_column_int64(_statement, column);
    }
    QString text(int column) const {
        if (sqlite3_column_type(_statement, column) != SQLITE_TEXT)
            return {};
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(_statement, column));
        const int size = sqlite3_column_bytes(_statement, column);
        return bytes && size <= _maximumTextBytes ? QString::fromUtf8(bytes, size) : QString();
    }

private:
    sqlite3_stmt* _statement;
    int _maximumTextBytes;
};

class Reader {
public:
    Reader(std::stop_token stop, const LaunchpadReadLimits& limits)
        : _stop(std::move(stop))
        , _limits(limits)
        , _deadline(std::chrono::steady_clock::now() + limits.time) {}

    std::expected<LaunchpadRows, LaunchpadImportError> read(const QString& hostPath) {
        if (const auto opened = open(hostPath); !opened)
            return Failure(opened.error());
        if (const auto checked = checkSchema(); !checked)
            return Failure(checked.error());
        LaunchpadRows rows;
        const auto step = [](Outcome& outcome, auto next) {
            if (outcome)
                outcome = next();
        };
        Outcome outcome = forEachRow("PRAGMA user_version", [&](const Row& row) {
            rows.schemaUserVersion = static_cast<int>(row.integer(0).value_or(0));
        });
        step(outcome, [&] {
            return forEachRow(apps.query, [&](const Row& row) {
                if (const auto id = row.integer(0))
                    rows.apps.append({*id, row.text(1), row.text(2), row.text(3)});
            });
        });
        step(outcome, [&] {
            return forEachRow(groups.query, [&](const Row& row) {
                if (const auto id = row.integer(0))
                    rows.groups.append({*id, row.text(1)});
            });
        });
        step(outcome, [&] {
            return forEachRow(items.query, [&](const Row& row) {
                if (const auto id = row.integer(0))
                    rows.items.append({*id, row.text(1), row.integer(2).value_or(0),
                                       row.integer(3).value_or(0), row.integer(4),
                                       row.integer(5).value_or(0)});
            });
        });
        if (!outcome)
            return Failure(outcome.error());
        return rows;
    }

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    Outcome open(const QString& hostPath) {
        sqlite3* raw = nullptr;
        const int result = sqlite3_open_v2(hostPath.toUtf8().constData(), &raw,
                                           SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
        _database.reset(raw);
        if (result != SQLITE_OK)
            return fail(Code::unableToOpenDatabase);
        for (const auto& [option, value] :
             {std::pair{SQLITE_DBCONFIG_DEFENSIVE, 1}, std::pair{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
              std::pair{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0}, std::pair{SQLITE_DBCONFIG_ENABLE_VIEW, 0}})
            sqlite3_db_config(raw, option, value, nullptr);
        for (const auto& [limit, value] :
             {std::pair{SQLITE_LIMIT_LENGTH, 16 << 20}, std::pair{SQLITE_LIMIT_SQL_LENGTH, 100'000},
              std::pair{SQLITE_LIMIT_COLUMN, 200}, std::pair{SQLITE_LIMIT_EXPR_DEPTH, 100},
              std::pair{SQLITE_LIMIT_ATTACHED, 0}})
            sqlite3_limit(raw, limit, value);
        sqlite3_progress_handler(
            raw, 1'000,
            [](void* reader) { return static_cast<int>(static_cast<Reader*>(reader)->isOver()); },
            this);
        // The last statement is the first to read the file and its schema: it fails if the file is
        // damaged, encrypted or no database.
        for (const char* statement : {"PRAGMA query_only = ON", "PRAGMA cell_size_check = ON",
                                      "PRAGMA mmap_size = 0", "SELECT 1 FROM sqlite_master LIMIT 1"})
            if (sqlite3_exec(raw, statement, nullptr, nullptr, nullptr) != SQLITE_OK)
                return fail(Code::unableToOpenDatabase);
        sqlite3_set_authorizer(
            raw,
            [](void*, int action, const char*, const char*, const char*, const char*) {
                return action == SQLITE_SELECT || action == SQLITE_READ || action == SQLITE_PRAGMA
                           ? SQLITE_OK
                           : SQLITE_DENY;
            },
            nullptr);
        return {};
    }

    Outcome checkSchema() {
        QSet<QString> tables;
        // Virtual tables have no root page.
        const auto listed = forEachRow("SELECT name, rootpage FROM sqlite_master WHERE type='table'",
                                       [&](const Row& row) {
                                           if (row.integer(1).value_or(0) > 0)
                                               tables.insert(row.text(0).toLower());
                                       });
        if (!listed)
            return listed;
        for (const RequiredTable& table : {apps, groups, items}) {
            const QString name = QLatin1StringView(table.name);
            if (!tables.contains(name))
                return unsupported(Texts::tr("Missing required table: %1").arg(name));
            QSet<QString> columns;
            const QByteArray query = "PRAGMA table_info(" + QByteArray(table.name) + ")";
            if (const auto described = forEachRow(
                    query.constData(), [&](const Row& row) { columns.insert(row.text(1).toLower()); });
                !described)
                return described;
            QStringList missing;
            for (const char* column : table.columns)
                if (!columns.contains(QLatin1StringView(column)))
                    missing += QLatin1StringView(column);
            if (!missing.isEmpty())
                return unsupported(
                    Texts::tr("%1 is missing columns: %2").arg(name, missing.join(u", "_s)));
        }
        return {};
    }

    template <typename Visit>
    Outcome forEachRow(const char* query, Visit visit) {
        sqlite3_stmt* raw = nullptr;
        if (sqlite3_prepare_v2(_database.get(), query, -1, &raw, nullptr) != SQLITE_OK)
            return fail(Code::queryFailed);
        const std::unique_ptr<sqlite3_stmt, Close> statement(raw);
        qsizetype count = 0;
        int result = SQLITE_ROW;
        while ((result = sqlite3_step(raw)) == SQLITE_ROW) {
            if (++count > _limits.rows)
                return Failure({Code::queryFailed, Texts::tr("There are too many rows.")});
            visit(Row(raw, _limits.textBytes));
        }
        return result == SQLITE_DONE ? Outcome() : fail(Code::queryFailed);
    }

    bool isOver() const {
        return _stop.stop_requested() || std::chrono::steady_clock::now() > _deadline;
    }

    Outcome fail(Code code) const {
        if (_stop.stop_requested())
            return Failure(LaunchpadImportError{Code::cancelled});
        return Failure(
            {code, _database ? QString::fromUtf8(sqlite3_errmsg(_database.get())) : QString()});
    }
    static Outcome unsupported(const QString& detail) {
        return Failure({Code::unsupportedSchema, detail});
    }

    std::stop_token _stop;
    LaunchpadReadLimits _limits;
    std::chrono::steady_clock::time_point _deadline;
    std::unique_ptr<sqlite3, Close> _database;
};

} // namespace

std::expected<LaunchpadRows, LaunchpadImportError>
readLaunchpadRows(const QString& hostPath, std::stop_token stop, const LaunchpadReadLimits& limits) {
    return Reader(std::move(stop), limits).read(hostPath);
}

} // namespace tessellar
