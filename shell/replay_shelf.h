// The folder of recorded games (~/.local/share/Quillop/replays by default): each finished
// game is kept as a scenario file named by its date and score. The game that set the
// current best score is always kept; of the others, the last twenty.
#pragma once

#include <QDateTime>
#include <QString>
#include <string>

namespace quillop {

class ReplayShelf {
public:
    static constexpr int kKeptOthers = 20;
    explicit ReplayShelf(QString folder) : folder_(std::move(folder)) {}
    // Where the desktop keeps a user's data (XDG_DATA_HOME), Quillop/replays under it.
    static QString defaultFolder();

    // Writes the recording whole or not at all; false (and a line on stderr) if it could
    // not. Then the folder is trimmed to what is kept.
    bool keep(const std::string& text, double score, bool newBest,
              const QDateTime& when = QDateTime::currentDateTime());

private:
    void trim();
    QString folder_;
};

}  // namespace quillop
