#include "sample/launchpad_database.h"

#include <QFile>
#include <QUuid>

#include <sqlite3.h>

namespace tessellar::sample {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto tables = R"(
CREATE TABLE dbinfo (key VARCHAR, value VARCHAR);
CREATE TABLE items (rowid INTEGER PRIMARY KEY ASC, uuid VARCHAR, flags INTEGER, type INTEGER,
                    parent_id INTEGER NOT NULL, ordering INTEGER);
CREATE TABLE apps (item_id INTEGER PRIMARY KEY, title VARCHAR, bundleid VARCHAR, storeid VARCHAR,
                   category_id INTEGER, moddate REAL, bookmark BLOB);
CREATE TABLE groups (item_id INTEGER PRIMARY KEY, category_id INTEGER, title VARCHAR);
CREATE TABLE downloading_apps (item_id INTEGER PRIMARY KEY, title VARCHAR, bundleid VARCHAR, storeid VARCHAR,
                               category_id INTEGER, install_path VARCHAR);
CREATE TABLE image_cache (item_id INTEGER, size_big INTEGER, size_mini INTEGER, image_data BLOB,
                          image_data_mini BLOB);
CREATE INDEX items_by_uuid ON items (uuid);
CREATE INDEX items_in_order ON items (parent_id, ordering);
CREATE TRIGGER cached_image AFTER INSERT ON items WHEN new.type IN (4, 5)
BEGIN
    INSERT INTO image_cache VALUES (new.rowid, 0, 0, NULL, NULL);
END;
)";

constexpr auto olderTables = R"(
CREATE TABLE categories (rowid INTEGER PRIMARY KEY ASC, uti VARCHAR);
CREATE TABLE app_sources (rowid INTEGER PRIMARY KEY ASC, uuid VARCHAR, flags INTEGER, bookmark BLOB,
                          last_fsevent_id INTEGER, fsevent_uuid VARCHAR);
CREATE TABLE widgets (item_id INTEGER PRIMARY KEY, title VARCHAR, bundleid VARCHAR);
)";

enum ItemType { root = 1, folder = 2, page = 3, application = 4, downloading = 5, widget = 6 };

