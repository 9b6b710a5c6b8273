// frmHelp: a picture of every game object; pressing one explains it. Open modally; the game
// pauses while it is open and resumes when Close is pressed.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <array>
#include <map>

#include "game/dialog_rules.h"
#include "platform/qt/picture_set.h"
#include "shell/classic.h"

namespace quillop {

class FrmHelp : public QDialog {
public:
    // Loads the window: its stored place, the game paused, the sound.
    FrmHelp(QWidget* parent, HelpRules& rules, const PictureSet& pictures);

    QPlainTextEdit* txtHelp = nullptr;
    QLabel* lblHelp = nullptr;
    QPushButton* cmdTips = nullptr;
    QPushButton* cmdClose = nullptr;
    std::array<QLabel*, 6> lblPoints{};
    std::map<HelpObject, PictureBox*> pictures;
    // The help text as shown (line breaks as the rules write them).
    QString helpText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void reject() override {}  // no control box and no cancel button
    void closeEvent(QCloseEvent* event) override;

private:
    void show(const char* text);
    void cmdClose_Click();
    HelpRules& rules_;
    QString text_;
    bool closing_ = false;
};

}  // namespace quillop
