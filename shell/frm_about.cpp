#include "shell/frm_about.h"

#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>

#include "resources/assets.h"
#include "shell/classic.h"
#include "shell/version.h"

namespace quillop {

FrmAbout::FrmAbout(QWidget* parent, const std::function<void()>& playSound) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setAttribute(Qt::WA_DeleteOnClose);
    // Close box only; a dialog owned by the frame stays out of the task bar.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setFont(classicFont(8));
    // Placed by its client area at the design position.
    setGeometry(QRect(px(2340), px(1935), px(4440), px(3825)));
    setFixedSize(px(4440), px(3825));

    // A picture box sized to its picture.
    const QImage picture(QString::fromLatin1(assets::kAboutPicture));
    picIcon = new PictureBox(this, picture,
                             QRect(px(240), px(240), picture.isNull() ? px(2145) : picture.width(),
                                   picture.isNull() ? px(3270) : picture.height()));
    picIcon->setObjectName(QStringLiteral("picIcon"));
    const QColor black(Qt::black);
    // The classic 18-point title was a bitmap face cut to its 24-pixel box; the stand-in
    // reaches further below its line, so it is set smaller to stay inside.
    lblTitle = classicLabel(this, QString(), twipsRect(2520, 360, 1845, 360), black, classicFont(13.5), true);
    lblVersion = classicLabel(this, QString(), twipsRect(2640, 840, 1605, 225), black, classicFont(8), true);
    lblDisclaimer = classicLabel(this,
                                 QStringLiteral("Free software under the GNU GPL, version 3 or later. "
                                                "No warranty."),
                                 twipsRect(2520, 1320, 1695, 1065), black, classicFont(8), true);
    lblDisclaimer->setWordWrap(true);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setGeometry(twipsRect(2640, 2520, 1620, 465));
    cmdOK->setDefault(true);  // Enter; Esc reaches reject(), which closes too
    cmdSysInfo = new QPushButton(QStringLiteral("&System Info..."), this);
    cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    cmdSysInfo->setGeometry(twipsRect(2640, 3120, 1605, 465));
    setTabOrder(cmdOK, cmdSysInfo);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::close);
    connect(cmdSysInfo, &QPushButton::clicked, this, [this] { StartSysInfo(); });

    // Load, in order: caption, version, title, icon (the application's), sound.
    setWindowTitle(QStringLiteral("About ") + QString::fromLatin1(kTitle));
    lblVersion->setText(QStringLiteral("Version ") + QLatin1String(kVersion));
    lblTitle->setText(QString::fromLatin1(kTitle));
    if (playSound) playSound();
}

QString FrmAbout::systemInfoTool() {
    for (const char* tool : {"hardinfo", "hardinfo2"}) {
        const QString path = QStandardPaths::findExecutable(QString::fromLatin1(tool));
        if (!path.isEmpty()) return path;
    }
    return QString();
}

void FrmAbout::StartSysInfo() {
    const QString tool = systemInfoTool();
    if (!tool.isEmpty() && QProcess::startDetached(tool, {})) return;
    QMessageBox box(QMessageBox::NoIcon, QString::fromLatin1(kTitle), QString::fromLatin1(unavailableText()),
                    QMessageBox::Ok, this);
    box.exec();
}

}  // namespace quillop