class Database {
public:
    explicit Database(const QByteArray& path) {
        if (sqlite3_open(path.constData(), &_handle) != SQLITE_OK)
            note();
        // The log's salt is drawn from here; the same seed gives the same bytes.
        sqlite3_test_control(SQLITE_TESTCTRL_PRNG_SEED, 20260501, nullptr);
    }
    ~Database() { sqlite3_close(_handle); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void run(const char* statements) {
        if (_error.isEmpty() &&
            sqlite3_exec(_handle, statements, nullptr, nullptr, nullptr) != SQLITE_OK)
            note();
    }

    template <typename... Values>
    void insert(const char* statement, const Values&... values) {
        if (!_error.isEmpty())
            return;
        sqlite3_stmt* prepared = nullptr;
        if (sqlite3_prepare_v2(_handle, statement, -1, &prepared, nullptr) != SQLITE_OK) {
            note();
            return;
        }
        int index = 0;
        (bind(prepared, ++index, values), ...);
        if (sqlite3_step(prepared) != SQLITE_DONE)
            note();
        sqlite3_finalize(prepared);
    }

    int addItem(ItemType type, int parent, int ordering, const QString& name = {}) {
        const int row = _nextRow++;
        const QString uuid = name.isEmpty() ? QUuid::createUuidV5(QUuid(), QByteArray::number(row))
                                                  .toString(QUuid::WithoutBraces)
                                                  .toUpper()
                                            : name;
        const int flags = type == page ? 2 : type == application ? 5 : 0;
        insert("INSERT INTO items VALUES (?, ?, ?, ?, ?, ?)", row, uuid, flags, int(type), parent,
               ordering);
        if (type == root || type == page)
            insert("INSERT INTO groups VALUES (?, NULL, NULL)", row);
        return row;
    }

    void addTile(const OldTile& tile, int parent, int ordering) {
        const int row = addItem(application, parent, ordering);
        insert("INSERT INTO apps VALUES (?, ?, ?, NULL, NULL, 780000000.0, NULL)", row, tile.title,
               tile.identifier);
    }

    void startRowsAt(int row) { _nextRow = row; }
    void keepLog() { sqlite3_db_config(_handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr); }
    QString error() const { return _error; }

private:
    static void bind(sqlite3_stmt* statement, int index, int value) {
        sqlite3_bind_int(statement, index, value);
    }
    static void bind(sqlite3_stmt* statement, int index, const QString& value) {
        const QByteArray text = value.toUtf8();
        sqlite3_bind_text(statement, index, text.constData(), int(text.size()), SQLITE_TRANSIENT);
    }
    void note() { _error = QString::fromUtf8(sqlite3_errmsg(_handle)); }

    sqlite3* _handle = nullptr;
    int _nextRow = 1;
    QString _error;
};

void addRows(Database& database, const OldLaunchpad& launchpad) {
    database.run("INSERT INTO dbinfo VALUES ('launchpad_root', '1'), ('launchpad_version_root', '5'), "
                 "('ignore_items_update_triggers', '1')");
    database.addItem(root, 0, 0, u"ROOTPAGE"_s);
    database.addItem(page, 1, 0, u"HOLDINGPAGE"_s);
    if (launchpad.olderForm) {
        database.addItem(root, 0, 0, u"ROOTPAGE_DB"_s);
        database.addItem(page, 3, 0, u"HOLDINGPAGE_DB"_s);
    }
    database.startRowsAt(5);
    database.addItem(root, 0, 0, u"ROOTPAGE_VERS"_s);
    database.addItem(page, 5, 0, u"HOLDINGPAGE_VERS"_s);
    database.startRowsAt(100);
    if (launchpad.olderForm) {
        const int widgets = database.addItem(page, 3, 1);
        database.insert("INSERT INTO widgets VALUES (?, 'World Clock', 'com.apple.widget.worldclock')",
                        database.addItem(widget, widgets, 0));
        database.run("INSERT INTO categories VALUES (1, 'public.app-category.productivity')");
    }
    // Something that was being bought: it hangs under the holding page and is not shown.
    database.insert(
        "INSERT INTO downloading_apps VALUES (?, 'Waiting', 'com.example.waiting', NULL, NULL, NULL)",
        database.addItem(downloading, 2, 0));

    int pageOrdering = 1;
    for (const auto& tiles : launchpad.pages) {
        const int pageRow = database.addItem(page, 1, pageOrdering++);
        int ordering = 0;
        for (const OldItem& item : tiles) {
            if (const auto* tile = std::get_if<OldTile>(&item)) {
                database.addTile(*tile, pageRow, ordering++);
                continue;
            }
            const auto& oldFolder = std::get<OldFolder>(item);
            const int folderRow = database.addItem(folder, pageRow, ordering++);
            database.insert("INSERT INTO groups VALUES (?, NULL, ?)", folderRow, oldFolder.title);
            int folderPage = 0;
            for (const auto& folderTiles : oldFolder.pages) {
                const int folderPageRow = database.addItem(page, folderRow, folderPage++);
                int place = 0;
                for (const OldTile& tile : folderTiles)
                    database.addTile(tile, folderPageRow, place++);
            }
        }
    }
}

} // namespace

QString addOldLaunchpad(MacBuilder& mac, const OldLaunchpad& launchpad, const QString& path) {
    const QString place =
        path.isEmpty() ? u"/private/var/folders/zz/sample5x7hq0000gn/0/com.apple.dock.launchpad/db/db"_s
                       : path;
    mac.addFile(place, {}); // makes its folder
    if (mac.failure())
        return place;
    const QString file = mac.hostPath(place);
    for (const auto& suffix : {u""_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(file + suffix);
    Database database(file.toUtf8());
    database.run("PRAGMA page_size = 4096; PRAGMA synchronous = OFF; PRAGMA user_version = 1");
    database.run(tables);
    if (launchpad.olderForm)
        database.run(olderTables);
    if (launchpad.inUse) {
        database.run("PRAGMA journal_mode = WAL");
        database.keepLog();
    }
    database.run("BEGIN");
    addRows(database, launchpad);
    database.run("COMMIT");
    if (!database.error().isEmpty())
        mac.fail(place, database.error());
    return place;
}

} // namespace tessellar::sample
