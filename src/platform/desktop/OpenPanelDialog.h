#pragma once

#include "platform/FilePanels.h"

#include <QFileDialog>

namespace quillhaven {

/// A file dialog for one file, one folder, or one of either.
class OpenPanelDialog : public QFileDialog
{
    Q_OBJECT

public:
    explicit OpenPanelDialog(const OpenPanelRequest &request);

    void done(int result) override;

Q_SIGNALS:
    /// The panel was confirmed with this path, or declined with none.
    void answered(const QString &path);

protected:
    void accept() override;

private:
    void showMessage();
    void applyColors();

    OpenPanelRequest m_request;
    QString m_chosen;
};

} // namespace quillhaven
