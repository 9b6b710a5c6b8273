// frmScore: the one-line score panel at the top of the frame's client area.
#pragma once

#include <QFrame>
#include <QLabel>
#include <array>

namespace quillop {

class FrmScore : public QFrame {
public:
    explicit FrmScore(QWidget* parent);
    // Panel load: the top-left corner of the frame's client area.
    void Form_Load();
    void setWidthTwips(float twips);

    std::array<QLabel*, 3> Label1{};
    QLabel* lblScore = nullptr;
    QLabel* lblLevel = nullptr;
    QLabel* lblLives = nullptr;
};

}  // namespace quillop
