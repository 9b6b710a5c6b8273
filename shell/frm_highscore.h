// frmHighscore, "Congrats!": takes over the new best score when its surface paints and stores the
// name typed into it, on Enter or OK.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "game/dialog_rules.h"

namespace quillop {

class FrmHighscore : public QDialog {
public:
    FrmHighscore(QWidget* parent, HighscoreEntry& rules);
    // Shown modally, centred on the screen; returns once the name is stored.
    void showModal();

    QLabel* Label2 = nullptr;
    QLabel* lblHighscore = nullptr;
    QLabel* Label1 = nullptr;
    QLineEdit* txtHighscorer = nullptr;
    QWidget* imgQueen = nullptr;
    QPushButton* cmdOK = nullptr;

protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override {}  // no cancel: the dialog ends only by storing a name

private:
    bool paintsOwnSurface(const QRegion& region) const;
    void SaveHighscore();
    HighscoreEntry& rules_;
};

}  // namespace quillop
