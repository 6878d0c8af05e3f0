#include "platform/desktop/OpenPanelDialog.h"

#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>

namespace quillhaven {

namespace {

constexpr int messageMargin = 12;

QString titleOf(const OpenPanelRequest &request)
{
    if (!request.message.isEmpty()) {
        return request.message;
    }
    return request.canChooseFiles ? QStringLiteral("Choose a File or Folder") : QStringLiteral("Choose a Folder");
}

QColor color(QRgb rgb)
{
    return QColor::fromRgb(rgb);
}

} // namespace

OpenPanelDialog::OpenPanelDialog(const OpenPanelRequest &request) : m_request(request)
{
    setOption(QFileDialog::DontUseNativeDialog);
    setWindowTitle(titleOf(request));
    setAcceptMode(QFileDialog::AcceptOpen);
    // A dialog for existing files also shows the folders; the accept below takes one where that is asked.
    setFileMode(request.canChooseFiles ? QFileDialog::ExistingFile : QFileDialog::Directory);
    setOption(QFileDialog::ShowDirsOnly, false);
    setFilter(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    setLabelText(QFileDialog::Accept, request.prompt.isEmpty() ? QStringLiteral("Open") : request.prompt);
    setModal(true);
    resize(820, 560);
    showMessage();
    applyColors();
    if (!request.directory.isEmpty()) {
        setDirectory(request.directory);
    }
    if (!request.preselected.isEmpty()) {
        selectFile(request.directory + QLatin1Char('/') + request.preselected);
    }
}

void OpenPanelDialog::showMessage()
{
    if (m_request.message.isEmpty() || !layout()) {
        return;
    }
    auto *label = new QLabel(m_request.message, this);
    label->setWordWrap(true);
    label->setContentsMargins(messageMargin, messageMargin, messageMargin, 0);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setAccessibleName(m_request.message);
    // The place above a layout's own rows takes any widget.
    layout()->setMenuBar(label);
}

void OpenPanelDialog::applyColors()
{
    QPalette colors;
    colors.setColor(QPalette::Window, color(0x29303F));
    colors.setColor(QPalette::Base, color(0x050D1D));
    colors.setColor(QPalette::AlternateBase, color(0x29303F));
    colors.setColor(QPalette::Button, color(0x3A4254));
    colors.setColor(QPalette::ToolTipBase, color(0x29303F));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::HighlightedText, QPalette::BrightText}) {
        colors.setColor(role, color(0xFFFFFF));
        colors.setColor(QPalette::Disabled, role, color(0x7A8191));
    }
    colors.setColor(QPalette::PlaceholderText, color(0xABB1BD));
    colors.setColor(QPalette::Highlight, color(0x554DDD));
    colors.setColor(QPalette::Link, color(0x4373F1));
    setPalette(colors);
}

void OpenPanelDialog::accept()
{
    const QStringList selected = selectedFiles();
    const QString path = selected.isEmpty() ? QString() : selected.constFirst();
    const QFileInfo info(path);
    const auto *typed = findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    const bool namesNothing = typed && typed->text().isEmpty();
    if (m_request.canChooseDirectories && info.isDir() && !namesNothing) {
        m_chosen = path;
        done(QDialog::Accepted);
        return;
    }
    QFileDialog::accept();
}

void OpenPanelDialog::done(int result)
{
    if (result == QDialog::Accepted && m_chosen.isEmpty() && !selectedFiles().isEmpty()) {
        m_chosen = selectedFiles().constFirst();
    }
    const QString path = result == QDialog::Accepted ? m_chosen : QString();
    QFileDialog::done(result);
    Q_EMIT answered(path);
}

} // namespace quillhaven
