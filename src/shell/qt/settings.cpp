// settings.cpp — the user's settings through QSettings, and the documents folder.
#include "shell/settings.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <optional>

namespace tl::shell {
namespace {

std::unique_ptr<QSettings> open_store(const std::string& ini_file) {
    if (ini_file.empty())
        return std::make_unique<QSettings>(QString::fromLatin1(settings_organisation),
                                           QString::fromLatin1(settings_application));
    return std::make_unique<QSettings>(QString::fromStdString(ini_file), QSettings::IniFormat);
}

/// True when the file is absent or holds plain UTF-8 text (what every save
/// leaves behind: values that are not plain text are stored escaped).
bool file_is_text(const QString& path) {
    QFile file(path);
    if (!file.exists()) return true;
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QByteArray bytes = file.readAll();
    for (const char c : bytes) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x20 && u != '\t' && u != '\n' && u != '\r') return false;
        if (u == 0x7f) return false;
    }
    QStringDecoder decode(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    (void)decode.decode(bytes);
    return !decode.hasError();
}

/// The store, or null when its file cannot be read at all. A damaged file
/// (a format error) is still read: whatever the INI reader makes of it is
/// checked value by value, and an unusable value costs only itself.
std::unique_ptr<QSettings> open_usable_store(const std::string& ini_file) {
    auto store = open_store(ini_file);
    if (store->status() == QSettings::AccessError) return nullptr;
    return store;
}

/// A stored number, or nothing when the value is missing or not a whole
/// number (a negative one or one beyond 32 bits reads as 0 or the largest
/// unsigned value, so that the caller's range check applies).
std::optional<std::uint32_t> read_number(const QSettings& store, const char* name) {
    const QVariant v = store.value(QString::fromLatin1(name));
    if (!v.isValid() || v.typeId() != QMetaType::QString) return std::nullopt;
    const QString text = v.toString().trimmed();
    bool ok = false;
    const qlonglong n = text.toLongLong(&ok);
    if (ok) return n < 0 ? 0U : (n > 0xffffffffLL ? 0xffffffffU : static_cast<std::uint32_t>(n));
    // Too many digits for 64 bits, or not a number at all.
    if (text.isEmpty()) return std::nullopt;
    const bool negative = text.front() == QLatin1Char('-');
    for (qsizetype i = negative ? 1 : 0; i < text.size(); ++i)
        if (!text[i].isDigit()) return std::nullopt;
    if (negative && text.size() == 1) return std::nullopt;
    return negative ? 0U : 0xffffffffU;
}

/// True when `text` can be stored as it is: valid UTF-8 without DEL, the C1
/// controls or the replacement character, which the INI writer would put into
/// the file raw or which the reader could not tell from a damaged byte. (The
/// C0 controls the writer escapes itself.)
bool plain_text(const std::string& text) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
    const QString decoded = decode.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    if (decode.hasError()) return false;
    for (const QChar c : decoded) {
        const char16_t u = c.unicode();
        if ((u >= 0x7f && u <= 0x9f) || u == 0xfffd) return false;
    }
    return true;
}

/// How a text value is stored: as text when it is plain, otherwise as its
/// bytes, which the INI writer escapes ("@ByteArray(...)"), so that the file
/// stays plain text whatever was typed and reads back byte for byte.
QVariant stored_text(const std::string& text) {
    if (plain_text(text)) return QString::fromStdString(text);
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

/// A stored text up to `max_length` characters, or nothing when it is missing,
/// longer, or not readable as text (a byte the file's encoding could not
/// carry, a value of another type).
/// An unquoted comma makes the INI reader split the value; it is joined again.
std::optional<std::string> read_text(const QSettings& store, const QString& name, int max_length) {
    const QVariant v = store.value(name);
    if (!v.isValid()) return std::nullopt;
    if (v.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = v.toByteArray();
        if (bytes.size() > max_length) return std::nullopt;
        return bytes.toStdString();
    }
    QString text;
    if (v.typeId() == QMetaType::QStringList)
        text = v.toStringList().join(QStringLiteral(", "));
    else if (v.typeId() == QMetaType::QString)
        text = v.toString();
    else
        return std::nullopt;
    if (text.size() > max_length || text.contains(QChar(0xfffd))) return std::nullopt;
    return text.toStdString();
}

void read_path(const QSettings& store, const char* name, std::string& target) {
    if (auto text = read_text(store, QString::fromLatin1(name), max_path_setting)) target = *text;
}

void read_recent(const QSettings& store, RecentList& list) {
    list.first_non_empty = -1;
    for (std::size_t i = 0; i < list.entries.size(); ++i) {
        const QString name = QString::fromLatin1(list.value_prefix) + QString::number(i);
        list.entries[i] = read_text(store, name, max_recent_entry).value_or(std::string());
        if (list.first_non_empty < 0 && !list.entries[i].empty()) list.first_non_empty = static_cast<int>(i);
    }
}

/// Stores a value unless the store holds it already (only compares unless
/// `write`); true when the value differs.
bool put(QSettings& store, const QString& name, const QVariant& value, bool write) {
    if (store.contains(name) && store.value(name) == value) return false;
    if (write) store.setValue(name, value);
    return true;
}

/// Stores a recent list; true when anything differs.
bool write_recent(QSettings& store, const RecentList& list, bool write) {
    bool changed = false;
    for (std::size_t i = 0; i < list.entries.size(); ++i) {
        const QString name = QString::fromLatin1(list.value_prefix) + QString::number(i);
        if (list.entries[i].empty()) {
            if (store.contains(name)) {
                if (write) store.remove(name);
                changed = true;
            }
        } else {
            changed = put(store, name, stored_text(list.entries[i]), write) || changed;
        }
    }
    return changed;
}

}  // namespace

