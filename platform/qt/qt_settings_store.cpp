#include "platform/qt/qt_settings_store.h"

#include <QStandardPaths>
#include <QString>

namespace quillop {
namespace {

QString entryKey(const std::string& section, const std::string& key) {
    return QString::fromStdString(section) + QLatin1Char('/') + QString::fromStdString(key);
}

}  // namespace

// The user-scope INI location of organisation and application "Quillop", under the name
// the desktop's own settings files use (~/.config/Quillop/Quillop.conf).
QtSettingsStore::QtSettingsStore()
    : settings_(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                    QStringLiteral("/Quillop/Quillop.conf"),
                QSettings::IniFormat) {}

std::string QtSettingsStore::read(const std::string& section, const std::string& key,
                                  const std::string& fallback) {
    // Each read goes to the file: another copy of the program may have written it since.
    settings_.sync();
    const QString name = entryKey(section, key);
    if (!settings_.contains(name)) return fallback;
    const QVariant value = settings_.value(name);
    // A hand-edited file can hold a list ("a, b") or other non-text; such an entry counts as
    // missing rather than being turned into some text nobody wrote.
    if (!value.canConvert<QString>() || value.typeId() == QMetaType::QStringList) return fallback;
    return value.toString().toStdString();
}

void QtSettingsStore::write(const std::string& section, const std::string& key, const std::string& value) {
    // Stored as a QString so the file holds plain text, never a typed @Variant.
    settings_.setValue(entryKey(section, key), QString::fromStdString(value));
    // Writes come at window closes and the name entry; the program may end right after.
    settings_.sync();
}

}  // namespace quillop
