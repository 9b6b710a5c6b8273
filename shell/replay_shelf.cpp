#include "shell/replay_shelf.h"

#include <QDir>
#include <QSaveFile>
#include <QStandardPaths>
#include <cstdio>

#include "replay/recorder.h"

namespace quillop {
namespace {

const QString kBestMark = QStringLiteral("-best");
const QString kSuffix = QStringLiteral(".scn");

}  // namespace

QString ReplayShelf::defaultFolder() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return data.isEmpty() ? QString() : data + QStringLiteral("/Quillop/replays");
}

bool ReplayShelf::keep(const std::string& text, double score, bool newBest, const QDateTime& when) {
    if (folder_.isEmpty() || !QDir().mkpath(folder_)) {
        std::fprintf(stderr, "Quillop2: cannot keep the game's recording: no folder %s\n", qPrintable(folder_));
        return false;
    }
    // Names sort by date; a best score's game carries the mark that keeps it.
    QString name = when.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")) + QStringLiteral("_score-") +
                   QString::fromStdString(replay::GameRecorder::number(score));
    if (newBest) {
        // Only the newest best is the current one: the older ones become ordinary games.
        QDir dir(folder_);
        for (const QString& old : dir.entryList({QStringLiteral("*") + kBestMark + kSuffix}, QDir::Files)) {
            QString plain = old;
            plain.chop(kBestMark.size() + kSuffix.size());
            dir.rename(old, plain + kSuffix);
        }
        name += kBestMark;
    }
    QSaveFile file(folder_ + QLatin1Char('/') + name + kSuffix);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size()) ||
        !file.commit()) {
        std::fprintf(stderr, "Quillop2: cannot keep the game's recording in %s: %s\n", qPrintable(folder_),
                     qPrintable(file.errorString()));
        return false;
    }
    trim();
    return true;
}

void ReplayShelf::trim() {
    QDir dir(folder_);
    QStringList others = dir.entryList({QStringLiteral("*") + kSuffix}, QDir::Files, QDir::Name | QDir::Reversed);
    others.erase(std::remove_if(others.begin(), others.end(), [](const QString& n) { return n.endsWith(kBestMark + kSuffix); }),
                 others.end());
    for (int k = kKeptOthers; k < others.size(); ++k) dir.remove(others[k]);
}

}  // namespace quillop
