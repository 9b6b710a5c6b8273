// frmAbout: title, version, a notice, OK and "System Info...". Modeless.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <functional>

#include "shell/classic.h"

namespace quillop {

class FrmAbout : public QDialog {
public:
    // `playSound` is the module's sound call (the box plays one when it loads).
    FrmAbout(QWidget* parent, const std::function<void()>& playSound);

    PictureBox* picIcon = nullptr;
    QLabel* lblTitle = nullptr;
    QLabel* lblVersion = nullptr;
    QLabel* lblDisclaimer = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdSysInfo = nullptr;

    // The system-information tool of this desktop, if one is installed (empty if not).
    static QString systemInfoTool();
    static const char* unavailableText() { return "System Information Is Unavailable At This Time"; }

private:
    void StartSysInfo();
};

}  // namespace quillop