AppSettings load_settings(const std::string& ini_file) {
    AppSettings s;
    auto store = open_usable_store(ini_file);
    if (!store) return s;
    store->beginGroup(QString::fromLatin1(settings_group));

    for (int i = 0; i < sizing_count; ++i) {
        s.sizes.value[static_cast<std::size_t>(i)] =
            read_number(*store, sizing_records[static_cast<std::size_t>(i)].value_name).value_or(0);
    }

    read_path(*store, "LogFilePath", s.log_file_path);
    read_path(*store, "LogFileName", s.log_file_name);
    read_path(*store, "SrcPgmPath", s.src_pgm_path);
    read_path(*store, "SrcPgmName", s.src_pgm_name);
    read_path(*store, "JpegPath", s.jpeg_path);
    read_path(*store, "JpegFile", s.jpeg_file);
    read_path(*store, "WorkPath", s.work_path);

    s.create_log_file = read_number(*store, "CreateLogFile").value_or(0) != 0;
    s.working_dir = read_number(*store, "WorkingDir").value_or(0);
    if (auto q = read_number(*store, "JPEGQuality")) s.jpeg_quality = *q;
    if (auto r = read_number(*store, "JPEGResolution")) s.jpeg_resolution = *r;

    read_recent(*store, s.recent_working_dirs);
    read_recent(*store, s.recent_log_files);
    read_recent(*store, s.recent_source_programs);
    read_recent(*store, s.recent_commands);
    keep_within_limits(s);
    return s;
}

namespace {

/// Puts the settings into the store (or only compares, unless `write`);
/// true when anything differs.
bool put_settings(QSettings& store, const AppSettings& s, bool write) {
    store.beginGroup(QString::fromLatin1(settings_group));
    bool changed = false;
    const auto put_text = [&](const char* name, const std::string& v) {
        changed = put(store, QString::fromLatin1(name), stored_text(v), write) || changed;
    };
    const auto put_number = [&](const char* name, std::uint32_t v) {
        changed = put(store, QString::fromLatin1(name), QVariant(QString::number(v)), write) || changed;
    };
    put_text("LogFilePath", s.log_file_path);
    put_text("LogFileName", s.log_file_name);
    put_text("SrcPgmPath", s.src_pgm_path);
    put_text("SrcPgmName", s.src_pgm_name);
    put_text("JpegPath", s.jpeg_path);
    put_text("JpegFile", s.jpeg_file);
    put_text("WorkPath", s.work_path);
    put_number("CreateLogFile", s.create_log_file ? 1U : 0U);
    put_number("WorkingDir", s.working_dir);
    put_number("JPEGQuality", s.jpeg_quality);
    put_number("JPEGResolution", s.jpeg_resolution);

    for (const RecentList* list :
         {&s.recent_working_dirs, &s.recent_log_files, &s.recent_source_programs, &s.recent_commands})
        changed = write_recent(store, *list, write) || changed;
    store.endGroup();
    return changed;
}

}  // namespace

bool save_settings(const AppSettings& s, const std::string& ini_file) {
    auto store = open_usable_store(ini_file);
    if (!store) return false;
    // Only what differs is written: a session that changed nothing leaves the
    // file alone (and is not slowed down by rewriting it).
    if (put_settings(*store, s, true)) {
        // A file that is not plain text was not written by us as it stands;
        // rewriting it keeps only what the INI reader made of it, so the
        // original is kept beside it first.
        const QString file = store->fileName();
        if (!file_is_text(file)) {
            const QString kept = file + QStringLiteral(".unreadable");
            QFile::remove(kept);
            (void)QFile::copy(file, kept);
        }
        store->sync();
    }
    // A format error stays from the reading; only a failed write counts.
    return store->status() != QSettings::AccessError;
}

bool save_sizing(const SizingValues& sizes, const std::string& ini_file) {
    auto store = open_usable_store(ini_file);
    if (!store) return false;
    store->beginGroup(QString::fromLatin1(settings_group));
    bool changed = false;
    for (int i = 0; i < sizing_count; ++i)
        changed = put(*store, QString::fromLatin1(sizing_records[static_cast<std::size_t>(i)].value_name),
                      QString::number(sizes.value[static_cast<std::size_t>(i)]), true) ||
                  changed;
    store->endGroup();
    if (changed) store->sync();
    return store->status() == QSettings::NoError;
}

bool settings_stored_as(const AppSettings& s, const std::string& ini_file) {
    auto store = open_usable_store(ini_file);
    if (!store) return true;  // a file that is never written counts as up to date
    return !put_settings(*store, s, false);
}

std::string user_documents_folder() {
    return QDir::fromNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
        .toStdString();
}

std::vector<std::string> settings_files() {
    // The user's file, the organisation's file beside it, and both in every
    // system configuration folder (QSettings falls back on them in that
    // order), and the file of the user's standard folders.
    std::vector<std::string> files;
    const QSettings store(QString::fromLatin1(settings_organisation), QString::fromLatin1(settings_application));
    files.push_back(store.fileName().toStdString());
    const QString organisation = QString::fromLatin1(settings_organisation);
    const QString application = QString::fromLatin1(settings_application);
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (const QString& folder : folders) {
        files.push_back((folder + QLatin1Char('/') + organisation + QLatin1Char('/') + application +
                         QStringLiteral(".conf")).toStdString());
        files.push_back((folder + QLatin1Char('/') + organisation + QStringLiteral(".conf")).toStdString());
    }
    files.push_back((QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/user-dirs.dirs")).toStdString());
    return files;
}

}  // namespace tl::shell
