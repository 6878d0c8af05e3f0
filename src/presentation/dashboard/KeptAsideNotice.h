// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

namespace quillhaven {

class NoticesModel;
class QuillhavenManager;

/// Shows the user what the engine has kept aside, in one notice until that is dismissed.
class KeptAsideNotice : public QObject
{
    Q_OBJECT

public:
    /// The references must outlive this object.
    KeptAsideNotice(QuillhavenManager &quillhavenManager, NoticesModel &notices, QObject *parent = nullptr);

private:
    void add(const QString &place, const QString &aside);

    NoticesModel &m_notices;
    qsizetype m_count = 0; ///< in the notice that is shown
};

} // namespace quillhaven
